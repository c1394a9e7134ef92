// The frame window: its procedure and the handlers of its messages (creation
// and size, menu commands, the tick, the private messages with the start-up
// sequence, the busy cursor and the exit sequence).
#include <windows.h>
#include <commctrl.h>
#include <stdio.h>
#include <string.h>

#include "base/busy.h"
#include "base/status_log.h"
#include "dialogs/filter_box_win32.h"
#include "dialogs/general_dialogs_win32.h"
#include "dialogs/tag_dialogs_win32.h"
#include "link/accessory_modes.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "link/serial_port_win32.h"
#include "resources/resource_ids_win32.h"
#include "shell/shell_win32.h"
#include "shell/startup.h"
#include "shell/tick.h"
#include "shell/recording_commands.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "views/child_windows_win32.h"

static const UINT_PTR TickTimerId = 1;

// ---- The frame: creation and size -------------------------------------------------------

static int OnFrameCreate(HWND frame) {
    CLIENTCREATESTRUCT ccs;
    ccs.hWindowMenu = nullptr;
    ccs.idFirstChild = IDC_MDI_FIRST_CHILD;
    shell.mdiClient = CreateWindowExA(
        0, "mdiclient", nullptr,
        WS_CHILD | WS_CLIPCHILDREN | WS_VSCROLL | WS_HSCROLL | WS_VISIBLE | MDIS_ALLCHILDSTYLES,
        0, 0, 0, 0, frame, (HMENU)(INT_PTR)IDC_MDI_CLIENT, shell.instance, &ccs);
    shell.statusBar = CreateWindowExA(0, STATUSCLASSNAMEA, "",
                                      WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, frame,
                                      (HMENU)(INT_PTR)IDC_STATUS_BAR, shell.instance, nullptr);
    if (shell.mdiClient == nullptr || shell.statusBar == nullptr) return -1;
    int edges[3] = {50, 100, -1};
    SendMessageA(shell.statusBar, SB_SETPARTS, 3, (LPARAM)edges);
    PlatformSetStatusPane(0, "Initalising...");
    PlatformSetStatusPane(1, "Idle");
    PlatformSetStatusPane(2, "0 %");
    PostMessageA(frame, WM_VELDOR, PRIVATE_STARTUP, 0);
    return 0;
}

static void OnFrameSize(HWND frame) {
    if (shell.statusBar == nullptr || shell.mdiClient == nullptr) return;
    RECT client;
    GetClientRect(frame, &client);
    int width = client.right;
    SendMessageA(shell.statusBar, WM_SIZE, 0, 0);
    RECT bar;
    GetWindowRect(shell.statusBar, &bar);
    int barHeight = bar.bottom - bar.top;
    MoveWindow(shell.statusBar, 0, client.bottom - barHeight, width, barHeight, TRUE);
    MoveWindow(shell.mdiClient, 0, 0, width, client.bottom - barHeight, TRUE);
    int edges[3] = {3 * width / 5, 3 * width / 5 + width / 5, -1};
    SendMessageA(shell.statusBar, SB_SETPARTS, 3, (LPARAM)edges);
}

// ---- The frame's private messages -------------------------------------------------------

static void RunStartupSequence(HWND frame) {
    SetInitialValues();
    SetPlatformWindow(WINDOW_GPS, nullptr);
    SetPlatformWindow(WINDOW_CALIBRATION, nullptr);
    ReadStartupSettings();
    PostMessageA(frame, WM_VELDOR, PRIVATE_OPEN_PORT, 0);
    if (SetTimer(frame, TickTimerId, 1000, nullptr) == 0) {
        char text[256];
        if (LoadStringA(shell.instance, IDS_TIMER_ERROR, text, sizeof text) <= 0)
            snprintf(text, sizeof text, "%s", "Error setting Windows timer");
        MessageBoxA(frame, text, "VELDOR", MB_OK | MB_ICONWARNING);
        LogStatus("<< Error setting Windows timer >>");
    }
    if (TakeFirstRunLayout()) {
        ShowWindow(frame, SW_MAXIMIZE);
        SendMessageA(shell.mdiClient, WM_MDICASCADE, 0, 0);
    }
    SnapshotRecordingParams();
    EndBusy();
}

static void ReopenPort() {
    if (PlatformPortIsOpen()) ClosePort();
    if (OpenPort()) {
        commsWatchdogTicks = 12;
        LogStatus("Port opened");
    } else {
        LogStatus("<< PC port error >>");
    }
}

static void SetUpAccessoryPort() {
    if (!ApplyTzrMode()) LogStatus("<< Error setting TZR4100 configuration >>");
    SendFrameText("OP 1");
}

static void ForwardKey(LPARAM lParam) {
    HWND active = (HWND)SendMessageA(shell.mdiClient, WM_MDIGETACTIVE, 0, 0);
    if (active != nullptr) SendMessageA(active, WM_VELDOR, PRIVATE_FORWARD_KEY, lParam);
}

static LRESULT OnPrivateMessage(HWND frame, WPARAM code, LPARAM lParam) {
    switch (code) {
    case PRIVATE_FILTER_BOX: return RunFilterBox((HWND)lParam);
    case PRIVATE_COLOURS_BOX: return RunColoursBox((HWND)lParam);
    case PRIVATE_EDIT_TAG: EditTag((int)lParam); break;
    case PRIVATE_VIEW_CREATED: OnViewCreated((int)lParam); break;
    case PRIVATE_VIEW_CLOSING: OnViewClosing((int)lParam); break;
    case PRIVATE_STARTUP: RunStartupSequence(frame); break;
    case PRIVATE_OPEN_PORT: ReopenPort(); break;
    case PRIVATE_ACCESSORY_SETUP: SetUpAccessoryPort(); break;
    case PRIVATE_FONTS_CHANGED:
        HandViewFont(WINDOW_LISTING, 1);
        HandViewFont(WINDOW_PLOT, 1);
        HandViewFont(WINDOW_CHART, 1);
        break;
    case PRIVATE_FORWARD_KEY: ForwardKey(lParam); break;
    default: break;
    }
    return 0;
}

// ---- Exit -------------------------------------------------------------------------------

static void OnFrameClose(HWND frame) {
    LogStatus("Exiting...");
    statusFlags &= ~STATUS_RECORDING;
    KillTimer(frame, TickTimerId);
    ClosePort();
    AskToSave();
    FrameExitState state;
    memset(&state, 0, sizeof state);
    state.minimised = IsIconic(frame) ? 1 : 0;
    state.maximised = IsZoomed(frame) ? 1 : 0;
    RECT rect;
    GetWindowRect(frame, &rect);
    state.place.x = rect.left;
    state.place.y = rect.top;
    state.place.width = rect.right - rect.left;
    state.place.height = rect.bottom - rect.top;
    WriteExitSettings(state);
    DestroyWindow(frame);
}

LRESULT CALLBACK FrameWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        SetPlatformWindow(WINDOW_FRAME, hwnd);
        return OnFrameCreate(hwnd);
    case WM_SIZE:
        OnFrameSize(hwnd);
        return 0;
    case WM_COMMAND:
        if (OnFrameCommand(hwnd, LOWORD(wParam), (HWND)lParam, HIWORD(wParam))) return 0;
        break;
    case WM_INITMENUPOPUP:
        if (!HIWORD(lParam)) UpdateMenuState();
        break;
    case WM_TIMER:
        Tick((int)wParam);
        return 0;
    case WM_VELDOR:
        return OnPrivateMessage(hwnd, wParam, lParam);
    case WM_MOUSEMOVE:
        ShowBusyCursor();
        return 0;
    case WM_CLOSE:
        OnFrameClose(hwnd);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default: break;
    }
    return DefFrameProcA(hwnd, shell.mdiClient, message, wParam, lParam);
}
