#include "views/draw_list.h"

#include <string.h>

void DrawListClear(DrawList* list) {
    list->count = 0;
    list->dropped = 0;
}

static DrawOp* Add(DrawList* list, uint8_t kind) {
    if (list->count >= DrawListCapacity) {
        list->dropped++;
        return nullptr;
    }
    DrawOp* op = &list->ops[list->count++];
    memset(op, 0, sizeof *op);
    op->kind = kind;
    return op;
}

void AddFill(DrawList* list, ViewRect rect, uint32_t colour) {
    DrawOp* op = Add(list, DRAW_FILL);
    if (op == nullptr) return;
    op->rect = rect;
    op->colour = colour;
}

void AddBox(DrawList* list, ViewRect rect, uint32_t fill) {
    DrawOp* op = Add(list, DRAW_BOX);
    if (op == nullptr) return;
    op->rect = rect;
    op->colour = fill;
}

void AddLine(DrawList* list, int32_t x0, int32_t y0, int32_t x1, int32_t y1, uint32_t colour,
              uint8_t pen) {
    DrawOp* op = Add(list, DRAW_LINE);
    if (op == nullptr) return;
    op->rect = ViewRect{x0, y0, x1, y1};
    op->colour = colour;
    op->pen = pen;
}

void AddSunkenFrame(DrawList* list, ViewRect rect, int32_t width) {
    DrawOp* op = Add(list, DRAW_SUNKEN);
    if (op == nullptr) return;
    op->rect = rect;
    op->width = width;
}

void AddText(DrawList* list, const char* text, int32_t x, int32_t y, uint16_t flags,
              ViewRect clip, uint32_t colour, uint32_t background) {
    DrawOp* op = Add(list, DRAW_TEXT);
    if (op == nullptr) return;
    op->x = x;
    op->y = y;
    op->flags = flags;
    op->rect = clip;
    op->colour = colour;
    op->background = background;
    size_t n = strlen(text);
    if (n > DrawTextSize - 1) n = DrawTextSize - 1;
    memcpy(op->text, text, n);
    op->text[n] = '\0';
}
