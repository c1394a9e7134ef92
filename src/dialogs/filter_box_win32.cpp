// The dialog procedure of FilterBox: fills the controls from the initial
// FilterFields, reads them back on OK and hands them to the filter.
#include "dialogs/filter_box_win32.h"

#include <stddef.h>

#include "dialogs/dialog_fields_win32.h"
#include "resources/records_ids.h"
#include "base/front_win32.h"
#include "survey/record_filter.h"

static_assert(sizeof(int) == sizeof(int32_t), "check boxes and radio groups hold int32_t");

// The edits hold FilterLimitTextSize - 1 characters, fewer than the filter reads.
static const DialogField FilterBoxFields[] = {
    DIALOG_FIELD(IDC_FILTER_GPS_TRACKED, FIELD_CHECK, FilterFields, gpsTrackedOnly, 1),
    DIALOG_FIELD(IDC_FILTER_LATITUDE, FIELD_CHECK, FilterFields, latitudeOn, 1),
    DIALOG_FIELD(IDC_FILTER_LATITUDE_LIMIT, FIELD_TEXT, FilterFields, latitudeText,
                 FilterLimitTextSize),
    DIALOG_FIELD(IDC_FILTER_LONGITUDE, FIELD_CHECK, FilterFields, longitudeOn, 1),
    DIALOG_FIELD(IDC_FILTER_LONGITUDE_LIMIT, FIELD_TEXT, FilterFields, longitudeText,
                 FilterLimitTextSize),
    DIALOG_FIELD(IDC_FILTER_READING, FIELD_CHECK, FilterFields, readingOn, 1),
    DIALOG_FIELD(IDC_FILTER_READING_LIMIT, FIELD_TEXT, FilterFields, readingText,
                 FilterLimitTextSize),
};

// The drop-down lists: their entries and the field of their selection.
struct FilterList {
    int controlId;
    const char* const* names;
    int count;
    size_t offset;
};
static const FilterList FilterLists[] = {
    {IDC_FILTER_LATITUDE_TEST, FilterTestNames, 2, offsetof(FilterFields, latitudeSelection)},
    {IDC_FILTER_LONGITUDE_TEST, FilterTestNames, 2, offsetof(FilterFields, longitudeSelection)},
    {IDC_FILTER_CHANNEL, FilterChannelNames, 4, offsetof(FilterFields, channelSelection)},
    {IDC_FILTER_READING_TEST, FilterTestNames, 2, offsetof(FilterFields, readingSelection)},
};

static int* Selection(FilterFields* fields, const FilterList& list) {
    return (int*)((char*)fields + list.offset);
}

static void OnInitDialog(HWND dialog) {
    CentreDialog(dialog);
    FilterFields fields = DefaultFilterFields();
    DialogFill(dialog, FilterBoxFields, &fields);
    for (const FilterList& list : FilterLists) {
        for (int k = 0; k < list.count; k++)
            SendDlgItemMessageA(dialog, list.controlId, CB_ADDSTRING, 0, (LPARAM)list.names[k]);
        SendDlgItemMessageA(dialog, list.controlId, CB_SETCURSEL, (WPARAM)*Selection(&fields, list),
                            0);
    }
    CheckRadioButton(dialog, IDC_FILTER_CALIBRATED, IDC_FILTER_RAW,
                     fields.calibrated ? IDC_FILTER_CALIBRATED : IDC_FILTER_RAW);
}

static void OnOk(HWND dialog) {
    FilterFields fields = DefaultFilterFields();
    DialogRead(dialog, FilterBoxFields, &fields);
    for (const FilterList& list : FilterLists) {
        LRESULT selection = SendDlgItemMessageA(dialog, list.controlId, CB_GETCURSEL, 0, 0);
        *Selection(&fields, list) = selection == CB_ERR ? 0 : (int)selection;
    }
    fields.calibrated = IsDlgButtonChecked(dialog, IDC_FILTER_CALIBRATED) == BST_CHECKED;
    if (FilterDialogOk(fields)) EndDialog(dialog, 1);
}

static INT_PTR CALLBACK FilterBoxProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_INITDIALOG:
            OnInitDialog(dialog);
            return TRUE;
        case WM_COMMAND:
            switch (LOWORD(wParam)) {
                case IDOK:
                    OnOk(dialog);
                    return TRUE;
                default:
                    return DialogCancelOrHelp(dialog, LOWORD(wParam), IDHELP);
            }
        default:
            return FALSE;
    }
}

int RunFilterBox(HWND owner) {
    return DialogBoxParamA(shell.instance, "FilterBox", owner, FilterBoxProc, 0) == 1;
}
