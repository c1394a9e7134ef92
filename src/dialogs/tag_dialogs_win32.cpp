// The tag text dialog and the manual reading dialog: they move the texts of
// their edits in and out of the values structs of tag_dialogs.h.
#include "dialogs/tag_dialogs_win32.h"

#include "dialogs/dialog_fields_win32.h"
#include "dialogs/tag_dialogs.h"
#include "resources/tags_ids.h"
#include "base/front_win32.h"
#include "survey/survey_state.h"

// ---- AddEditTagTextBox --------------------------------------------------------------------

static const DialogField TagFields[] = {
    DIALOG_TEXT(IDC_TAG_INDEX, TagDialogValues, index),
    DIALOG_TEXT(IDC_TAG_TEXT, TagDialogValues, text),
};

static int tagInHand;
static TagDialogValues tagValues;

static void OnTagOk(HWND dialog) {
    DialogRead(dialog, TagFields, &tagValues);
    if (TagDialogStore(tagInHand, &tagValues)) EndDialog(dialog, 1);
}

static INT_PTR CALLBACK TagTextBoxProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG:
        CentreDialog(dialog);
        DialogFill(dialog, TagFields, &tagValues);
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDOK: OnTagOk(dialog); return TRUE;
        case IDCANCEL: EndDialog(dialog, 0); return TRUE;
        default: return FALSE;
        }
    default: return FALSE;
    }
}

int RunTagTextBox(int number) {
    tagInHand = TagDialogOpen(number, &tagValues);
    if (tagInHand == TagDialogRefused) return 0;
    return DialogBoxParamA(shell.instance, "AddEditTagTextBox", FrameWindow(), TagTextBoxProc,
                           0) == 1;
}

void EditTag(int number) {
    if (RunTagTextBox(number)) TagTableChanged();
}

void OnAddTextTag(HWND) { EditTag(-1); }

// ---- ManRecBox -----------------------------------------------------------------------------

static const DialogField ManualFields[] = {
    DIALOG_TEXT(IDC_MANUAL_LATITUDE, ManualReadingValues, latitude),
    DIALOG_TEXT(IDC_MANUAL_LONGITUDE, ManualReadingValues, longitude),
    DIALOG_TEXT(IDC_MANUAL_CH1, ManualReadingValues, readings[0]),
    DIALOG_TEXT(IDC_MANUAL_CH2, ManualReadingValues, readings[1]),
    DIALOG_TEXT(IDC_MANUAL_CH3, ManualReadingValues, readings[2]),
    DIALOG_TEXT(IDC_MANUAL_CH4, ManualReadingValues, readings[3]),
};

static ManualReadingValues manualValues;

static void OnManualInit(HWND dialog) {
    CentreDialog(dialog);
    ManualReadingOpen(&manualValues);
    DialogFill(dialog, ManualFields, &manualValues);
}

static void OnManualOk(HWND dialog) {
    DialogRead(dialog, ManualFields, &manualValues);
    ManualReadingStore(&manualValues);
    EndDialog(dialog, 1);
}

static INT_PTR CALLBACK ManualReadingBoxProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG: OnManualInit(dialog); return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDOK: OnManualOk(dialog); return TRUE;
        default: return DialogCancelOrHelp(dialog, LOWORD(wParam), IDC_MANUAL_HELP);
        }
    default: return FALSE;
    }
}

void OnTakeManualReading(HWND frame) {
    if (DialogBoxParamA(shell.instance, "ManRecBox", frame, ManualReadingBoxProc, 0) == 1)
        AddRecord(RECORD_KIND_MANUAL);
}
