// The Windows front end's shared state: the instance, the frame and its two
// children, the handles behind the window ids of the platform seam, and the
// shell operations that several windows and dialogs use.
#ifndef VELDOR_SHELL_SHELL_WIN32_H
#define VELDOR_SHELL_SHELL_WIN32_H

#include <windows.h>

#include "base/platform.h"

// The private message of the frame and of the child windows.
constexpr UINT WM_VELDOR = WM_USER;
// Codes of the frame's private message (its word parameter).
constexpr WPARAM PRIVATE_STARTUP = 1;
constexpr WPARAM PRIVATE_OPEN_PORT = 2;
constexpr WPARAM PRIVATE_ACCESSORY_SETUP = 3;
constexpr WPARAM PRIVATE_FONTS_CHANGED = 4;
constexpr WPARAM PRIVATE_FORWARD_KEY = 5;

struct ShellState {
    HINSTANCE instance;
    HWND mdiClient;
    HWND statusBar;
    HWND signOnBox;
    DWORD uiThreadId;
    // Indexed by WindowId; WINDOW_FRAME is the frame itself.
    HWND windows[WINDOW_COUNT];
};
extern ShellState shell;

inline HWND FrameWindow() { return shell.windows[WINDOW_FRAME]; }

// Windows and dialogs announce themselves here as they are created and
// destroyed (null), so that the seam can reach them by id.
void SetPlatformWindow(int window, HWND hwnd);
// The handle of a window id, null when the window does not exist.
HWND PlatformWindowHandle(int window);

// Creates a child window on the multiple-document client, placed from the
// "Origin X", "Origin Y", "Width" and "Height" keys of section title, and
// shows it. Null on failure.
HWND CreateChildWindow(const char* title, const char* className, DWORD style);
// The same for one of WINDOW_LISTING .. WINDOW_TAGS, with its own title,
// class and style.
HWND CreateViewWindow(int window);

// Moves a window, keeping its size, to the middle of the desktop.
void CentreDialog(HWND window);
// Opens the help document; the Help menu and every dialog's Help button.
void RunHelpAction();

// The frame window's procedure (frame_window_win32.cpp); start-up registers
// its class and creates the frame.
LRESULT CALLBACK FrameWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// The frame's menu: WM_COMMAND dispatch and WM_INITMENUPOPUP.
LRESULT OnFrameCommand(HWND frame, int id, HWND control, UINT notify);
void UpdateMenuState();

// Sets the cursor for the busy count when the mouse is over the frame.
void ShowBusyCursor();

#endif
