// The four child windows of the frame: their classes, window procedures and
// the font each of the Listing, Plot and Chart takes from its settings.
#ifndef VELDOR_VIEWS_CHILD_WINDOWS_WIN32_H
#define VELDOR_VIEWS_CHILD_WINDOWS_WIN32_H

#include <windows.h>

LRESULT CALLBACK ListingWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK PlotWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ChartWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK TagsWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Rebuilds the font of the Listing, Plot or Chart window from "FontName" and
// "FontSize" of its section and repaints it whole; nothing when the window
// does not exist.
void RebuildViewFont(int window);

#endif
