#include "dialogs/instrument_dialogs_win32.h"

#include <commctrl.h>
#include <stdio.h>

#include "dialogs/dialog_fields_win32.h"
#include "dialogs/instrument_dialogs.h"
#include "dialogs/instruments_ids.h"
#include "shell/shell_win32.h"

namespace {

// ---- Drop-down lists ------------------------------------------------------------------------

void FillList(HWND box, int id, const char* const* items, int count, const char* selected) {
    for (int i = 0; i < count; i++) SendDlgItemMessageA(box, id, CB_ADDSTRING, 0, (LPARAM)items[i]);
    LRESULT at = SendDlgItemMessageA(box, id, CB_FINDSTRINGEXACT, (WPARAM)-1, (LPARAM)selected);
    SendDlgItemMessageA(box, id, CB_SETCURSEL, at == CB_ERR ? (WPARAM)-1 : (WPARAM)at, 0);
}

// With no selection the text keeps what it held.
void ReadList(HWND box, int id, char* text, int size) {
    LRESULT at = SendDlgItemMessageA(box, id, CB_GETCURSEL, 0, 0);
    if (at == CB_ERR) return;
    LRESULT length = SendDlgItemMessageA(box, id, CB_GETLBTEXTLEN, (WPARAM)at, 0);
    if (length == CB_ERR || length >= size) return;
    SendDlgItemMessageA(box, id, CB_GETLBTEXT, (WPARAM)at, (LPARAM)text);
}

// Help, OK and Cancel of every one of the four; returns 1 when handled.
int OnCommonButton(HWND box, int id) {
    return DialogCancelOrHelp(box, id, IDC_INSTR_HELP);
}

// ---- PortsBox -------------------------------------------------------------------------------

void OnPortsInit(HWND box) {
    CentreDialog(box);
    PortsValues values;
    PortsBoxOpen(&values);
    char names[PortCandidates][PortNameSize];
    const char* listed[PortCandidates];
    int count = 0;
    for (int n = 1; n <= PortCandidates; n++) {
        PortDeviceName(n, names[count], PortNameSize);
        HANDLE port = CreateFileA(names[count], GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
        int opened = port != INVALID_HANDLE_VALUE;
        unsigned long error = opened ? 0 : GetLastError();
        if (opened) CloseHandle(port);
        if (PortListed(opened, error)) listed[count] = names[count], count++;
    }
    FillList(box, IDC_PORTS_PORT, listed, count, values.port);
}

void OnPortsOk(HWND box) {
    PortsValues values;
    PortsBoxOpen(&values);
    ReadList(box, IDC_PORTS_PORT, values.port, sizeof values.port);
    PortsBoxStore(&values);
    PostMessageA(FrameWindow(), WM_VELDOR, PRIVATE_OPEN_PORT, 0);
    EndDialog(box, 1);
}

INT_PTR CALLBACK PortsBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG: OnPortsInit(box); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) OnPortsOk(box);
        else OnCommonButton(box, LOWORD(wParam));
        return TRUE;
    default: return FALSE;
    }
}

// ---- GpsDiffBox -----------------------------------------------------------------------------

const DialogField GpsDiffFieldTable[] = {
    DIALOG_FIELD(IDC_GPSDIFF_ENABLE, FIELD_CHECK, GpsDiffValues, enable, 0),
};

void OnGpsDiffInit(HWND box) {
    CentreDialog(box);
    GpsDiffValues values;
    GpsDiffBoxOpen(&values);
    DialogFill(box, GpsDiffFieldTable, &values);
    FillList(box, IDC_GPSDIFF_BAUD, GpsDiffBaudRates, 4, values.baudRate);
}

void OnGpsDiffOk(HWND box) {
    GpsDiffValues values;
    GpsDiffBoxOpen(&values);
    DialogRead(box, GpsDiffFieldTable, &values);
    ReadList(box, IDC_GPSDIFF_BAUD, values.baudRate, sizeof values.baudRate);
    GpsDiffBoxStore(&values);
    EndDialog(box, 1);
}

INT_PTR CALLBACK GpsDiffBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG: OnGpsDiffInit(box); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) OnGpsDiffOk(box);
        else OnCommonButton(box, LOWORD(wParam));
        return TRUE;
    default: return FALSE;
    }
}

// ---- AR3000aBox -----------------------------------------------------------------------------

#define AR_CHANNEL(c)                                                          \
    DIALOG_TEXT(IDC_AR_FREQ + c, Ar3000aValues, freq[c]),                      \
        DIALOG_FIELD(IDC_AR_ATT + c, FIELD_CHECK, Ar3000aValues, attOn[c], 0)

const DialogField Ar3000aFieldTable[] = {
    DIALOG_FIELD(IDC_AR_ENABLE, FIELD_CHECK, Ar3000aValues, enable, 0),
    AR_CHANNEL(0), AR_CHANNEL(1), AR_CHANNEL(2), AR_CHANNEL(3),
};

void OnAr3000aInit(HWND box) {
    CentreDialog(box);
    Ar3000aValues values;
    Ar3000aBoxOpen(&values);
    DialogFill(box, Ar3000aFieldTable, &values);
    for (int c = 0; c < 4; c++) FillList(box, IDC_AR_MODE + c, Ar3000aModes, 6, values.mode[c]);
    FillList(box, IDC_AR_BAUD, Ar3000aBaudRates, 2, values.baudRate);
}

void OnAr3000aOk(HWND box) {
    Ar3000aValues values;
    Ar3000aBoxOpen(&values);
    DialogRead(box, Ar3000aFieldTable, &values);
    for (int c = 0; c < 4; c++)
        ReadList(box, IDC_AR_MODE + c, values.mode[c], sizeof values.mode[c]);
    ReadList(box, IDC_AR_BAUD, values.baudRate, sizeof values.baudRate);
    Ar3000aBoxStore(&values);
    EndDialog(box, 1);
}

INT_PTR CALLBACK Ar3000aBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG: OnAr3000aInit(box); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) OnAr3000aOk(box);
        else OnCommonButton(box, LOWORD(wParam));
        return TRUE;
    default: return FALSE;
    }
}

// ---- TzrBox ---------------------------------------------------------------------------------

const DialogField TzrFieldTable[] = {
    DIALOG_FIELD(IDC_TZR_ENABLE, FIELD_CHECK, TzrValues, enable, 0),
    DIALOG_TEXT(IDC_TZR_INITIAL, TzrValues, initialChannel),
    DIALOG_TEXT(IDC_TZR_COUNT, TzrValues, channelCount),
    DIALOG_FIELD(IDC_TZR_INCREMENT, FIELD_CHECK, TzrValues, increment, 0),
    DIALOG_TEXT(IDC_TZR_INPUT, TzrValues, inputChannel),
};

// The state of the enable box at opening, for Cancel, is the dialog's own.
int TzrEnableAtOpening(HWND box) { return (int)GetWindowLongPtrA(box, DWLP_USER); }

void OnTzrInit(HWND box) {
    CentreDialog(box);
    TzrValues values;
    TzrBoxOpen(&values);
    DialogFill(box, TzrFieldTable, &values);
    SetWindowLongPtrA(box, DWLP_USER, values.enable);
    // The spins never move themselves: each press goes through TzrSpin.
    const int spins[] = {IDC_TZR_INITIAL_SPIN, IDC_TZR_COUNT_SPIN, IDC_TZR_INPUT_SPIN};
    for (int id : spins) {
        SendDlgItemMessageA(box, id, UDM_SETRANGE32, 0, 100);
        SendDlgItemMessageA(box, id, UDM_SETPOS32, 0, 50);
    }
}

void OnTzrButton(HWND box, int id) {
    TzrValues values;
    DialogRead(box, TzrFieldTable, &values);
    switch (id) {
    case IDC_TZR_ENABLE: TzrEnableClicked(values.enable); break;
    case IDC_TZR_INCREMENT: TzrIncrementClicked(values.increment); break;
    case IDC_TZR_SET_NOW: TzrSetChannelNow(&values); break;
    case IDOK:
        if (TzrBoxStore(&values)) EndDialog(box, 1);
        break;
    case IDCANCEL:
        TzrBoxCancel(TzrEnableAtOpening(box));
        EndDialog(box, 0);
        break;
    default: OnCommonButton(box, id); break;
    }
}

void OnTzrSpin(HWND box, int spinId, int delta) {
    int field = spinId == IDC_TZR_INITIAL_SPIN ? TZR_INITIAL
                : spinId == IDC_TZR_COUNT_SPIN ? TZR_COUNT
                                               : TZR_INPUT;
    TzrValues values;
    DialogRead(box, TzrFieldTable, &values);
    TzrSpin(&values, field, delta > 0 ? 1 : -1);
    DialogFill(box, TzrFieldTable, &values);
}

INT_PTR CALLBACK TzrBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: OnTzrInit(box); return TRUE;
    case WM_COMMAND:
        if (HIWORD(wParam) == BN_CLICKED) OnTzrButton(box, LOWORD(wParam));
        return TRUE;
    case WM_NOTIFY: {
        int spinId = 0, delta = SpinPress(lParam, &spinId);
        if (delta == 0) return FALSE;
        OnTzrSpin(box, spinId, delta);
        return RefuseSpinMove(box);
    }
    default: return FALSE;
    }
}

}  // namespace

void OnConfigurePorts(HWND frame) {
    DialogBoxParamA(shell.instance, "PortsBox", frame, PortsBoxProc, 0);
}

void OnConfigureGpsDiff(HWND frame) {
    DialogBoxParamA(shell.instance, "GpsDiffBox", frame, GpsDiffBoxProc, 0);
}

void OnConfigureAr3000a(HWND frame) {
    DialogBoxParamA(shell.instance, "AR3000aBox", frame, Ar3000aBoxProc, 0);
}

void OnConfigureTzr4100(HWND frame) {
    RunDialogBox(frame, "TzrBox", TzrBoxProc);
}
