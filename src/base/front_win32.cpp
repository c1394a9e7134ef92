#include "base/front_win32.h"

#include "base/busy.h"

ShellState shell;

void SetPlatformWindow(int window, HWND hwnd) {
    if (window >= 0 && window < WINDOW_COUNT) shell.windows[window] = hwnd;
}

HWND PlatformWindowHandle(int window) {
    if (window < 0 || window >= WINDOW_COUNT) return nullptr;
    HWND hwnd = shell.windows[window];
    return hwnd != nullptr && IsWindow(hwnd) ? hwnd : nullptr;
}

void CentreDialog(HWND window) {
    if (window == nullptr) return;
    RECT rect;
    RECT desktop;
    GetWindowRect(window, &rect);
    GetWindowRect(GetDesktopWindow(), &desktop);
    int width = rect.right - rect.left;
    int height = rect.bottom - rect.top;
    int x = (desktop.right - desktop.left - width) / 2;
    int y = (desktop.bottom - desktop.top - height) / 2;
    SetWindowPos(window, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOREDRAW);
}

void ShowBusyCursor() {
    SetCursor(LoadCursorA(nullptr, BusyCount() < 1 ? IDC_ARROW : IDC_WAIT));
}

LRESULT AskFrame(WPARAM code, LPARAM lParam) {
    return FrameWindow() != nullptr ? SendMessageA(FrameWindow(), WM_VELDOR, code, lParam) : 0;
}
