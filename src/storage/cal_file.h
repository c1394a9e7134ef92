// Calibration files: the binary .CAL file of one channel's curve,
// and the text copy of a curve and its lookup table.
//
// The .CAL format, little-endian, no gaps:
//   offset 0   25 bytes  magic "[VELDOR - cal file v1.0]" and its NUL
//   offset 25   4 bytes  number of points N, signed 32-bit
//   offset 29  8N bytes  the points in table order, each: power (1 byte),
//                        3 bytes of no meaning (kept as they are), value
//                        (32-bit IEEE float)
#ifndef VELDOR_STORAGE_CAL_FILE_H
#define VELDOR_STORAGE_CAL_FILE_H

constexpr char CalFileMagic[] = "[VELDOR - cal file v1.0]";
constexpr int CalFileMagicSize = 25;  // with the NUL
constexpr int CalFileHeaderSize = 29;
constexpr int CalFilePointSize = 8;

// Replaces CalTable[channel] with the file's points; 1 on success. 0 when the
// file can't be opened ("Error opening calibration file\n'<path>'") or has the
// wrong magic or is too short to hold one ("Calibration file '<path>'\n
// Incorrect format"), both in a message box with the exclamation icon, and
// the table is then left as it was. A negative N reads like 0. Storing stops
// at 256 points whatever N says, and at the end of the file: a short file
// gives the whole points it holds and never a made-up one. Does not touch
// ChannelLookup. Logs "Reading calibration file '%s'" and "Read calibration
// file '%s'" with DisplayFileName of the path, between BeginBusy and EndBusy.
int ReadCalFile(const char* path, int channel);

// Writes CalTable[channel] (at most 256 points); 1 on success, 0 with
// "Error opening file\n'<path>'" (exclamation icon) when the file can't be
// opened. Logs "Writing calibration file '%s'" and "Written calibration file
// '%s'" between BeginBusy and EndBusy.
int WriteCalFile(const char* path, int channel);

// The whole menu command "C&opy Calibration To Text File" > "Channel n" for
// channel 0..3: logs "Calibration text file (Ch1)" (the third without its
// space: "Calibration text file(Ch3)"), asks for a name with ChooseFile in its
// save-text mode and writes the text copy of the curve in memory and of
// ChannelLookup[channel]. No name: "No file name selected"; can't open:
// "Error opening file", both in the status line, and nothing written.
// The frame command calls this and logs nothing of its own.
void CopyCalibrationToText(int channel);

// The start-up sequence: for channels 0 to 3 in turn, read the file named by
// "Ch1 filename".."Ch4 filename" of section "Calibration" (empty: the path
// "<appDirectory>\Default.cal"); if that read fails, the default curve
// (0, 0.0)-(255, 100.0); then BuildChannelLookup.
void LoadStartupCalibration();

#endif
