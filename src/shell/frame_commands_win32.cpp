// The frame's menu: command dispatch, menu state, the Window and Help
// commands, the centring of dialogs and the help action.
#include <windows.h>
#include <shellapi.h>
#include <stdio.h>

#include "resources/resource_ids.h"
#include "base/app_paths.h"
#include "shell/file_commands.h"
#include "shell/frame_command_table.h"
#include "shell/frame_commands.h"
#include "shell/shell_win32.h"
#include "shell/startup.h"
#include "base/status_log.h"
#include "dialogs/cal_editor_win32.h"
#include "dialogs/general_dialogs_win32.h"
#include "dialogs/gps_box_win32.h"
#include "dialogs/instrument_dialogs_win32.h"
#include "dialogs/make_file_box_win32.h"
#include "dialogs/tag_dialogs_win32.h"
#include "printing/print_jobs_win32.h"
#include "survey/survey_state.h"
#include "views/view_areas.h"

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

// ---- The handlers of the table's FRAME rows ----------------------------------------

static void OnFileOpen(HWND, int) { FileOpen(); }
static void OnFileSave(HWND, int) { FileSave(); }
static void OnFileSaveAs(HWND, int) { FileSaveAs(); }
static void OnFileClose(HWND, int) { FileClose(); }

static void OnExit(HWND frame, int) { PostMessageA(frame, WM_CLOSE, 0, 0); }

// Commands that hand over to the Listing window do nothing without it.
static void HandToListing(HWND, int id) {
    HWND listing = PlatformWindowHandle(WINDOW_LISTING);
    if (listing != nullptr) SendMessageA(listing, WM_COMMAND, MAKEWPARAM(id, 0), 0);
}

static void Arrange(UINT message, WPARAM how, int id) {
    SendMessageA(shell.mdiClient, message, how, 0);
    LogStatus("%s", FrameCommandLogLine(id));
}

static void OnCascade(HWND, int id) { Arrange(WM_MDICASCADE, 0, id); }
static void OnTileHorizontal(HWND, int id) { Arrange(WM_MDITILE, MDITILE_HORIZONTAL, id); }
static void OnTileVertical(HWND, int id) { Arrange(WM_MDITILE, MDITILE_VERTICAL, id); }
static void OnArrangeIcons(HWND, int id) { Arrange(WM_MDIICONARRANGE, 0, id); }

static void ShowView(int window) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd == nullptr) {
        hwnd = CreateViewWindow(window);
        if (hwnd == nullptr) return;
        LogStatus("%s window opened", ChildWindowTitle(window));
    }
    BringWindowToTop(hwnd);
}

static void OnShowListing(HWND, int) { ShowView(WINDOW_LISTING); }
static void OnShowPlot(HWND, int) { ShowView(WINDOW_PLOT); }
static void OnShowChart(HWND, int) { ShowView(WINDOW_CHART); }
static void OnShowTags(HWND, int) { ShowView(WINDOW_TAGS); }

static void OnAbout(HWND, int id) {
    LogStatus("%s", FrameCommandLogLine(id));
    char text[512];
    FormatAboutText(text, sizeof text);
    MessageBoxA(FrameWindow(), text, "VELDOR", MB_OK | MB_ICONINFORMATION);
}

static void OnLicence(HWND, int id) {
    LogStatus("%s", FrameCommandLogLine(id));
    if (!ShellOpen(licenceDocPath, nullptr))
        ErrorBox("Failed to open licence file \"EULA.rtf\".");
}

static void OnWebsite(HWND, int id) {
    LogStatus("%s", FrameCommandLogLine(id));
    if (ShellOpen(MAKER_WEB_ADDRESS, nullptr)) return;
    char text[512];
    FormatWebsiteError(text, sizeof text);
    ErrorBox(text);
}

static void OnHelp(HWND, int) { RunHelpAction(); }

// ---- Dispatch -------------------------------------------------------------------------

struct FrameHandler {
    int id;
    void (*run)(HWND frame, int id);  // FRAME rows; null: nothing to do here
    void (*open)(HWND frame);         // DIALOG rows
    int (*output)(HWND frame);        // OUTPUT rows
};

#define CORE(handler) nullptr, nullptr, nullptr
#define FRAME(handler) handler, nullptr, nullptr
#define DIALOG(handler) nullptr, handler, nullptr
#define OUTPUT(handler) nullptr, nullptr, handler
#define ROW(id, enabled, checkFlag, logLine, handler) {id, handler},
static const FrameHandler FrameHandlers[] = {FRAME_COMMANDS(ROW)};
#undef ROW
#undef OUTPUT
#undef DIALOG
#undef FRAME
#undef CORE

static void LogCommandLine(int id) {
    const char* line = FrameCommandLogLine(id);
    if (line != nullptr) LogStatus("%s", line);
}

LRESULT OnFrameCommand(HWND frame, int id, HWND, UINT) {
    if (id < FirstFrameCommand || id > LastFrameCommand) return 0;
    if (RunCoreFrameCommand(id)) return 1;
    for (const FrameHandler& row : FrameHandlers) {
        if (row.id != id) continue;
        if (row.output != nullptr && !RecordsReadyForOutput()) return 1;
        if (row.open != nullptr || row.output != nullptr) LogCommandLine(id);
        if (row.run != nullptr) row.run(frame, id);
        if (row.open != nullptr) row.open(frame);
        if (row.output != nullptr) row.output(frame);
        return 1;
    }
    return 0;
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
