// The four child windows of the frame: their classes, window procedures and
// the font each of the Listing, Plot and Chart takes from its settings.
#ifndef VELDOR_VIEWS_CHILD_WINDOWS_WIN32_H
#define VELDOR_VIEWS_CHILD_WINDOWS_WIN32_H

#include <windows.h>

LRESULT CALLBACK ListingWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK PlotWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ChartWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK TagsWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// What every view window does: on WM_CREATE it announces itself to the seam
// and to the frame (PRIVATE_VIEW_CREATED), which hands it its font,
// WM_SETCURSOR shows the busy cursor, WM_DESTROY tells the frame
// (PRIVATE_VIEW_CLOSING), which stores its place, frees the font and
// withdraws it; everything else goes to DefMDIChildProcA. A view's own procedure handles its messages first and
// passes WM_CREATE and WM_DESTROY on here too.
LRESULT ViewWindowDefault(int window, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
// Makes the font of the Listing, Plot or Chart from the "FontName" and
// "FontSize" of its section, which the frame reads; nothing for another
// window or one that does not exist.
void SetViewFont(int window, const char* name, int size);
// The font of the Listing, Plot or Chart, and its tmHeight.
HFONT ViewFont(int window);
int ViewLineHeight(int window);

// Rebuilds the font of the Listing, Plot or Chart window and repaints it
// whole; nothing when the window does not exist.
void RebuildViewFont(int window, const char* name, int size);

#endif
