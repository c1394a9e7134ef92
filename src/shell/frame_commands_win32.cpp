// The frame's menu: command dispatch, menu state, the Window and Help
// commands, the centring of dialogs and the help action.
#include <windows.h>
#include <shellapi.h>
#include <stdio.h>

#include "resources/resource_ids.h"
#include "shell/app_paths.h"
#include "shell/file_commands.h"
#include "shell/frame_commands.h"
#include "shell/shell_win32.h"
#include "shell/startup.h"
#include "shell/status_log.h"
#include "survey/survey_state.h"

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

static void ErrorBox(const char* text) {
    MessageBoxA(FrameWindow(), text, "VELDOR", MB_OK | MB_ICONSTOP);
}

static int ShellOpen(const char* file, const char* folder) {
    HINSTANCE result =
        ShellExecuteA(FrameWindow(), "open", file, nullptr, folder, SW_SHOWNORMAL);
    return (INT_PTR)result > 32;
}

void RunHelpAction() {
    LogStatus("%s", FrameCommandLogLine(IDM_HELP_HELP));
    if (!ShellOpen(HELP_DOCUMENT, appDirectory))
        ErrorBox("Failed to open \"" HELP_DOCUMENT "\".");
}

static void OnAbout() {
    LogStatus("%s", FrameCommandLogLine(IDM_HELP_ABOUT));
    char text[512];
    FormatAboutText(text, sizeof text);
    MessageBoxA(FrameWindow(), text, "VELDOR", MB_OK | MB_ICONINFORMATION);
}

static void OnLicence() {
    LogStatus("%s", FrameCommandLogLine(IDM_HELP_LICENCE));
    if (!ShellOpen(licenceDocPath, nullptr))
        ErrorBox("Failed to open licence file \"EULA.rtf\".");
}

static void OnWebsite() {
    LogStatus("%s", FrameCommandLogLine(IDM_HELP_WEBSITE));
    if (ShellOpen(MAKER_WEB_ADDRESS, nullptr)) return;
    char text[512];
    FormatWebsiteError(text, sizeof text);
    ErrorBox(text);
}

static void OnShowWindow(int window) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd == nullptr) {
        hwnd = CreateViewWindow(window);
        if (hwnd == nullptr) return;
        LogStatus("%s window opened", ChildWindowTitle(window));
    }
    BringWindowToTop(hwnd);
}

static void OnArrange(UINT message, WPARAM how, int id) {
    SendMessageA(shell.mdiClient, message, how, 0);
    LogStatus("%s", FrameCommandLogLine(id));
}

// Commands that hand over to the Listing window do nothing without it.
static void HandToListing(int id) {
    HWND listing = PlatformWindowHandle(WINDOW_LISTING);
    if (listing != nullptr) SendMessageA(listing, WM_COMMAND, MAKEWPARAM(id, 0), 0);
}

// The commands whose dialog or file work is not part of the frame log their
// line here as they start.
static void LogCommand(int id) {
    const char* line = FrameCommandLogLine(id);
    if (line != nullptr) LogStatus("%s", line);
}

LRESULT OnFrameCommand(HWND frame, int id, HWND, UINT) {
    if (id < FirstFrameCommand || id > LastFrameCommand) return 0;
    if (RunCoreFrameCommand(id)) return 1;
    switch (id) {
    case IDM_FILE_EXIT: PostMessageA(frame, WM_CLOSE, 0, 0); break;
    case IDM_FILE_OPEN: FileOpen(); break;
    case IDM_FILE_SAVE: FileSave(); break;
    case IDM_FILE_SAVE_AS: FileSaveAs(); break;
    case IDM_FILE_CLOSE: FileClose(); break;
    case IDM_FILE_PREFERENCES:
    case IDM_RECORD_MANUAL_READING:
    case IDM_RECORD_SETTINGS:
    case IDM_RECORD_CALIBRATION:
    case IDM_CONFIG_DISPLAY:
    case IDM_CONFIG_PORT:
    case IDM_CONFIG_GPS:
    case IDM_CONFIG_GPS_DIFF:
    case IDM_CONFIG_AR3000A:
    case IDM_CONFIG_TZR4100: LogCommand(id); break;
    case IDM_RECORD_ADD_TAG: break;
    case IDM_FILE_MAKE_LISTING:
    case IDM_FILE_PRINT_LISTING:
    case IDM_FILE_PRINT_PLOT:
        if (RecordsReadyForOutput()) LogCommand(id);
        break;
    case IDM_RECORD_FILTER:
    case IDM_RECORD_STATISTICS: HandToListing(id); break;
    case IDM_WINDOW_CASCADE: OnArrange(WM_MDICASCADE, 0, id); break;
    case IDM_WINDOW_TILE_HORIZONTAL: OnArrange(WM_MDITILE, MDITILE_HORIZONTAL, id); break;
    case IDM_WINDOW_TILE_VERTICAL: OnArrange(WM_MDITILE, MDITILE_VERTICAL, id); break;
    case IDM_WINDOW_ARRANGE: OnArrange(WM_MDIICONARRANGE, 0, id); break;
    case IDM_WINDOW_SHOW_LISTING: OnShowWindow(WINDOW_LISTING); break;
    case IDM_WINDOW_SHOW_PLOT: OnShowWindow(WINDOW_PLOT); break;
    case IDM_WINDOW_SHOW_CHART: OnShowWindow(WINDOW_CHART); break;
    case IDM_WINDOW_SHOW_TAGS: OnShowWindow(WINDOW_TAGS); break;
    case IDM_HELP_ABOUT: OnAbout(); break;
    case IDM_HELP_LICENCE: OnLicence(); break;
    case IDM_HELP_WEBSITE: OnWebsite(); break;
    case IDM_HELP_HELP: RunHelpAction(); break;
    default: return 0;
    }
    return 1;
}

void UpdateMenuState() {
    HMENU menu = GetMenu(FrameWindow());
    if (menu == nullptr) return;
    for (int i = 0; i < FrameMenuIdCount; i++) {
        int id = FrameMenuIds[i];
        UINT enable = MenuItemEnabled(id) ? MF_ENABLED : MF_GRAYED;
        EnableMenuItem(menu, (UINT)id, MF_BYCOMMAND | enable);
        CheckMenuItem(menu, (UINT)id,
                      MF_BYCOMMAND | (MenuItemChecked(id) ? MF_CHECKED : MF_UNCHECKED));
    }
}
