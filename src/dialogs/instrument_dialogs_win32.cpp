#include "dialogs/instrument_dialogs_win32.h"

#include <commctrl.h>
#include <stdio.h>

#include "dialogs/dialog_fields_win32.h"
#include "dialogs/instrument_dialogs.h"
#include "resources/instruments_ids.h"
#include "base/front_win32.h"

namespace {

// Help, OK and Cancel of every one of the four; returns 1 when handled.
int OnCommonButton(HWND box, int id) {
    return DialogCancelOrHelp(box, id, IDC_INSTR_HELP);
}

// The shape of the Ports, GpsDiff and AR3000a boxes: on opening, centred and
// filled from the values that open gives; OK reads the controls back over
// those values, stores them and ends with 1; Help and Cancel as everywhere.
template <class Values>
struct InstrumentBox {
    const DialogField* fields;
    int fieldCount;
    void (*open)(Values* values);
    void (*store)(const Values* values);
};

template <class Values>
INT_PTR InstrumentBoxMessage(const InstrumentBox<Values>& shape, HWND box, UINT message,
                             WPARAM wParam) {
    Values values;
    switch (message) {
    case WM_INITDIALOG:
        CentreDialog(box);
        shape.open(&values);
        DialogFill(box, shape.fields, shape.fieldCount, &values);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDOK) {
            OnCommonButton(box, LOWORD(wParam));
            return TRUE;
        }
        shape.open(&values);
        DialogRead(box, shape.fields, shape.fieldCount, &values);
        shape.store(&values);
        EndDialog(box, 1);
        return TRUE;
    default: return FALSE;
    }
}

#define INSTRUMENT_BOX(Values, fields, open, store) \
    InstrumentBox<Values> { fields, (int)(sizeof fields / sizeof fields[0]), open, store }

// ---- PortsBox -------------------------------------------------------------------------------

// The list offers the ports that exist on this PC, added before the box is filled.
const DialogField PortsFieldTable[] = {
    DIALOG_LIST(IDC_PORTS_PORT, PortsValues, port, nullptr, 0),
};

void AddPortNames(HWND box) {
    for (int n = 1; n <= PortCandidates; n++) {
        char name[PortNameSize];
        PortDeviceName(n, name, PortNameSize);
        HANDLE port =
            CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        int opened = port != INVALID_HANDLE_VALUE;
        unsigned long error = opened ? 0 : GetLastError();
        if (opened) CloseHandle(port);
        if (PortListed(opened, error))
            SendDlgItemMessageA(box, IDC_PORTS_PORT, CB_ADDSTRING, 0, (LPARAM)name);
    }
}

// The port in force changes at once: the frame reopens it.
void StorePorts(const PortsValues* values) {
    PortsBoxStore(values);
    PostMessageA(FrameWindow(), WM_VELDOR, PRIVATE_OPEN_PORT, 0);
}

INT_PTR CALLBACK PortsBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    static const InstrumentBox<PortsValues> shape =
        INSTRUMENT_BOX(PortsValues, PortsFieldTable, PortsBoxOpen, StorePorts);
    if (message == WM_INITDIALOG) AddPortNames(box);
    return InstrumentBoxMessage(shape, box, message, wParam);
}

// ---- GpsDiffBox -----------------------------------------------------------------------------

const DialogField GpsDiffFieldTable[] = {
    DIALOG_FIELD(IDC_GPSDIFF_ENABLE, FIELD_CHECK, GpsDiffValues, enable, 0),
    DIALOG_LIST(IDC_GPSDIFF_BAUD, GpsDiffValues, baudRate, GpsDiffBaudRates, 4),
};

INT_PTR CALLBACK GpsDiffBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    static const InstrumentBox<GpsDiffValues> shape =
        INSTRUMENT_BOX(GpsDiffValues, GpsDiffFieldTable, GpsDiffBoxOpen, GpsDiffBoxStore);
    return InstrumentBoxMessage(shape, box, message, wParam);
}

// ---- AR3000aBox -----------------------------------------------------------------------------

#define AR_CHANNEL(c)                                                          \
    DIALOG_TEXT(IDC_AR_FREQ + c, Ar3000aValues, freq[c]),                      \
        DIALOG_FIELD(IDC_AR_ATT + c, FIELD_CHECK, Ar3000aValues, attOn[c], 0), \
        DIALOG_LIST(IDC_AR_MODE + c, Ar3000aValues, mode[c], Ar3000aModes, 6)

const DialogField Ar3000aFieldTable[] = {
    DIALOG_FIELD(IDC_AR_ENABLE, FIELD_CHECK, Ar3000aValues, enable, 0),
    AR_CHANNEL(0), AR_CHANNEL(1), AR_CHANNEL(2), AR_CHANNEL(3),
    DIALOG_LIST(IDC_AR_BAUD, Ar3000aValues, baudRate, Ar3000aBaudRates, 2),
};

INT_PTR CALLBACK Ar3000aBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    static const InstrumentBox<Ar3000aValues> shape =
        INSTRUMENT_BOX(Ar3000aValues, Ar3000aFieldTable, Ar3000aBoxOpen, Ar3000aBoxStore);
    return InstrumentBoxMessage(shape, box, message, wParam);
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
