// What every file of the Windows front end shares: the instance, the frame and
// its two children, the handles behind the window ids of the platform seam,
// the private message, the centring of dialogs and the busy cursor.
#ifndef VELDOR_BASE_FRONT_WIN32_H
#define VELDOR_BASE_FRONT_WIN32_H

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
// A view asks the frame, which composes the windows and the dialogs, for one
// of its dialogs; sent, so the result comes back as the message's result.
constexpr WPARAM PRIVATE_FILTER_BOX = 6;   // the Listing's FilterBox, owned by it
constexpr WPARAM PRIVATE_COLOURS_BOX = 7;  // the Plot's ColoursBox, owned by it
constexpr WPARAM PRIVATE_EDIT_TAG = 8;     // the tag text dialog for tag number lParam
// A view window (id in lParam) tells the frame that it was created, for its
// font and the Tags window's place, and that it closes, for its place.
constexpr WPARAM PRIVATE_VIEW_CREATED = 9;
constexpr WPARAM PRIVATE_VIEW_CLOSING = 10;

// Sends the frame its private message; what the frame returns.
LRESULT AskFrame(WPARAM code, LPARAM lParam);

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

// Moves a window, keeping its size, to the middle of the desktop.
void CentreDialog(HWND window);

// Sets the cursor for the busy count when the mouse is over the frame.
void ShowBusyCursor();

#endif
