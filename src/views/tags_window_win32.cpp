// The Text Tags window: a list of the tag table, refilled on every refresh
// request, and the buttons Show, Hide, Add, Edit and Delete beside it. Its
// place and fixed size are those of every view window (child_windows_win32).
#include <windows.h>

#include "base/busy.h"
#include "resources/tags_ids.h"
#include "base/front_win32.h"
#include "survey/survey_state.h"
#include "views/child_windows_win32.h"
#include "views/tags_view.h"

struct TagsButton {
    int id;
    const char* text;
    int top;  // in unitX, as every distance inside the window
};
static const TagsButton TagsButtons[] = {
    {IDC_TAGS_SHOW, "Show", 7}, {IDC_TAGS_HIDE, "Hide", 24}, {IDC_TAGS_ADD, "Add", 41},
    {IDC_TAGS_EDIT, "Edit", 58}, {IDC_TAGS_DELETE, "Delete", 75},
};

// The buttons that act on the selected line.
static const int SelectionButtons[] = {IDC_TAGS_SHOW, IDC_TAGS_EDIT, IDC_TAGS_DELETE};

static HWND TagsList(HWND hwnd) { return GetDlgItem(hwnd, IDC_TAGS_LIST); }

// The selected line, which is a tag number; -1 for none.
static int SelectedTag(HWND hwnd) {
    LRESULT line = SendMessageA(TagsList(hwnd), LB_GETCURSEL, 0, 0);
    return line == LB_ERR ? -1 : (int)line;
}

static void UpdateButtons(HWND hwnd) {
    BOOL selected = SelectedTag(hwnd) >= 0;
    for (int id : SelectionButtons) EnableWindow(GetDlgItem(hwnd, id), selected);
}

static void OnCreate(HWND hwnd) {
    int unitX = LOWORD(GetDialogBaseUnits()) / 4;
    CreateWindowExA(0, "LISTBOX", "", WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL | LBS_NOTIFY,
                    5 * unitX, 7 * unitX, 117 * unitX, 82 * unitX, hwnd,
                    (HMENU)(INT_PTR)IDC_TAGS_LIST, shell.instance, nullptr);
    for (const TagsButton& b : TagsButtons)
        CreateWindowExA(0, "BUTTON", b.text, WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON, 130 * unitX,
                        b.top * unitX, 40 * unitX, 14 * unitX, hwnd, (HMENU)(INT_PTR)b.id,
                        shell.instance, nullptr);
    UpdateButtons(hwnd);
    PostMessageA(hwnd, WM_VELDOR, 0, 0);
}

static void OnRefresh(HWND hwnd) {
    BeginBusy();
    SortTags();
    HWND list = TagsList(hwnd);
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    for (int i = 0; i < tagCount; i++) {
        char line[TagTextSize + 16];
        TagLineText(i, line, sizeof line);
        SendMessageA(list, LB_ADDSTRING, 0, (LPARAM)line);
    }
    UpdateButtons(hwnd);
    EndBusy();
}

static void OnCommand(HWND hwnd, int id, UINT notify) {
    switch (id) {
    case IDC_TAGS_LIST:
        if (notify == LBN_SELCHANGE) UpdateButtons(hwnd);
        else if (notify == LBN_DBLCLK) ShowTagRecord(SelectedTag(hwnd));
        break;
    case IDC_TAGS_SHOW: ShowTagRecord(SelectedTag(hwnd)); break;
    case IDC_TAGS_HIDE: HideTagLocation(); break;
    case IDC_TAGS_ADD: AskFrame(PRIVATE_EDIT_TAG, -1); break;
    case IDC_TAGS_EDIT:
        if (SelectedTag(hwnd) >= 0) AskFrame(PRIVATE_EDIT_TAG, SelectedTag(hwnd));
        break;
    case IDC_TAGS_DELETE: DeleteTag(SelectedTag(hwnd)); break;
    default: break;
    }
}

LRESULT CALLBACK TagsWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        ViewWindowDefault(WINDOW_TAGS, hwnd, message, wParam, lParam);
        OnCreate(hwnd);
        return 0;
    case WM_VELDOR:
        if (wParam == 0) OnRefresh(hwnd);
        return 0;
    case WM_COMMAND:
        OnCommand(hwnd, LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_DESTROY:
        // The marks that Show (or the Listing) set would stay with nobody to clear them.
        HideTagLocation();
        break;
    default: break;
    }
    return ViewWindowDefault(WINDOW_TAGS, hwnd, message, wParam, lParam);
}
