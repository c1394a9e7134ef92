// The Chart window: the four channel buttons and the pointer are dispatched
// to the chart view; a repaint renders the draw list its painter fills.
#include <windows.h>
#include <windowsx.h>

#include "base/busy.h"
#include "resources/resource_ids.h"
#include "base/front_win32.h"
#include "views/chart_view.h"
#include "views/child_windows_win32.h"
#include "views/draw_list_win32.h"

static const char* const ButtonTexts[4] = {"Ch1", "Ch2", "Ch3", "Ch4"};

static HWND chartButtons[4];
static DrawList chartList;

// The layout for the current client size, with "18888" measured in the
// default font of a fresh surface of the window.
static void Layout(HWND hwnd) {
    RECT client;
    GetClientRect(hwnd, &client);
    SIZE text = {0, 0};
    HDC dc = GetDC(hwnd);
    if (dc != nullptr) {
        GetTextExtentPoint32A(dc, "18888", 5, &text);
        ReleaseDC(hwnd, dc);
    }
    ChartLayout(client.right, client.bottom, text.cx, text.cy);
}

static void OnCreate(HWND hwnd, WPARAM wParam, LPARAM lParam) {
    BeginBusy();
    chartReadout[0] = '\0';
    // Announces the window and makes the chart font.
    ViewWindowDefault(WINDOW_CHART, hwnd, WM_CREATE, wParam, lParam);
    chartFontHeight = ViewLineHeight(WINDOW_CHART);
    for (int n = 0; n < 4; n++)
        chartButtons[n] = CreateWindowExA(0, "BUTTON", ButtonTexts[n],
                                          WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 4 + 29 * n, 4, 25,
                                          25, hwnd, (HMENU)(INT_PTR)(IDC_VIEW_BUTTON_FIRST + n),
                                          shell.instance, nullptr);
    EndBusy();
}

static void OnSize(HWND hwnd) {
    Layout(hwnd);
    InvalidateRect(hwnd, nullptr, TRUE);
}

static void OnPaint(HWND hwnd) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(hwnd, &ps);
    DrawListClear(&chartList);
    ChartPaint(&chartList);
    RenderDrawList(dc, chartList, ViewFont(WINDOW_CHART));
    EndPaint(hwnd, &ps);
}

static void OnDrawItem(HWND hwnd, const DRAWITEMSTRUCT* item) {
    if (!(item->itemAction & (ODA_DRAWENTIRE | ODA_SELECT))) return;
    int n = (int)item->CtlID - IDC_VIEW_BUTTON_FIRST;
    if (n < 0 || n > 3) return;
    int held = (item->itemState & ODS_SELECTED) != 0;
    int previous = chartChannel;
    int changed = held && ChartChooseChannel(n);
    if (changed) {
        RECT pane = ToRect(chartPaneRect);
        RECT readout = ToRect(chartReadoutRect);
        InvalidateRect(hwnd, &pane, TRUE);
        InvalidateRect(hwnd, &readout, FALSE);
    }
    RenderButtonFace(item, ChartButtonFace(n, held));
    if (changed && previous >= 0 && previous <= 3)
        InvalidateRect(chartButtons[previous], nullptr, FALSE);
}

static void OnMouseMove(HWND hwnd, int x, int y) {
    if (!ChartPointerMoved(x, y)) return;
    HDC dc = GetDC(hwnd);
    if (dc == nullptr) return;
    DrawListClear(&chartList);
    ChartPaintReadout(&chartList);
    RenderDrawList(dc, chartList, ViewFont(WINDOW_CHART));
    ReleaseDC(hwnd, dc);
}

static void OnPrivate(HWND hwnd, WPARAM code) {
    if (LOWORD(code) != PRIVATE_FONTS_CHANGED) return;
    chartFontHeight = ViewLineHeight(WINDOW_CHART);
    Layout(hwnd);
    InvalidateRect(hwnd, nullptr, TRUE);
}

LRESULT CALLBACK ChartWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE: OnCreate(hwnd, wParam, lParam); return 0;
    case WM_SIZE:
        OnSize(hwnd);
        break;  // the MDI child needs its default sizing too
    case WM_PAINT: OnPaint(hwnd); return 0;
    case WM_DRAWITEM: OnDrawItem(hwnd, (const DRAWITEMSTRUCT*)lParam); return TRUE;
    case WM_MOUSEMOVE: OnMouseMove(hwnd, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;
    case WM_VELDOR: OnPrivate(hwnd, wParam); return 0;
    case WM_DESTROY:
        for (HWND& button : chartButtons) button = nullptr;
        break;
    default: break;
    }
    return ViewWindowDefault(WINDOW_CHART, hwnd, message, wParam, lParam);
}
