#include "dialogs/dialog_fields_win32.h"

#include <commctrl.h>
#include <stdint.h>

#include "base/front_win32.h"
#include "resources/resource_ids.h"

static void* At(void* values, const DialogField& f) { return (char*)values + f.offset; }
static const void* At(const void* values, const DialogField& f) {
    return (const char*)values + f.offset;
}

static void FillList(HWND dialog, const DialogField& f, const char* selected) {
    for (int i = 0; i < f.itemCount; i++)
        SendDlgItemMessageA(dialog, f.controlId, CB_ADDSTRING, 0, (LPARAM)f.items[i]);
    LRESULT at =
        SendDlgItemMessageA(dialog, f.controlId, CB_FINDSTRINGEXACT, (WPARAM)-1, (LPARAM)selected);
    SendDlgItemMessageA(dialog, f.controlId, CB_SETCURSEL, at == CB_ERR ? (WPARAM)-1 : (WPARAM)at, 0);
}

// With no selection the text keeps what it held.
static void ReadList(HWND dialog, const DialogField& f, char* text) {
    LRESULT at = SendDlgItemMessageA(dialog, f.controlId, CB_GETCURSEL, 0, 0);
    if (at == CB_ERR) return;
    LRESULT length = SendDlgItemMessageA(dialog, f.controlId, CB_GETLBTEXTLEN, (WPARAM)at, 0);
    if (length == CB_ERR || length >= f.size) return;
    SendDlgItemMessageA(dialog, f.controlId, CB_GETLBTEXT, (WPARAM)at, (LPARAM)text);
}

void DialogFill(HWND dialog, const DialogField* fields, int count, const void* values) {
    for (int i = 0; i < count; i++) {
        const DialogField& f = fields[i];
        switch (f.kind) {
        case FIELD_TEXT:
            SendDlgItemMessageA(dialog, f.controlId, EM_LIMITTEXT, (WPARAM)(f.size - 1), 0);
            SetDlgItemTextA(dialog, f.controlId, (const char*)At(values, f));
            break;
        case FIELD_CHECK:
            CheckDlgButton(dialog, f.controlId,
                           *(const int32_t*)At(values, f) ? BST_CHECKED : BST_UNCHECKED);
            break;
        case FIELD_RADIO:
            CheckRadioButton(dialog, f.controlId, f.controlId + f.size - 1,
                             f.controlId + *(const int32_t*)At(values, f));
            break;
        case FIELD_LIST: FillList(dialog, f, (const char*)At(values, f)); break;
        default: break;
        }
    }
}

void DialogRead(HWND dialog, const DialogField* fields, int count, void* values) {
    for (int i = 0; i < count; i++) {
        const DialogField& f = fields[i];
        switch (f.kind) {
        case FIELD_TEXT: GetDlgItemTextA(dialog, f.controlId, (char*)At(values, f), f.size); break;
        case FIELD_CHECK:
            *(int32_t*)At(values, f) = IsDlgButtonChecked(dialog, f.controlId) == BST_CHECKED;
            break;
        case FIELD_RADIO:
            for (int k = 0; k < f.size; k++)
                if (IsDlgButtonChecked(dialog, f.controlId + k) == BST_CHECKED)
                    *(int32_t*)At(values, f) = k;
            break;
        case FIELD_LIST: ReadList(dialog, f, (char*)At(values, f)); break;
        default: break;
        }
    }
}

void DialogSpin(HWND dialog, int editId, int delta, int low, int high) {
    char text[32], out[32];
    GetDlgItemTextA(dialog, editId, text, sizeof text);
    SpinStep(text, delta, low, high, out, sizeof out);
    SetDlgItemTextA(dialog, editId, out);
}

int DialogCancelOrHelp(HWND dialog, int id, int helpId) {
    if (id == IDCANCEL)
        EndDialog(dialog, 0);
    else if (id == helpId)
        PlatformFrameCommand(IDM_HELP_HELP);
    else
        return 0;
    return 1;
}

INT_PTR RunDialogBox(HWND owner, const char* name, DLGPROC proc) {
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_UPDOWN_CLASS};
    InitCommonControlsEx(&controls);
    return DialogBoxParamA(shell.instance, name, owner, proc, 0);
}

void PrepareSpins(HWND dialog, int firstSpinId, int firstEditId, int count) {
    for (int i = 0; i < count; i++) {
        HWND spin = GetDlgItem(dialog, firstSpinId + i);
        SendMessageA(spin, UDM_SETBUDDY, (WPARAM)GetDlgItem(dialog, firstEditId + i), 0);
        SendMessageA(spin, UDM_SETRANGE32, 0, 1000);
        SendMessageA(spin, UDM_SETPOS32, 0, 500);
    }
}

int SpinPress(LPARAM lParam, int* spinId) {
    const NMHDR* header = (const NMHDR*)lParam;
    if (header->code != UDN_DELTAPOS) return 0;
    *spinId = (int)header->idFrom;
    return ((const NMUPDOWN*)lParam)->iDelta > 0 ? 1 : -1;
}

INT_PTR RefuseSpinMove(HWND dialog) {
    SetWindowLongPtrA(dialog, DWLP_MSGRESULT, TRUE);
    return TRUE;
}
