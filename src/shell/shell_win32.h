// The shell's own part of the Windows front end: the child windows it
// creates, the frame's procedure, its menu and the help action. What every
// front-end file shares is in base/front_win32.h.
#ifndef VELDOR_SHELL_SHELL_WIN32_H
#define VELDOR_SHELL_SHELL_WIN32_H

#include <windows.h>

#include "base/front_win32.h"

// Creates a child window on the multiple-document client, placed from the
// "Origin X", "Origin Y", "Width" and "Height" keys of section title, and
// shows it. Null on failure.
HWND CreateChildWindow(const char* title, const char* className, DWORD style);
// The same for one of WINDOW_LISTING .. WINDOW_TAGS, with its own title,
// class and style.
HWND CreateViewWindow(int window);

// Opens the help document: Help > Help, which every dialog's Help button
// performs as a frame command.
void RunHelpAction();

// The view windows' settings (view_settings_win32.cpp): the font of the
// Listing, Plot or Chart handed to it (rebuild 1: rebuilt and repainted after
// a change), and what the frame does when a view is created and closes.
void HandViewFont(int window, int rebuild);
void OnViewCreated(int window);
void OnViewClosing(int window);

// The frame window's procedure (frame_window_win32.cpp); start-up registers
// its class and creates the frame.
LRESULT CALLBACK FrameWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// The frame's menu: WM_COMMAND dispatch and WM_INITMENUPOPUP.
LRESULT OnFrameCommand(HWND frame, int id, HWND control, UINT notify);
void UpdateMenuState();

#endif
