// The platform seam on Win32.
#include <windows.h>
#include <commctrl.h>
#include <commdlg.h>
#include <string.h>
#include <time.h>

#include "link/serial_port_win32.h"
#include "base/local_time.h"
#include "base/platform.h"
#include "views/view_areas.h"
#include "shell/shell_win32.h"
#include "base/status_log.h"

// ---- Serial port -----------------------------------------------------------------

int PlatformPortIsOpen() { return portHandle != INVALID_HANDLE_VALUE ? 1 : 0; }

int PlatformPortWrite(const char* data, int length) { return PortWrite(data, length); }

// ---- Status bar ------------------------------------------------------------------

void PlatformSetStatusPane(int pane, const char* text) {
    if (pane < 0 || pane > 2 || shell.statusBar == nullptr || text == nullptr) return;
    char copy[StatusLineSize];
    strncpy(copy, text, sizeof copy - 1);
    copy[sizeof copy - 1] = '\0';
    SendMessageA(shell.statusBar, SB_SETTEXTA, (WPARAM)pane, (LPARAM)copy);
}

// ---- Questions and message boxes -------------------------------------------------

// A box belongs to the GPS dialog while it is open (its self-test report comes
// from the reader thread), else to the window in front on the user-interface
// thread, else to the frame. The sign-on box never owns one: it closes itself.
static HWND MessageOwner() {
    HWND gps = PlatformWindowHandle(WINDOW_GPS);
    if (gps != nullptr) return gps;
    if (GetCurrentThreadId() == shell.uiThreadId) {
        HWND active = GetActiveWindow();
        if (active != nullptr && active != shell.signOnBox) return active;
    }
    return FrameWindow();
}

static UINT IconStyle(int icon) {
    switch (icon) {
    case ICON_STOP: return MB_ICONSTOP;
    case ICON_EXCLAMATION: return MB_ICONEXCLAMATION;
    case ICON_QUESTION: return MB_ICONQUESTION;
    default: return MB_ICONINFORMATION;
    }
}

int PlatformAskYesNo(const char* text) {
    return MessageBoxA(MessageOwner(), text, "VELDOR", MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void PlatformMessageBox(const char* text, int icon) {
    MessageBoxA(MessageOwner(), text, "VELDOR", MB_OK | IconStyle(icon));
}

// ---- Windows and repaints ----------------------------------------------------------

int PlatformWindowExists(int window) { return PlatformWindowHandle(window) != nullptr; }

void PlatformRepaint(int window, int area, int erase) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd == nullptr) return;
    ViewRect r;
    RECT rect;
    int part = ViewAreaRect(window, area, &r);
    if (part) rect = RECT{r.left, r.top, r.right, r.bottom};
    InvalidateRect(hwnd, part ? &rect : nullptr, erase ? TRUE : FALSE);
}

void PlatformSetVerticalScroll(int window, int position) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd != nullptr) SetScrollPos(hwnd, SB_VERT, position, TRUE);
}

void PlatformSetHorizontalScroll(int window, int position) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd != nullptr) SetScrollPos(hwnd, SB_HORZ, position, TRUE);
}

void PlatformSetWindowCaption(int window, const char* text) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd != nullptr) SetWindowTextA(hwnd, text);
}

int PlatformClientSize(int window, int* width, int* height) {
    HWND hwnd = PlatformWindowHandle(window);
    RECT rect = {0, 0, 0, 0};
    if (hwnd != nullptr) GetClientRect(hwnd, &rect);
    *width = rect.right;
    *height = rect.bottom;
    return hwnd != nullptr;
}

void PlatformNotifyWindow(int window, int code) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd != nullptr) PostMessageA(hwnd, WM_VELDOR, (WPARAM)code, 0);
}

// ---- Frame ---------------------------------------------------------------------------

void PlatformSetFrameCaption(const char* text) {
    if (FrameWindow() != nullptr) SetWindowTextA(FrameWindow(), text);
}

void PlatformFrameCommand(int commandId) {
    if (FrameWindow() != nullptr)
        SendMessageA(FrameWindow(), WM_COMMAND, MAKEWPARAM(commandId, 0), 0);
}

// ---- Clock -----------------------------------------------------------------------------

// The 64-bit runtime exports no _time32; its low 32 bits are the same value.
uint32_t PlatformTime() {
#ifdef _WIN64
    return (uint32_t)_time64(nullptr);
#else
    return (uint32_t)_time32(nullptr);
#endif
}

int PlatformLocalTime(uint32_t seconds, LocalTime* out) {
    if (out == nullptr) return 0;
    __time32_t value = (__time32_t)seconds;
    struct tm parts;
    if (_localtime32_s(&parts, &value) != 0) return 0;
    return LocalTimeFromTm(&parts, out);
}

// ---- Busy cursor -------------------------------------------------------------------------

static int MouseOverFrame() {
    HWND frame = FrameWindow();
    if (frame == nullptr) return 0;
    POINT point;
    RECT rect;
    return GetCursorPos(&point) && GetWindowRect(frame, &rect) && PtInRect(&rect, point);
}

void PlatformBusyChanged(int) {
    if (MouseOverFrame()) ShowBusyCursor();
}

// ---- File chooser ------------------------------------------------------------------------

struct ChooserMode {
    const char* title;
    const char* filter;
    int save;
    int startsFromPath;
};

static const ChooserMode ChooserModes[4] = {
    {"Open Data File", "Data Files (*.DAT)\0*.DAT\0All Files (*.*)\0*.*\0", 0, 0},
    {"Save Data File...", "Data Files (*.DAT)\0*.DAT\0All Files (*.*)\0*.*\0", 1, 1},
    {"Save Text File...", "Text Files (*.TXT)\0*.TXT\0All Files (*.*)\0*.*\0", 1, 0},
    {"Save Calibration File...", "Cal Files (*.CAL)\0*.CAL\0All Files (*.*)\0*.*\0", 1, 1},
};

int ChooseFile(char* path, int size, int mode) {
    if (path == nullptr || size < 1) return 0;
    if (mode < 0 || mode > 3) {
        path[0] = '\0';
        return 0;
    }
    const ChooserMode& m = ChooserModes[mode];
    char file[260] = "";
    char fileTitle[260] = "";
    char folder[260] = "";
    if (m.startsFromPath && path[0] != '\0') {
        const char* slash = strrchr(path, '\\');
        if (slash != nullptr) {
            size_t n = (size_t)(slash - path);
            if (n >= sizeof folder) n = sizeof folder - 1;
            memcpy(folder, path, n);
            folder[n] = '\0';
            strncpy(file, slash + 1, sizeof file - 1);
        } else {
            strncpy(file, path, sizeof file - 1);
        }
    }

    OPENFILENAMEA ofn;
    memset(&ofn, 0, sizeof ofn);
    ofn.lStructSize = sizeof ofn;
    HWND owner = GetActiveWindow();
    ofn.hwndOwner = owner != nullptr && owner != shell.signOnBox ? owner : FrameWindow();
    ofn.hInstance = shell.instance;
    ofn.lpstrFilter = m.filter;
    ofn.nFilterIndex = 1;
    ofn.lpstrFile = file;
    ofn.nMaxFile = sizeof file;
    ofn.lpstrFileTitle = fileTitle;
    ofn.nMaxFileTitle = sizeof fileTitle;
    ofn.lpstrInitialDir = folder[0] != '\0' ? folder : nullptr;
    ofn.lpstrTitle = m.title;
    if (m.save) {
        ofn.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY;
    } else {
        ofn.Flags = OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;
    }
    BOOL confirmed = m.save ? GetSaveFileNameA(&ofn) : GetOpenFileNameA(&ofn);

    if (confirmed && fileTitle[0] != '\0' && (int)strlen(file) < size) {
        memcpy(path, file, strlen(file) + 1);
        return 1;
    }
    if (confirmed && fileTitle[0] == '\0')
        MessageBoxA(ofn.hwndOwner, "Invalid filename, data not saved", "VELDOR",
                    MB_OK | MB_ICONSTOP);
    path[0] = '\0';
    return 0;
}

// ---- Private profile ---------------------------------------------------------------------

int ProfileGetInt(const char* section, const char* key, int defaultValue, const char* path) {
    return (int)GetPrivateProfileIntA(section, key, defaultValue, path);
}

int ProfileGetString(const char* section, const char* key, const char* defaultValue,
                     char* buffer, int size, const char* path) {
    if (buffer == nullptr || size < 1) return 0;
    return (int)GetPrivateProfileStringA(section, key, defaultValue, buffer, (DWORD)size, path);
}

int ProfileWriteString(const char* section, const char* key, const char* value,
                       const char* path) {
    return WritePrivateProfileStringA(section, key, value, path) ? 1 : 0;
}
