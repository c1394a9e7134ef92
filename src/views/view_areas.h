// The client rectangle behind a repaint area of the seam, from the layout
// each view keeps.
#ifndef VELDOR_VIEWS_VIEW_AREAS_H
#define VELDOR_VIEWS_VIEW_AREAS_H

#include "views/draw_list.h"

// 1 with the rectangle of `area` of `window`; 0 when the area is the whole
// client area or unknown to that window.
int ViewAreaRect(int window, int area, ViewRect* out);

// The title and settings section of a child window (WINDOW_LISTING ..
// WINDOW_TAGS): "Listing", "Plot", "Chart", "Text Tags"; nullptr otherwise.
const char* ChildWindowTitle(int window);

#endif
