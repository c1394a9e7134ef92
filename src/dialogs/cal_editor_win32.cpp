#include "dialogs/cal_editor_win32.h"

#include <commdlg.h>

#include "dialogs/cal_editor.h"
#include "resources/calibration_ids.h"
#include "dialogs/dialog_fields_win32.h"
#include "base/front_win32.h"
#include "resources/resource_ids.h"
#include "survey/survey_state.h"
#include "views/draw_list_win32.h"

namespace {

// The dialog's own message: the word parameter is one CalEditorRequest, the
// long one the channel it was posted for.
constexpr UINT WM_CAL_REQUEST = WM_APP + 1;
// The list's tab stop, in dialog units from its left edge.
constexpr int ListValueColumn = 56;

CalEditorState editor;
DrawList graph;

const DialogField CalFieldTable[] = {
    DIALOG_TEXT(IDC_CAL_POWER, CalEditorFields, power),
    DIALOG_TEXT(IDC_CAL_VALUE, CalEditorFields, value),
};

void PostRequests(HWND box, int requests) {
    const int order[] = {CAL_REQUEST_REFILL, CAL_REQUEST_CAPTION, CAL_REQUEST_SAVE_LIST};
    for (int request : order)
        if (requests & request)
            PostMessageA(box, WM_CAL_REQUEST, (WPARAM)request, (LPARAM)editor.calEditorChannel);
}

// The list box shows the working copy and its selection.
void ShowList(HWND box) {
    HWND list = GetDlgItem(box, IDC_CAL_LIST);
    SendMessageA(list, WM_SETREDRAW, FALSE, 0);
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    for (int i = 0; i < editor.count; i++)
        SendMessageA(list, LB_ADDSTRING, 0, (LPARAM)editor.lines[i]);
    SendMessageA(list, LB_SETCURSEL, (WPARAM)editor.selected, 0);
    SendMessageA(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
}

void ReadSelection(HWND box) {
    editor.selected = (int)SendDlgItemMessageA(box, IDC_CAL_LIST, LB_GETCURSEL, 0, 0);
}

void OnRequest(HWND box, int request, int channel) {
    switch (request) {
    case CAL_REQUEST_REFILL: {
        CalEditorRefill(&editor);
        ShowList(box);
        CalEditorFields empty = {};
        DialogFill(box, CalFieldTable, &empty);
        CalEditorRedraw();
        break;
    }
    case CAL_REQUEST_CAPTION: CalEditorShowCaption(&editor); break;
    case CAL_REQUEST_SAVE_LIST: CalEditorSaveList(&editor, channel); break;
    default: break;
    }
}

// The standard file dialog of "Open" (must exist) and "New" (a new name).
int AskCalFileName(HWND box, int open, char* path, int size) {
    char file[PathSize] = "";
    OPENFILENAMEA ofn;
    ZeroMemory(&ofn, sizeof ofn);
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = box;
    ofn.lpstrFilter = "Cal Files (*.CAL)\0*.CAL\0All Files (*.*)\0*.*\0";
    ofn.nFilterIndex = 1;
    ofn.lpstrFile = file;
    ofn.nMaxFile = sizeof file;
    ofn.lpstrTitle = "Open Calibration File...";
    ofn.Flags = OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | (open ? OFN_FILEMUSTEXIST : 0);
    BOOL confirmed = open ? GetOpenFileNameA(&ofn) : GetSaveFileNameA(&ofn);
    if (!confirmed) return 0;
    lstrcpynA(path, file, size);
    return 1;
}

void CloseCalibrationBox(HWND box) {
    CalEditorClose(&editor);
    SetPlatformWindow(WINDOW_CALIBRATION, nullptr);
    EndDialog(box, 1);
}

void OnCalInit(HWND box) {
    CentreDialog(box);
    int valueColumn = ListValueColumn;  // under "Value (Y axis)"
    SendDlgItemMessageA(box, IDC_CAL_LIST, LB_SETTABSTOPS, 1, (LPARAM)&valueColumn);
    SetPlatformWindow(WINDOW_CALIBRATION, box);
    int requests = CalEditorOpen(&editor);
    CheckRadioButton(box, IDC_CAL_CHANNEL1, IDC_CAL_CHANNEL4, IDC_CAL_CHANNEL1);
    PostRequests(box, requests);
}

void OnCalPaint(HWND box) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(box, &ps);
    RECT client;
    GetClientRect(box, &client);
    DrawListClear(&graph);
    PaintCalGraph(&editor, ViewRect{client.left, client.top, client.right, client.bottom},
                  liveState.liveReadings[editor.calEditorChannel], &graph);
    RenderDrawList(dc, graph, nullptr);
    EndPaint(box, &ps);
}

void OnCalButton(HWND box, int id) {
    CalEditorFields fields = {};
    char path[PathSize];
    switch (id) {
    case IDC_CAL_CHANNEL1:
    case IDC_CAL_CHANNEL2:
    case IDC_CAL_CHANNEL3:
    case IDC_CAL_CHANNEL4:
        PostRequests(box, CalEditorChooseChannel(&editor, id - IDC_CAL_CHANNEL1));
        break;
    case IDC_CAL_INSERT_POWER:
        DialogRead(box, CalFieldTable, &fields);
        CalEditorInsertPower(&editor, &fields);
        DialogFill(box, CalFieldTable, &fields);
        break;
    case IDC_CAL_ADD:
    case IDC_CAL_CHANGE:
    case IDC_CAL_DELETE: {
        DialogRead(box, CalFieldTable, &fields);
        ReadSelection(box);
        int shown = editor.selected;
        int changed = id == IDC_CAL_ADD      ? CalEditorAdd(&editor, &fields)
                      : id == IDC_CAL_CHANGE ? CalEditorChange(&editor, &fields)
                                             : CalEditorDelete(&editor);
        if (changed || editor.selected != shown) ShowList(box);
        break;
    }
    case IDC_CAL_NEW:
    case IDC_CAL_OPEN:
        CalEditorAskToSave(&editor, 1);
        if (!AskCalFileName(box, id == IDC_CAL_OPEN, path, sizeof path)) break;
        PostRequests(box, id == IDC_CAL_OPEN ? CalEditorOpenFile(&editor, path)
                                             : CalEditorNewFile(&editor, path));
        break;
    case IDC_CAL_SAVE: CalEditorSave(&editor); break;
    case IDC_CAL_SAVE_AS: CalEditorSaveAs(&editor); break;
    case IDC_CAL_DONE: CloseCalibrationBox(box); break;
    case IDC_CAL_HELP: PlatformFrameCommand(IDM_HELP_HELP); break;
    default: break;
    }
}

void OnCalListSelect(HWND box) {
    ReadSelection(box);
    CalEditorFields fields = {};
    DialogRead(box, CalFieldTable, &fields);
    CalEditorPickLine(&editor, editor.selected, &fields);
    DialogFill(box, CalFieldTable, &fields);
}

INT_PTR CALLBACK CalibrationBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: OnCalInit(box); return TRUE;
    case WM_PAINT: OnCalPaint(box); return TRUE;
    case WM_CAL_REQUEST: OnRequest(box, (int)wParam, (int)lParam); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL) CloseCalibrationBox(box);  // Escape and the close box
        else if (LOWORD(wParam) == IDC_CAL_LIST && HIWORD(wParam) == LBN_SELCHANGE)
            OnCalListSelect(box);
        else if (HIWORD(wParam) == BN_CLICKED) OnCalButton(box, LOWORD(wParam));
        return TRUE;
    case WM_DESTROY: SetPlatformWindow(WINDOW_CALIBRATION, nullptr); return FALSE;
    default: return FALSE;
    }
}

}  // namespace

void OnCalibration(HWND frame) {
    DialogBoxParamA(shell.instance, "CalibrationBox", frame, CalibrationBoxProc, 0);
}
