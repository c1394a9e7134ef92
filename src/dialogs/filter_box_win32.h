// FilterBox, "Filter Records": the criteria of the record filter. Its OK runs
// the filter before the dialog closes.
#ifndef VELDOR_DIALOGS_FILTER_BOX_WIN32_H
#define VELDOR_DIALOGS_FILTER_BOX_WIN32_H

#include <windows.h>

// Runs the dialog owned by owner: 1 when the filter has run, 0 on Cancel.
// Repainting and marking the data changed are the caller's.
int RunFilterBox(HWND owner);

#endif
