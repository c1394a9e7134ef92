// The data-file side of the File menu commands Open, Save, Save As and Close.
// The frame calls these for the menu items and their accelerators; the tick's
// autosave and Record > Stop reach FileSave through the frame command.
#ifndef VELDOR_SHELL_FILE_COMMANDS_H
#define VELDOR_SHELL_FILE_COMMANDS_H

// Offers to save changed data, asks for a data file and reads it. A failed
// read leaves no records and no file name.
void FileOpen();

// With at least one record: writes the data file after the check of the
// stored parameters, or runs FileSaveAs when the data have no file name.
void FileSave();

// Asks for a name and writes the data file, with any number of records. A
// failed write leaves the data without a file name.
void FileSaveAs();

// With a file name: offers to save changed data, then empties the store, the
// tags and the file name and resets the Listing and Plot views.
void FileClose();

#endif
