// MakeFileBox: File > Create Listing File.
#ifndef VELDOR_DIALOGS_MAKE_FILE_BOX_WIN32_H
#define VELDOR_DIALOGS_MAKE_FILE_BOX_WIN32_H

#include <windows.h>

// File > Create Listing File (40035): the dialog, owned by the frame, when
// there is at least one record and no recording runs; otherwise nothing.
// The command's status line is the frame's. 1 when the dialog ended with OK.
int OnCreateListingFile(HWND frame);

#endif
