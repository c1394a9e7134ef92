#include "dialogs/general_dialogs_win32.h"

#include "dialogs/dialog_fields_win32.h"
#include "dialogs/general_dialogs.h"
#include "resources/general_ids.h"
#include "base/front_win32.h"

namespace {

const DialogField DisplayFields[] = {
    DIALOG_FIELD(IDC_DISPLAY_DEG, FIELD_RADIO, DisplayBoxValues, latLong, 4),
    DIALOG_FIELD(IDC_DISPLAY_NORTH_SOUTH, FIELD_RADIO, DisplayBoxValues, sign, 2),
    DIALOG_FIELD(IDC_DISPLAY_READING_0, FIELD_RADIO, DisplayBoxValues, reading, 4),
};

const DialogField ColoursFields[] = {
    DIALOG_TEXT(IDC_COLOURS_BREAK1, ColoursBoxValues, breaks[0]),
    DIALOG_TEXT(IDC_COLOURS_BREAK2, ColoursBoxValues, breaks[1]),
    DIALOG_TEXT(IDC_COLOURS_BREAK3, ColoursBoxValues, breaks[2]),
    DIALOG_TEXT(IDC_COLOURS_DOT_SIZE, ColoursBoxValues, dotSize),
};

const DialogField RecSettingsFields[] = {
    DIALOG_FIELD(IDC_RECSET_TIME, FIELD_RADIO, RecSettingsValues, distance, 2),
    DIALOG_TEXT(IDC_RECSET_SECONDS, RecSettingsValues, seconds),
    DIALOG_TEXT(IDC_RECSET_METERS, RecSettingsValues, meters),
    DIALOG_FIELD(IDC_RECSET_AUTOSAVE, FIELD_CHECK, RecSettingsValues, autosave, 0),
    DIALOG_TEXT(IDC_RECSET_MINUTES, RecSettingsValues, minutes),
    DIALOG_FIELD(IDC_RECSET_AVERAGING, FIELD_CHECK, RecSettingsValues, averaging, 0),
    DIALOG_TEXT(IDC_RECSET_LABEL1, RecSettingsValues, labels[0]),
    DIALOG_TEXT(IDC_RECSET_LABEL1 + 1, RecSettingsValues, labels[1]),
    DIALOG_TEXT(IDC_RECSET_LABEL1 + 2, RecSettingsValues, labels[2]),
    DIALOG_TEXT(IDC_RECSET_LABEL1 + 3, RecSettingsValues, labels[3]),
};

// The font lists are filled and read apart from this table.
const DialogField PrefFields[] = {
    DIALOG_TEXT(IDC_PREF_SIZE_LISTING, PrefBoxValues, fontSize[0]),
    DIALOG_TEXT(IDC_PREF_SIZE_PLOT, PrefBoxValues, fontSize[1]),
    DIALOG_TEXT(IDC_PREF_SIZE_CHART, PrefBoxValues, fontSize[2]),
    DIALOG_FIELD(IDC_PREF_FULL_PATH, FIELD_CHECK, PrefBoxValues, fullPath, 0),
    DIALOG_FIELD(IDC_PREF_LOAD_STORED, FIELD_CHECK, PrefBoxValues, loadStored, 0),
    DIALOG_FIELD(IDC_PREF_CHECK_STORED, FIELD_CHECK, PrefBoxValues, checkStored, 0),
    DIALOG_FIELD(IDC_PREF_PLOT_POSITION, FIELD_CHECK, PrefBoxValues, plotPosition, 0),
};

// Cancel, Escape and the close box end with 0; Help opens the help document.
int OnOtherButton(HWND box, int id) {
    DialogCancelOrHelp(box, id, IDC_GENERAL_HELP);
    return TRUE;
}

// ---- DisplayBox ---------------------------------------------------------------------

INT_PTR CALLBACK DisplayBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) {
        CentreDialog(box);
        DisplayBoxValues values = {};
        DisplayBoxOpen(&values);
        DialogFill(box, DisplayFields, &values);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    if (LOWORD(wParam) != IDOK) return OnOtherButton(box, LOWORD(wParam));
    DisplayBoxValues values = {};
    DialogRead(box, DisplayFields, &values);
    DisplayBoxStore(&values);
    EndDialog(box, 1);
    return TRUE;
}

// ---- ColoursBox ---------------------------------------------------------------------

INT_PTR CALLBACK ColoursBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    ColoursBoxValues values = {};
    switch (message) {
        case WM_INITDIALOG:
            CentreDialog(box);
            ColoursBoxOpen(&values);
            DialogFill(box, ColoursFields, &values);
            PrepareSpins(box, IDC_COLOURS_SPIN1, IDC_COLOURS_BREAK1, 4);
            return TRUE;
        case WM_NOTIFY: {
            int spinId = 0, delta = SpinPress(lParam, &spinId);
            if (delta == 0) return FALSE;
            int control = spinId - IDC_COLOURS_SPIN1;
            DialogRead(box, ColoursFields, &values);
            ColoursBoxSpin(&values, control, delta);
            DialogFill(box, &ColoursFields[control], 1, &values);
            return RefuseSpinMove(box);
        }
        case WM_COMMAND:
            if (LOWORD(wParam) != IDOK) return OnOtherButton(box, LOWORD(wParam));
            DialogRead(box, ColoursFields, &values);
            if (ColoursBoxStore(&values)) EndDialog(box, 1);
            return TRUE;
        default:
            return FALSE;
    }
}

// ---- RecSettingsBox -----------------------------------------------------------------

INT_PTR CALLBACK RecSettingsBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    RecSettingsValues values = {};
    if (message == WM_INITDIALOG) {
        CentreDialog(box);
        RecSettingsOpen(&values);
        DialogFill(box, RecSettingsFields, &values);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    if (LOWORD(wParam) != IDOK) return OnOtherButton(box, LOWORD(wParam));
    DialogRead(box, RecSettingsFields, &values);
    if (RecSettingsStore(&values)) EndDialog(box, 1);
    return TRUE;
}

// ---- PrefBox ------------------------------------------------------------------------

const int FontListIds[3] = {IDC_PREF_FONT_LISTING, IDC_PREF_FONT_PLOT, IDC_PREF_FONT_CHART};

// Each font family goes into the three lists, until all three are full.
int CALLBACK AddFontFamily(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM box) {
    int full = 0;
    for (int id : FontListIds) {
        LRESULT at = SendDlgItemMessageA((HWND)box, id, CB_ADDSTRING, 0, (LPARAM)font->lfFaceName);
        if (at == CB_ERRSPACE) full++;
    }
    return full < 3;
}

void OnPrefBoxInit(HWND box) {
    CentreDialog(box);
    HDC dc = GetDC(FrameWindow());
    EnumFontFamiliesA(dc, nullptr, (FONTENUMPROCA)AddFontFamily, (LPARAM)box);
    ReleaseDC(FrameWindow(), dc);
    PrefBoxValues values = {};
    PrefBoxOpen(&values);
    for (int i = 0; i < 3; i++) {
        LRESULT at = SendDlgItemMessageA(box, FontListIds[i], CB_FINDSTRINGEXACT, (WPARAM)-1,
                                         (LPARAM)values.fontName[i]);
        SendDlgItemMessageA(box, FontListIds[i], CB_SETCURSEL, at == CB_ERR ? (WPARAM)-1 : at, 0);
    }
    DialogFill(box, PrefFields, &values);
    PrepareSpins(box, IDC_PREF_SPIN_LISTING, IDC_PREF_SIZE_LISTING, 3);
}

void OnPrefBoxOk(HWND box) {
    PrefBoxValues values = {};
    DialogRead(box, PrefFields, &values);
    for (int i = 0; i < 3; i++)
        GetDlgItemTextA(box, FontListIds[i], values.fontName[i], FontNameSize);
    PrefBoxStore(&values);
    PostMessageA(FrameWindow(), WM_VELDOR, PRIVATE_FONTS_CHANGED, 0);
    EndDialog(box, 1);
}

INT_PTR CALLBACK PrefBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            OnPrefBoxInit(box);
            return TRUE;
        case WM_NOTIFY: {
            int spinId = 0, delta = SpinPress(lParam, &spinId);
            if (delta == 0) return FALSE;
            int editId = IDC_PREF_SIZE_LISTING + spinId - IDC_PREF_SPIN_LISTING;
            char text[GeneralEditSize];
            GetDlgItemTextA(box, editId, text, sizeof text);
            PrefBoxSizeSpin(text, delta);
            SetDlgItemTextA(box, editId, text);
            return RefuseSpinMove(box);
        }
        case WM_COMMAND:
            if (LOWORD(wParam) != IDOK) return OnOtherButton(box, LOWORD(wParam));
            OnPrefBoxOk(box);
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

void OnConfigureDisplay(HWND frame) {
    RunDialogBox(frame, "DisplayBox", DisplayBoxProc);
}
void OnRecordSettings(HWND frame) {
    RunDialogBox(frame, "RecSettingsBox", RecSettingsBoxProc);
}
void OnPreferences(HWND frame) {
    RunDialogBox(frame, "PrefBox", PrefBoxProc);
}
int RunColoursBox(HWND owner) {
    return RunDialogBox(owner, "ColoursBox", ColoursBoxProc) == 1;
}
