#include "views/draw_list_win32.h"

static void FillOp(HDC dc, const DrawOp& op) {
    RECT rect = ToRect(op.rect);
    HBRUSH brush = CreateSolidBrush(op.colour);
    FillRect(dc, &rect, brush);
    DeleteObject(brush);
}

static void BoxOp(HDC dc, const DrawOp& op) {
    HBRUSH brush = CreateSolidBrush(op.colour);
    HGDIOBJ oldBrush = SelectObject(dc, brush);
    HGDIOBJ oldPen = SelectObject(dc, GetStockObject(BLACK_PEN));
    Rectangle(dc, op.rect.left, op.rect.top, op.rect.right, op.rect.bottom);
    SelectObject(dc, oldPen);
    SelectObject(dc, oldBrush);
    DeleteObject(brush);
}

static void LineOp(HDC dc, const DrawOp& op) {
    HPEN pen = CreatePen(op.pen == PEN_DOTTED ? PS_DOT : PS_SOLID, 1, op.colour);
    HGDIOBJ old = SelectObject(dc, pen);
    SetBkMode(dc, TRANSPARENT);  // the gaps of a dotted line leave what is below
    MoveToEx(dc, op.rect.left, op.rect.top, nullptr);
    LineTo(dc, op.rect.right, op.rect.bottom);
    SelectObject(dc, old);
    DeleteObject(pen);
}

void RenderSunkenFrame(HDC dc, RECT rect, int width) {
    InflateRect(&rect, width, width);
    HPEN grey = CreatePen(PS_SOLID, 1, RGB(128, 128, 128));
    HPEN white = CreatePen(PS_SOLID, 1, RGB(255, 255, 255));
    HGDIOBJ old = SelectObject(dc, grey);
    for (int i = 0; i < width; i++) {
        SelectObject(dc, grey);
        MoveToEx(dc, rect.left, rect.bottom, nullptr);
        LineTo(dc, rect.left, rect.top);
        LineTo(dc, rect.right, rect.top);
        SelectObject(dc, white);
        LineTo(dc, rect.right, rect.bottom);
        LineTo(dc, rect.left, rect.bottom);
        InflateRect(&rect, -1, -1);
    }
    SelectObject(dc, old);
    DeleteObject(grey);
    DeleteObject(white);
}

static void TextOp(HDC dc, const DrawOp& op) {
    RECT rect = ToRect(op.rect);
    SetTextColor(dc, op.colour);
    int length = lstrlenA(op.text);
    if (op.flags & TEXT_IN_RECT) {
        SetBkMode(dc, TRANSPARENT);
        DrawTextA(dc, op.text, length, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        return;
    }
    UINT align = TA_LEFT;
    if (op.flags & TEXT_CENTRE) align = TA_CENTER;
    if (op.flags & TEXT_RIGHT) align = TA_RIGHT;
    align |= (op.flags & TEXT_BOTTOM) ? TA_BOTTOM : TA_TOP;
    SetTextAlign(dc, align);
    UINT options = 0;
    if (op.flags & TEXT_OPAQUE) {
        options |= ETO_OPAQUE;
        SetBkMode(dc, OPAQUE);
        SetBkColor(dc, op.background);
    } else {
        SetBkMode(dc, TRANSPARENT);
    }
    if (op.flags & TEXT_CLIPPED) options |= ETO_CLIPPED;
    ExtTextOutA(dc, op.x, op.y, options, (options != 0) ? &rect : nullptr, op.text, (UINT)length,
                nullptr);
}

void RenderDrawList(HDC dc, const DrawList& list, HFONT font) {
    int saved = SaveDC(dc);
    if (font != nullptr) SelectObject(dc, font);
    for (int i = 0; i < list.count; i++) {
        const DrawOp& op = list.ops[i];
        switch (op.kind) {
        case DRAW_FILL: FillOp(dc, op); break;
        case DRAW_BOX: BoxOp(dc, op); break;
        case DRAW_LINE: LineOp(dc, op); break;
        case DRAW_TEXT: TextOp(dc, op); break;
        case DRAW_SUNKEN: RenderSunkenFrame(dc, ToRect(op.rect), op.width); break;
        default: break;
        }
    }
    RestoreDC(dc, saved);
}

void RenderButtonFace(const DRAWITEMSTRUCT* item, int bitmapId) {
    HBITMAP bitmap = LoadBitmapA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(bitmapId));
    if (bitmap == nullptr) return;
    HDC memory = CreateCompatibleDC(item->hDC);
    HGDIOBJ old = SelectObject(memory, bitmap);
    const RECT& r = item->rcItem;
    BitBlt(item->hDC, r.left, r.top, r.right - r.left, r.bottom - r.top, memory, 0, 0, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
    DeleteObject(bitmap);
}
