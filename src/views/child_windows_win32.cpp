// The child windows as frames for the views: each announces itself to the
// seam and to the frame, which hands it its font and stores its place when it
// closes, keeps its font and shows the cursor of the busy count.
#include "views/child_windows_win32.h"

#include <stdio.h>
#include <string.h>

#include "base/front_win32.h"
#include "survey/survey_state.h"
#include "views/plot_geometry.h"

struct ViewFontState {
    HFONT font;
    int lineHeight;
};

// Indexed by WindowId; only the Listing, Plot and Chart have one.
static ViewFontState viewFonts[WINDOW_COUNT];

// Only the Listing, Plot and Chart have a font of their own.
static int HasViewFont(int window) {
    return window == WINDOW_LISTING || window == WINDOW_PLOT || window == WINDOW_CHART;
}

void SetViewFont(int window, const char* name, int size) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd == nullptr || !HasViewFont(window)) return;
    ViewFontState& vf = viewFonts[window];
    if (vf.font != nullptr) DeleteObject(vf.font);
    vf.font = CreateFontA(-size, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, name);
    vf.lineHeight = 0;
    HDC dc = GetDC(hwnd);
    if (dc != nullptr) {
        HGDIOBJ old = SelectObject(dc, vf.font);
        TEXTMETRICA metrics;
        if (GetTextMetricsA(dc, &metrics)) vf.lineHeight = metrics.tmHeight;
        SelectObject(dc, old);
        ReleaseDC(hwnd, dc);
    }
}

HFONT ViewFont(int window) { return viewFonts[window].font; }
int ViewLineHeight(int window) { return viewFonts[window].lineHeight; }

static void FreeViewFont(int window) {
    ViewFontState& vf = viewFonts[window];
    if (vf.font != nullptr) DeleteObject(vf.font);
    vf.font = nullptr;
    vf.lineHeight = 0;
}

void RebuildViewFont(int window, const char* name, int size) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd == nullptr || !HasViewFont(window)) return;
    SetViewFont(window, name, size);
    // The view lays itself out again for the new line height and sets its bars.
    SendMessageA(hwnd, WM_VELDOR, PRIVATE_FONTS_CHANGED, 0);
    InvalidateRect(hwnd, nullptr, TRUE);
}

static void OnCreate(int window, HWND hwnd) {
    SetPlatformWindow(window, hwnd);
    AskFrame(PRIVATE_VIEW_CREATED, window);
}

static void OnPaint(HWND hwnd) {
    PAINTSTRUCT ps;
    BeginPaint(hwnd, &ps);
    EndPaint(hwnd, &ps);
}

static void OnDestroy(int window) {
    AskFrame(PRIVATE_VIEW_CLOSING, window);
    FreeViewFont(window);
    SetPlatformWindow(window, nullptr);
}

LRESULT ViewWindowDefault(int window, HWND hwnd, UINT message, WPARAM wParam,
                              LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        OnCreate(window, hwnd);
        return 0;
    case WM_PAINT:
        OnPaint(hwnd);
        return 0;
    case WM_SETCURSOR:
        if (LOWORD(lParam) != HTCLIENT) break;
        ShowBusyCursor();
        return TRUE;
    case WM_VELDOR:
        return 0;
    case WM_DESTROY:
        OnDestroy(window);
        return 0;
    default: break;
    }
    return DefMDIChildProcA(hwnd, message, wParam, lParam);
}
