// What a view draws, as data. A painter fills a DrawList from the survey
// state, the view's own state and its client size; the window renders the
// list with GDI in order, and the tests read it. Nothing here knows a window.
#ifndef VELDOR_VIEWS_DRAW_LIST_H
#define VELDOR_VIEWS_DRAW_LIST_H

#include <stdint.h>

// Colours are 0x00BBGGRR.
constexpr uint32_t Rgb(uint32_t red, uint32_t green, uint32_t blue) {
    return red | (green << 8) | (blue << 16);
}
constexpr uint32_t ColourBlack = 0x00000000;
constexpr uint32_t ColourWhite = 0x00FFFFFF;
constexpr uint32_t ColourGrey = 0x00C0C0C0;  // RGB(192, 192, 192)

// Left, top inclusive; right, bottom one past the last pixel.
struct ViewRect {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};

enum DrawKind {
    DRAW_FILL = 1,     // rect filled with colour
    DRAW_BOX = 2,      // rect filled with colour inside a 1-pixel black outline
    DRAW_LINE = 3,     // pen from (rect.left, rect.top) to (rect.right, rect.bottom),
                       // the end pixel not drawn
    DRAW_TEXT = 4,     // text anchored at (x, y), see the TEXT_ flags
    DRAW_SUNKEN = 5    // a sunken frame of `width` rings around rect, outside it
};

// Pen styles of DRAW_LINE.
constexpr uint8_t PEN_SOLID = 0;
constexpr uint8_t PEN_DOTTED = 1;

// Text flags. The horizontal anchor is one of LEFT (0), CENTRE, RIGHT; the
// vertical one TOP (0) or BOTTOM. TEXT_IN_RECT instead centres one line in
// rect both ways (the anchor is then unused).
constexpr uint16_t TEXT_LEFT = 0x00;
constexpr uint16_t TEXT_CENTRE = 0x01;
constexpr uint16_t TEXT_RIGHT = 0x02;
constexpr uint16_t TEXT_TOP = 0x00;
constexpr uint16_t TEXT_BOTTOM = 0x04;
constexpr uint16_t TEXT_IN_RECT = 0x08;
constexpr uint16_t TEXT_OPAQUE = 0x10;   // rect filled with `background` first
constexpr uint16_t TEXT_CLIPPED = 0x20;  // text clipped to rect

constexpr int DrawTextSize = 64;

struct DrawOp {
    uint8_t kind;
    uint8_t pen;     // DRAW_LINE: PEN_SOLID or PEN_DOTTED
    uint16_t flags;  // DRAW_TEXT: TEXT_ flags
    int32_t width;   // DRAW_SUNKEN: rings
    uint32_t colour;      // fill, pen or text colour
    uint32_t background;  // the fill of an opaque text
    ViewRect rect;
    int32_t x;
    int32_t y;
    char text[DrawTextSize];
};

constexpr int DrawListCapacity = 2048;

struct DrawList {
    int count;
    int dropped;  // operations that did not fit
    DrawOp ops[DrawListCapacity];
};

void DrawListClear(DrawList* list);
void AddFill(DrawList* list, ViewRect rect, uint32_t colour);
void AddBox(DrawList* list, ViewRect rect, uint32_t fill);
void AddLine(DrawList* list, int32_t x0, int32_t y0, int32_t x1, int32_t y1, uint32_t colour,
              uint8_t pen);
void AddSunkenFrame(DrawList* list, ViewRect rect, int32_t width);
// Text cut to DrawTextSize - 1 characters.
void AddText(DrawList* list, const char* text, int32_t x, int32_t y, uint16_t flags,
              ViewRect clip, uint32_t colour, uint32_t background);

#endif
