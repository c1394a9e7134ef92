// Renders a view's draw list on any device context, in list order.
#ifndef VELDOR_VIEWS_DRAW_LIST_WIN32_H
#define VELDOR_VIEWS_DRAW_LIST_WIN32_H

#include <windows.h>

#include "views/draw_list.h"

// Draws every operation of the list on dc with font selected for the texts
// (the font and the dc's other objects are restored at the end). Brushes and
// pens are made and deleted here.
void RenderDrawList(HDC dc, const DrawList& list, HFONT font);

// A sunken frame of `width` rings around rect, outside it: grey from the
// bottom left up to the top left and on to the top right, white from the
// top right down to the bottom right and on to the bottom left.
void RenderSunkenFrame(HDC dc, RECT rect, int width);

inline RECT ToRect(ViewRect r) { return RECT{r.left, r.top, r.right, r.bottom}; }



// Copies bitmap resource `bitmapId` (25 by 25) into an owner-drawn button's
// rectangle from the bitmap's top left corner.
void RenderButtonFace(const DRAWITEMSTRUCT* item, int bitmapId);
#endif
