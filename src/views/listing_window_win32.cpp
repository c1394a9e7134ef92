// The Listing window: dispatches its messages to small handlers, renders what
// the listing view paints and carries out the scroll moves it decides.
#include <windows.h>
#include <windowsx.h>

#include "base/busy.h"
#include "resources/resource_ids.h"
#include "base/front_win32.h"
#include "survey/survey_state.h"
#include "views/child_windows_win32.h"
#include "views/draw_list_win32.h"
#include "views/listing_view.h"

static_assert(SB_LINEUP == LISTING_SCROLL_LINE_UP && SB_LINEDOWN == LISTING_SCROLL_LINE_DOWN &&
                  SB_PAGEUP == LISTING_SCROLL_PAGE_UP &&
                  SB_PAGEDOWN == LISTING_SCROLL_PAGE_DOWN &&
                  SB_THUMBPOSITION == LISTING_SCROLL_THUMB_POSITION &&
                  SB_THUMBTRACK == LISTING_SCROLL_THUMB_TRACK && SB_TOP == LISTING_SCROLL_TOP &&
                  SB_BOTTOM == LISTING_SCROLL_BOTTOM,
              "the listing's scroll requests are the scroll bar's codes");

struct PopupEntry {
    UINT id;  // 0 for a separator
    const char* text;
};
static const PopupEntry PopupEntries[] = {
    {IDM_LISTING_DELETE, "&Delete Record"},
    {0, nullptr},
    {IDM_RECORD_START, "&Start Record"},
    {IDM_RECORD_STOP, "S&top Record"},
    {IDM_RECORD_CLEAR, "&Clear Records"},
    {IDM_RECORD_FILTER, "&Filter Records"},
    {IDM_RECORD_STATISTICS, "&Show Statistics"},
    {0, nullptr},
    {IDM_LISTING_SHOW_LOCATION, "Show &Location"},
    {IDM_LISTING_HIDE_LOCATION, "&Hide Location"},
};

static HMENU listingPopupMenu;
static DrawList listingList;

static HMENU BuildPopupMenu() {
    HMENU menu = CreatePopupMenu();
    if (menu == nullptr) return nullptr;
    for (const PopupEntry& entry : PopupEntries) {
        if (entry.id == 0) AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
        else AppendMenuA(menu, MF_STRING, entry.id, entry.text);
    }
    return menu;
}

static void OnCreate(HWND hwnd) {
    BeginBusy();
    listingCharHeight = ViewLineHeight(WINDOW_LISTING);
    SetScrollRange(hwnd, SB_VERT, 0, 100, FALSE);
    listingPopupMenu = BuildPopupMenu();
    listingTopIndex = 0;
    SetScrollPos(hwnd, SB_VERT, 0, TRUE);
    EndBusy();
}

static void OnSize(HWND hwnd, int width, int height) {
    ListingLayout(width, height);
    InvalidateRect(hwnd, nullptr, TRUE);
}

static void OnPaint(HWND hwnd) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(hwnd, &ps);
    DrawListClear(&listingList);
    ListingPaint(&listingList);
    RenderDrawList(dc, listingList, ViewFont(WINDOW_LISTING));
    EndPaint(hwnd, &ps);
}

static void OnScroll(HWND hwnd, int request, int thumb) {
    ListingScrollResult result = ListingScroll(request, thumb);
    if (result.action == LISTING_SCROLL_NONE) return;
    SetScrollPos(hwnd, SB_VERT, result.thumb, TRUE);
    if (result.action == LISTING_SCROLL_REPAINT) {
        ViewRect strips;
        ListingAreaRect(AREA_LISTING_COLUMNS, &strips);
        RECT rect = ToRect(strips);
        InvalidateRect(hwnd, &rect, TRUE);
        return;
    }
    RECT moved = ToRect(result.moved);
    RECT uncovered = ToRect(result.uncovered);
    ScrollWindow(hwnd, 0, result.dy, &moved, &moved);
    InvalidateRect(hwnd, &uncovered, FALSE);
}

static void OnFontsChanged(HWND hwnd) {
    listingCharHeight = ViewLineHeight(WINDOW_LISTING);
    RECT client;
    GetClientRect(hwnd, &client);
    ListingLayout(client.right, client.bottom);
    SetScrollPos(hwnd, SB_VERT, ListingThumb(), TRUE);
}

static void OnPrivate(HWND hwnd, WPARAM code, LPARAM lParam) {
    switch (LOWORD(code)) {
    case PRIVATE_FORWARD_KEY: {
        int request = ListingKeyRequest(LOWORD(lParam));
        if (request >= 0) PostMessageA(hwnd, WM_VSCROLL, MAKEWPARAM(request, 0), 0);
        break;
    }
    case PRIVATE_FONTS_CHANGED: OnFontsChanged(hwnd); break;
    default: break;
    }
}

static void OnRightButton(HWND hwnd, int x, int y) {
    if (listingPopupMenu == nullptr) return;
    ListingRightClick(y);
    POINT point = {x, y};
    ClientToScreen(hwnd, &point);
    TrackPopupMenu(listingPopupMenu, TPM_LEFTALIGN | TPM_RIGHTBUTTON, point.x, point.y, 0, hwnd,
                   nullptr);
}

static void OnCommand(HWND hwnd, int id) {
    switch (ListingCommand(id)) {
    case LISTING_COMMAND_TO_FRAME:
        PostMessageA(FrameWindow(), WM_COMMAND, MAKEWPARAM(id, 0), 0);
        break;
    case LISTING_COMMAND_STATISTICS: {
        char text[ListingStatisticsSize];
        ListingStatisticsText(text);
        MessageBoxA(hwnd, text, "VELDOR", MB_OK | MB_ICONINFORMATION);
        break;
    }
    case LISTING_COMMAND_FILTER_DIALOG:
        if (AskFrame(PRIVATE_FILTER_BOX, (LPARAM)hwnd)) ListingFinish();
        break;
    default: break;
    }
}

static void OnDestroy() {
    if (listingPopupMenu != nullptr) DestroyMenu(listingPopupMenu);
    listingPopupMenu = nullptr;
}

LRESULT CALLBACK ListingWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        ViewWindowDefault(WINDOW_LISTING, hwnd, message, wParam, lParam);
        OnCreate(hwnd);
        return 0;
    case WM_SIZE:
        OnSize(hwnd, LOWORD(lParam), HIWORD(lParam));
        break;  // the MDI child needs its default sizing too
    case WM_PAINT: OnPaint(hwnd); return 0;
    case WM_VSCROLL: OnScroll(hwnd, LOWORD(wParam), HIWORD(wParam)); return 0;
    case WM_VELDOR: OnPrivate(hwnd, wParam, lParam); return 0;
    case WM_RBUTTONDOWN: OnRightButton(hwnd, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;
    case WM_RBUTTONUP: return 0;
    case WM_COMMAND: OnCommand(hwnd, LOWORD(wParam)); return 0;
    case WM_DESTROY: OnDestroy(); break;
    default: break;
    }
    return ViewWindowDefault(WINDOW_LISTING, hwnd, message, wParam, lParam);
}
