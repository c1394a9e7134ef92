// The child windows as frames for the views: each announces itself to the
// seam, keeps its font, shows the cursor of the busy count and stores its
// place in its settings section when it closes.
#include "views/child_windows_win32.h"

#include <stdio.h>
#include <string.h>

#include "shell/frame_commands.h"
#include "shell/shell_win32.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"
#include "views/plot_geometry.h"

struct ViewFontState {
    HFONT font;
    int lineHeight;
};

// Indexed by WindowId; only the Listing, Plot and Chart have one.
static ViewFontState viewFonts[WINDOW_COUNT];

static const TextSetting* FontNameKey(int window) {
    switch (window) {
    case WINDOW_LISTING: return &KeyListingFontName;
    case WINDOW_PLOT: return &KeyPlotFontName;
    case WINDOW_CHART: return &KeyChartFontName;
    default: return nullptr;
    }
}

static const IntSetting* FontSizeKey(int window) {
    switch (window) {
    case WINDOW_LISTING: return &KeyListingFontSize;
    case WINDOW_PLOT: return &KeyPlotFontSize;
    case WINDOW_CHART: return &KeyChartFontSize;
    default: return nullptr;
    }
}

static void LoadViewFont(int window, HWND hwnd) {
    const TextSetting* nameKey = FontNameKey(window);
    const IntSetting* sizeKey = FontSizeKey(window);
    if (nameKey == nullptr || sizeKey == nullptr) return;
    int size = ReadSetting(*sizeKey);
    char name[64];
    ReadSetting(*nameKey, name, sizeof name);
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

void RebuildViewFont(int window) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd == nullptr || FontNameKey(window) == nullptr) return;
    LoadViewFont(window, hwnd);
    // The view lays itself out again for the new line height and sets its bars.
    SendMessageA(hwnd, WM_VELDOR, PRIVATE_FONTS_CHANGED, 0);
    InvalidateRect(hwnd, nullptr, TRUE);
}

// The window's outer rectangle in the frame's client coordinates.
static RECT PlaceInFrame(HWND hwnd) {
    RECT rect;
    GetWindowRect(hwnd, &rect);
    MapWindowPoints(HWND_DESKTOP, FrameWindow(), (POINT*)&rect, 2);
    return rect;
}

static void StorePlace(int window, HWND hwnd) {
    if (IsIconic(hwnd) || IsZoomed(hwnd)) return;
    const char* section = ChildWindowTitle(window);
    RECT rect = PlaceInFrame(hwnd);
    if (window == WINDOW_TAGS) {
        WriteSettingInt(KeyTagsOriginX, rect.left);
        WriteSettingInt(KeyTagsOriginY, rect.top);
        return;
    }
    IntSetting x{section, "Origin X", SettingNotStored};
    IntSetting y{section, "Origin Y", SettingNotStored};
    IntSetting width{section, "Width", SettingNotStored};
    IntSetting height{section, "Height", SettingNotStored};
    WriteSettingInt(x, rect.left);
    WriteSettingInt(y, rect.top);
    WriteSettingInt(width, rect.right - rect.left);
    WriteSettingInt(height, rect.bottom - rect.top);
}

// The Tags window has a fixed size in dialog units and its own place keys.
static void PlaceTagsWindow(HWND hwnd) {
    LONG units = GetDialogBaseUnits();
    int unitX = LOWORD(units) / 4;
    int unitY = HIWORD(units) / 8;
    SetWindowPos(hwnd, nullptr, ReadSetting(KeyTagsOriginX), ReadSetting(KeyTagsOriginY),
                 176 * unitX, 105 * unitY, SWP_NOZORDER | SWP_NOACTIVATE);
}

static void OnCreate(int window, HWND hwnd) {
    SetPlatformWindow(window, hwnd);
    if (window == WINDOW_TAGS) PlaceTagsWindow(hwnd);
    LoadViewFont(window, hwnd);
}

static void OnPaint(HWND hwnd) {
    PAINTSTRUCT ps;
    BeginPaint(hwnd, &ps);
    EndPaint(hwnd, &ps);
}

static void OnDestroy(int window, HWND hwnd) {
    StorePlace(window, hwnd);
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
        OnDestroy(window, hwnd);
        return 0;
    default: break;
    }
    return DefMDIChildProcA(hwnd, message, wParam, lParam);
}
