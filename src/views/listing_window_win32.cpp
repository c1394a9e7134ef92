// The Listing window: dispatches its messages to small handlers and renders what
// its painter computes.
#include "shell/shell_win32.h"
#include "views/child_windows_win32.h"

LRESULT CALLBACK ListingWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return ViewWindowDefault(WINDOW_LISTING, hwnd, message, wParam, lParam);
}
