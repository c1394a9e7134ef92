// File > Print > Listing and File > Print > Plot: the two print jobs, each
// run whole inside its command with the modeless AbortBox showing progress.
#ifndef VELDOR_PRINTING_PRINT_JOBS_WIN32_H
#define VELDOR_PRINTING_PRINT_JOBS_WIN32_H

#include <windows.h>

// Each returns 1 when the job was printed to its end, 0 when it was refused,
// failed to start or was cancelled.
int PrintListing(HWND frame);
int PrintPlot(HWND frame);

#endif
