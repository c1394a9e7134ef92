// WinMain, the paths, the window classes, the frame, the child windows, the
// sign-on box and the message loop. The frame's own messages are handled in
// frame_window_win32.cpp.
#include <windows.h>
#include <commctrl.h>
#include <shlobj.h>
#include <stdio.h>
#include <string.h>

#include "base/app_paths.h"
#include "resources/resource_ids_win32.h"
#include "shell/frame_commands.h"
#include "shell/shell_win32.h"
#include "shell/startup.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"
#include "views/child_windows_win32.h"
#include "views/view_areas.h"

static const char FrameClass[] = "Veldor_Frame";
static const UINT_PTR SignOnTimerId = 1;

// ---- Start-up failures ----------------------------------------------------------

static int ReportStartFailure(int code) {
    char text[128];
    snprintf(text, sizeof text, "An error has occured\ninitalising application\n[Code %d]", code);
    MessageBoxA(nullptr, text, "VELDOR", MB_OK | MB_ICONERROR);
    return 0;
}

// ---- Paths -------------------------------------------------------------------------

static void BuildPaths() {
    char module[PathSize] = "";
    GetModuleFileNameA(nullptr, module, sizeof module);
    char* slash = strrchr(module, '\\');
    if (slash != nullptr) *slash = '\0';
    snprintf(appDirectory, sizeof appDirectory, "%s", module);

    char common[PathSize] = "";
    if (SHGetFolderPathA(nullptr, CSIDL_COMMON_APPDATA, nullptr, 0, common) != S_OK)
        common[0] = '\0';
    BuildAppPaths(common);
    char maker[PathSize];
    snprintf(maker, sizeof maker, "%s\\TREVAN", common);
    CreateDirectoryA(maker, nullptr);  // fails when it exists: that is fine
    CreateDirectoryA(dataDirectory, nullptr);
}

// ---- Window classes ------------------------------------------------------------------

struct ClassInfo {
    const char* name;
    WNDPROC proc;
    int icon;
    int failureCode;
};

static int RegisterWindowClass(const ClassInfo& info, HBRUSH background, const char* menu) {
    WNDCLASSA wc;
    memset(&wc, 0, sizeof wc);
    wc.style = 0;
    wc.lpfnWndProc = info.proc;
    wc.hInstance = shell.instance;
    wc.hIcon = LoadIconA(shell.instance, MAKEINTRESOURCEA(info.icon));
    wc.hCursor = nullptr;
    wc.hbrBackground = background;
    wc.lpszMenuName = menu;
    wc.lpszClassName = info.name;
    return RegisterClassA(&wc) != 0;
}

// 0 when all five classes are registered, else the failure code.
static int RegisterClasses() {
    static const ClassInfo classes[5] = {
        {FrameClass, FrameWindowProc, IDI_FRAME, 1},
        {"Veldor_Listing", ListingWindowProc, IDI_LISTING, 2},
        {"Veldor_Plot", PlotWindowProc, IDI_PLOT, 3},
        {"Veldor_Chart", ChartWindowProc, IDI_CHART, 4},
        {"Veldor_Tags", TagsWindowProc, IDI_TAGS, 5},
    };
    HBRUSH backgrounds[5] = {
        CreateSolidBrush(RGB(192, 192, 192)),
        (HBRUSH)GetStockObject(WHITE_BRUSH),
        (HBRUSH)GetStockObject(WHITE_BRUSH),
        (HBRUSH)GetStockObject(WHITE_BRUSH),
        (HBRUSH)(COLOR_BTNFACE + 1),
    };
    for (int i = 0; i < 5; i++) {
        const char* menu = i == 0 ? "FrameMenu" : nullptr;
        if (!RegisterWindowClass(classes[i], backgrounds[i], menu)) return classes[i].failureCode;
    }
    return 0;
}

// ---- Child windows -----------------------------------------------------------------

struct ViewInfo {
    int window;
    const char* className;
    DWORD style;
    const IntSetting* showKey;
    int failureCode;
};

static const ViewInfo Views[4] = {
    {WINDOW_LISTING, "Veldor_Listing", WS_OVERLAPPEDWINDOW | WS_VSCROLL, &KeyShowListing, 7},
    {WINDOW_PLOT, "Veldor_Plot", WS_OVERLAPPEDWINDOW | WS_VSCROLL | WS_HSCROLL, &KeyShowPlot, 8},
    {WINDOW_CHART, "Veldor_Chart", WS_OVERLAPPEDWINDOW, &KeyShowChart, 9},
    {WINDOW_TAGS, "Veldor_Tags", WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, &KeyShowTags, 10},
};

HWND CreateChildWindow(const char* title, const char* className, DWORD style) {
    if (shell.mdiClient == nullptr) return nullptr;
    MDICREATESTRUCTA mcs;
    memset(&mcs, 0, sizeof mcs);
    mcs.szClass = className;
    mcs.szTitle = title;
    mcs.hOwner = shell.instance;
    mcs.x = ReadWindowPlace(title, "Origin X");
    mcs.y = ReadWindowPlace(title, "Origin Y");
    mcs.cx = ReadWindowPlace(title, "Width");
    mcs.cy = ReadWindowPlace(title, "Height");
    mcs.style = style;
    HWND hwnd = (HWND)SendMessageA(shell.mdiClient, WM_MDICREATE, 0, (LPARAM)&mcs);
    if (hwnd != nullptr) ShowWindow(hwnd, SW_SHOW);
    return hwnd;
}

HWND CreateViewWindow(int window) {
    for (const ViewInfo& view : Views) {
        if (view.window == window)
            return CreateChildWindow(ChildWindowTitle(window), view.className, view.style);
    }
    return nullptr;
}

// 0 when every window asked for by the settings exists, else the failure code.
static int CreateViewWindows() {
    for (const ViewInfo& view : Views) {
        if (ReadSetting(*view.showKey) == 0) continue;
        if (CreateViewWindow(view.window) == nullptr) return view.failureCode;
    }
    return 0;
}

static void BringViewToTop(int window) {
    HWND hwnd = PlatformWindowHandle(window);
    if (hwnd != nullptr) BringWindowToTop(hwnd);
}

// ---- Sign-on box ----------------------------------------------------------------------

static void CloseSignOn(HWND box) {
    KillTimer(box, SignOnTimerId);
    EnableWindow(FrameWindow(), TRUE);
    DestroyWindow(box);
}

static void OnSignOnPaint(HWND box) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(box, &ps);
    HBITMAP bitmap = LoadBitmapA(shell.instance, "SignOn_Bitmap");
    if (bitmap != nullptr) {
        BITMAP info;
        GetObjectA(bitmap, sizeof info, &info);
        RECT client;
        GetClientRect(box, &client);
        HDC memory = CreateCompatibleDC(dc);
        HGDIOBJ old = SelectObject(memory, bitmap);
        SetStretchBltMode(dc, COLORONCOLOR);
        StretchBlt(dc, 0, 0, client.right, client.bottom, memory, 0, 0, info.bmWidth,
                   info.bmHeight, SRCCOPY);
        SelectObject(memory, old);
        DeleteDC(memory);
        DeleteObject(bitmap);
    }
    EndPaint(box, &ps);
}

static INT_PTR CALLBACK SignOnProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG:
        SetWindowPos(box, nullptr, 0, 0, 240, 190, SWP_NOMOVE | SWP_NOZORDER);
        CentreDialog(box);
        SetTimer(box, SignOnTimerId, 4000, nullptr);
        EnableWindow(FrameWindow(), FALSE);
        return TRUE;
    case WM_PAINT:
        OnSignOnPaint(box);
        return TRUE;
    case WM_TIMER:
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        CloseSignOn(box);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
        CloseSignOn(box);
        return TRUE;
    case WM_DESTROY:
        shell.signOnBox = nullptr;
        return FALSE;
    default: return FALSE;
    }
}

// ---- Message loop ---------------------------------------------------------------------------

// Scrolling keys pressed in the frame or a view go, through the frame's
// private message, to the Listing or the Plot when that is the view in front,
// which takes them as if its scroll bars were used.
static int IsForwardedKey(const MSG& msg) {
    if (msg.message != WM_KEYDOWN) return 0;
    switch (msg.wParam) {
    case VK_PRIOR:
    case VK_NEXT:
    case VK_END:
    case VK_HOME:
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: break;
    default: return 0;
    }
    HWND frame = FrameWindow();
    if (msg.hwnd != frame && msg.hwnd != shell.mdiClient && GetParent(msg.hwnd) != shell.mdiClient)
        return 0;
    HWND active = (HWND)SendMessageA(shell.mdiClient, WM_MDIGETACTIVE, 0, 0);
    return active != nullptr && (active == PlatformWindowHandle(WINDOW_LISTING) ||
                                 active == PlatformWindowHandle(WINDOW_PLOT));
}

static int RunMessageLoop(HACCEL accelerators) {
    MSG msg;
    for (;;) {
        BOOL got = GetMessageA(&msg, nullptr, 0, 0);
        if (got == 0 || got == -1) break;
        if (IsForwardedKey(msg)) {
            PostMessageA(FrameWindow(), WM_VELDOR, PRIVATE_FORWARD_KEY, (LPARAM)msg.wParam);
            continue;
        }
        HWND own = msg.hwnd;
        msg.hwnd = FrameWindow();
        if (accelerators != nullptr && TranslateAcceleratorA(FrameWindow(), accelerators, &msg))
            continue;
        msg.hwnd = own;
        if (shell.mdiClient != nullptr && TranslateMDISysAccel(shell.mdiClient, &msg)) continue;
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    return (int)msg.wParam;
}

// ---- Entry point --------------------------------------------------------------------------

// A running copy owns this name; a second start only brings its frame forward.
static int AnotherCopyRuns() {
    HANDLE mutex = CreateMutexA(nullptr, FALSE, "Trevan.VELDOR.SingleInstance");
    if (mutex == nullptr || GetLastError() != ERROR_ALREADY_EXISTS) return 0;
    CloseHandle(mutex);
    HWND frame = FindWindowA(FrameClass, nullptr);
    if (frame != nullptr) {
        ShowWindow(frame, SW_SHOWNORMAL);
        BringWindowToTop(frame);
    }
    return 1;
}

static HWND CreateFrame() {
    FramePlace stored;
    stored.x = ReadSetting(KeyMainOriginX);
    stored.y = ReadSetting(KeyMainOriginY);
    stored.width = ReadSetting(KeyMainWidth);
    stored.height = ReadSetting(KeyMainHeight);
    FramePlace place =
        PlaceFrame(stored, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    return CreateWindowExA(0, FrameClass, "VELDOR", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                           place.x, place.y, place.width, place.height, nullptr, nullptr,
                           shell.instance, nullptr);
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    if (AnotherCopyRuns()) return 0;
    shell.instance = instance;
    shell.uiThreadId = GetCurrentThreadId();
    INITCOMMONCONTROLSEX icc;
    icc.dwSize = sizeof icc;
    icc.dwICC = ICC_BAR_CLASSES;
    InitCommonControlsEx(&icc);
    BuildPaths();

    int failure = RegisterClasses();
    if (failure != 0) return ReportStartFailure(failure);
    HWND frame = CreateFrame();
    if (frame == nullptr || shell.mdiClient == nullptr) return ReportStartFailure(6);
    ShowWindow(frame, ReadSetting(KeyMainMaximised) != 0 ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL);
    UpdateWindow(frame);

    failure = CreateViewWindows();
    if (failure != 0) {
        ReportStartFailure(failure);
        DestroyWindow(frame);
        return 0;
    }
    BringViewToTop(WINDOW_PLOT);
    BringViewToTop(WINDOW_LISTING);
    BringViewToTop(WINDOW_TAGS);

    shell.signOnBox = CreateDialogA(instance, "SIGNONBOX", frame, SignOnProc);
    HACCEL accelerators = LoadAcceleratorsA(instance, MAKEINTRESOURCEA(IDR_ACCELERATORS));
    return RunMessageLoop(accelerators);
}
