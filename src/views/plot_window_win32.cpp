// The Plot window: the button strip, the popup menu, the bars and the keys
// are dispatched to the plot view; a repaint writes the dots as pixels into a
// DIB section shown with one BitBlt, then draws the strip and the cross hair.
#include <windows.h>
#include <windowsx.h>

#include "base/busy.h"
#include "resources/resource_ids.h"
#include "base/front_win32.h"
#include "base/status_log.h"
#include "views/child_windows_win32.h"
#include "views/draw_list_win32.h"
#include "views/plot_geometry.h"
#include "views/plot_view.h"

static const char* const ButtonTexts[10] = {"Ch1",     "Ch2",      "Ch3",       "Ch4",
                                            "All",     "Best",     "Zoom In",   "Zoom Out",
                                            "Zoom Auto", "Colours"};

struct PlotWindowState {
    HWND buttons[10];
    HMENU popup;
    // The off-screen image of plotArea, remade when the area's size changes.
    HBITMAP image;
    uint32_t* pixels;
    int imageWidth;
    int imageHeight;
};
static PlotWindowState plot;
static DrawList plotList;

static void FreeImage() {
    if (plot.image != nullptr) DeleteObject(plot.image);
    plot.image = nullptr;
    plot.pixels = nullptr;
    plot.imageWidth = plot.imageHeight = 0;
}

static int EnsureImage(HDC dc, int width, int height) {
    if (width <= 0 || height <= 0) return 0;
    if (plot.image != nullptr && width == plot.imageWidth && height == plot.imageHeight) return 1;
    FreeImage();
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // top-down
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    plot.image = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (plot.image == nullptr) return 0;
    plot.pixels = (uint32_t*)bits;
    plot.imageWidth = width;
    plot.imageHeight = height;
    return 1;
}

static void OnCreate(HWND hwnd) {
    BeginBusy();
    SetScrollRange(hwnd, SB_VERT, 0, 100, FALSE);
    SetScrollRange(hwnd, SB_HORZ, 0, 100, FALSE);
    for (int n = 0; n < 10; n++)
        plot.buttons[n] = CreateWindowExA(0, "button", ButtonTexts[n],
                                          WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 4 + 29 * n, 4, 25,
                                          25, hwnd, (HMENU)(INT_PTR)(IDC_VIEW_BUTTON_FIRST + n),
                                          shell.instance, nullptr);
    ResetPlotView();
    SetWindowTextA(hwnd, "Plot");
    plot.popup = CreatePopupMenu();
    if (plot.popup != nullptr) {
        AppendMenuA(plot.popup, MF_STRING, IDM_PLOT_ZOOM_IN, "Zoom &In");
        AppendMenuA(plot.popup, MF_STRING, IDM_PLOT_ZOOM_OUT, "Zoom &Out");
        AppendMenuA(plot.popup, MF_STRING, IDM_PLOT_ZOOM_AUTO, "Zoom A&uto");
        AppendMenuA(plot.popup, MF_SEPARATOR, 0, nullptr);
        AppendMenuA(plot.popup, MF_STRING, IDM_PLOT_COLOURS, "&Colours/Size");
    }
    EndBusy();
}

static void OnSize(HWND hwnd, int width, int height) {
    PlotLayout(width, height);
    InvalidateRect(hwnd, nullptr, TRUE);
    PlotShowView();
}

static void OnPaint(HWND hwnd) {
    DWORD t0 = GetTickCount();
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(hwnd, &ps);
    const PlotRect& area = plotView.plotArea;
    int width = area.right - area.left;
    int height = area.bottom - area.top;
    if (EnsureImage(dc, width, height)) {
        PlotPaintPixels(PlotImage{plot.pixels, width, height});
        HDC memory = CreateCompatibleDC(dc);
        HGDIOBJ old = SelectObject(memory, plot.image);
        BitBlt(dc, area.left, area.top, width, height, memory, 0, 0, SRCCOPY);
        SelectObject(memory, old);
        DeleteDC(memory);
    }
    DrawListClear(&plotList);
    PlotPaintStrip(&plotList);
    PlotPaintCrossHair(&plotList);
    RenderDrawList(dc, plotList, ViewFont(WINDOW_PLOT));
    EndPaint(hwnd, &ps);
    PlotCheckSuspension(GetTickCount() - t0);
}

static void OnDrawItem(HWND hwnd, const DRAWITEMSTRUCT* item) {
    if (!(item->itemAction & (ODA_DRAWENTIRE | ODA_SELECT))) return;
    int n = (int)item->CtlID - IDC_VIEW_BUTTON_FIRST;
    if (n < 0 || n > 9) return;
    int held = (item->itemState & ODS_SELECTED) != 0;
    int previous = -1;
    if (held && n <= 5 && PlotChooseChannel(n, &previous)) {
        RECT rect = ToRect(plotView.plotArea);
        InvalidateRect(hwnd, &rect, TRUE);
    }
    RenderButtonFace(item, PlotButtonFace(n, held));
    if (previous >= 0 && previous <= 9) InvalidateRect(plot.buttons[previous], nullptr, FALSE);
}

static void OnMouseMove(HWND hwnd, int x, int y) {
    if (!PlotPointerMoved(x, y)) return;
    HDC dc = GetDC(hwnd);
    if (dc == nullptr) return;
    DrawListClear(&plotList);
    PlotPaintReadout(&plotList);
    RenderDrawList(dc, plotList, ViewFont(WINDOW_PLOT));
    ReleaseDC(hwnd, dc);
}

static void OnRightButton(HWND hwnd, int x, int y) {
    if (recordCount <= 0 || plot.popup == nullptr) return;
    LogStatus("Plot pop up menu");
    POINT point = {x, y};
    ClientToScreen(hwnd, &point);
    TrackPopupMenu(plot.popup, TPM_LEFTALIGN | TPM_RIGHTBUTTON, point.x, point.y, 0, hwnd,
                   nullptr);
}

static void OnCommand(int id) {
    if (id == IDM_PLOT_COLOURS) {
        LogStatus("Set plot colours");
        AskFrame(PRIVATE_COLOURS_BOX, (LPARAM)PlatformWindowHandle(WINDOW_PLOT));
        return;
    }
    PlotCommand(id);
}

static void OnForwardedKey(HWND hwnd, int key) {
    int code = 0;
    switch (PlotKeyAction(key, &code)) {
    case PLOT_KEY_VSCROLL: PostMessageA(hwnd, WM_VSCROLL, MAKEWPARAM(code, 0), 0); break;
    case PLOT_KEY_HSCROLL: PostMessageA(hwnd, WM_HSCROLL, MAKEWPARAM(code, 0), 0); break;
    case PLOT_KEY_COMMAND: PostMessageA(hwnd, WM_COMMAND, MAKEWPARAM(code, 0), 0); break;
    default: break;
    }
}

static void OnPrivate(HWND hwnd, WPARAM code, LPARAM lParam) {
    switch (LOWORD(code)) {
    case PRIVATE_FORWARD_KEY: OnForwardedKey(hwnd, LOWORD(lParam)); break;
    case PRIVATE_FONTS_CHANGED: {
        RECT client;
        GetClientRect(hwnd, &client);
        PlotLayout(client.right, client.bottom);
        PlotShowView();
        InvalidateRect(hwnd, nullptr, TRUE);
        break;
    }
    case IDM_PLOT_ZOOM_AUTO: PlotCommand(IDM_PLOT_ZOOM_AUTO); break;  // after a data file is read
    default: break;
    }
}

static void OnDestroy() {
    if (plot.popup != nullptr) DestroyMenu(plot.popup);
    plot.popup = nullptr;
    FreeImage();
}

LRESULT CALLBACK PlotWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        ViewWindowDefault(WINDOW_PLOT, hwnd, message, wParam, lParam);
        OnCreate(hwnd);
        return 0;
    case WM_SIZE:
        OnSize(hwnd, LOWORD(lParam), HIWORD(lParam));
        break;  // the MDI child needs its default sizing too
    case WM_PAINT: OnPaint(hwnd); return 0;
    case WM_DRAWITEM: OnDrawItem(hwnd, (const DRAWITEMSTRUCT*)lParam); return TRUE;
    case WM_MOUSEMOVE: OnMouseMove(hwnd, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;
    case WM_RBUTTONDOWN: OnRightButton(hwnd, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;
    case WM_COMMAND: OnCommand(LOWORD(wParam)); return 0;
    case WM_VSCROLL: PlotScroll(1, LOWORD(wParam), HIWORD(wParam)); return 0;
    case WM_HSCROLL: PlotScroll(0, LOWORD(wParam), HIWORD(wParam)); return 0;
    case WM_VELDOR: OnPrivate(hwnd, wParam, lParam); return 0;
    case WM_DESTROY: OnDestroy(); break;
    default: break;
    }
    return ViewWindowDefault(WINDOW_PLOT, hwnd, message, wParam, lParam);
}
