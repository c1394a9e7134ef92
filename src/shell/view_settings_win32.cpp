// The settings of the view windows, read and written by the frame for them:
// the font of the Listing, Plot and Chart, the Tags window's place when it
// opens and each view's place when it closes.
#include <windows.h>

#include "base/front_win32.h"
#include "shell/shell_win32.h"
#include "storage/settings_file.h"
#include "views/child_windows_win32.h"
#include "views/view_areas.h"

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

void HandViewFont(int window, int rebuild) {
    const TextSetting* nameKey = FontNameKey(window);
    const IntSetting* sizeKey = FontSizeKey(window);
    if (nameKey == nullptr || sizeKey == nullptr) return;
    int size = ReadSetting(*sizeKey);
    char name[64];
    ReadSetting(*nameKey, name, sizeof name);
    if (rebuild)
        RebuildViewFont(window, name, size);
    else
        SetViewFont(window, name, size);
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

void OnViewCreated(int window) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd == nullptr) return;
    if (window == WINDOW_TAGS) PlaceTagsWindow(hwnd);
    HandViewFont(window, 0);
}

void OnViewClosing(int window) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd != nullptr) StorePlace(window, hwnd);
}
