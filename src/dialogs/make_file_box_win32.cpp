// The dialog procedure of MakeFileBox: moves the path and the four radio
// groups between the controls and MakeFileValues; Select runs the text file
// chooser into the edit.
#include "dialogs/make_file_box_win32.h"

#include <shlobj.h>
#include <string.h>

#include "dialogs/dialog_fields_win32.h"
#include "dialogs/make_file_box.h"
#include "resources/records_ids.h"
#include "base/front_win32.h"

static const DialogField MakeFileBoxFields[] = {
    DIALOG_TEXT(IDC_MAKEFILE_PATH, MakeFileValues, path),
    DIALOG_FIELD(IDC_MAKEFILE_DEG, FIELD_RADIO, MakeFileValues, latLong, 4),
    DIALOG_FIELD(IDC_MAKEFILE_NORTH_SOUTH, FIELD_RADIO, MakeFileValues, sign, 2),
    DIALOG_FIELD(IDC_MAKEFILE_DECIMALS_0, FIELD_RADIO, MakeFileValues, decimals, 4),
    DIALOG_FIELD(IDC_MAKEFILE_SPACE, FIELD_RADIO, MakeFileValues, separator, 3),
};

// The user's desktop folder, or the user's profile folder when there is no
// desktop; empty when neither is known.
static void DefaultFolder(char* folder) {
    folder[0] = '\0';
    if (SUCCEEDED(SHGetFolderPathA(nullptr, CSIDL_DESKTOP, nullptr, SHGFP_TYPE_CURRENT, folder)))
        return;
    if (SUCCEEDED(SHGetFolderPathA(nullptr, CSIDL_PROFILE, nullptr, SHGFP_TYPE_CURRENT, folder)))
        return;
    folder[0] = '\0';
}

static void OnInitDialog(HWND dialog) {
    CentreDialog(dialog);
    char folder[MAX_PATH];
    DefaultFolder(folder);
    MakeFileValues values = OpenMakeFileBox(folder);
    DialogFill(dialog, MakeFileBoxFields, &values);
}

// The chooser starts with no name; a cancel leaves the edit as it was.
static void OnSelect(HWND dialog) {
    char path[MakeFilePathSize] = "";
    if (ChooseFile(path, sizeof path, CHOOSE_SAVE_TEXT))
        SetDlgItemTextA(dialog, IDC_MAKEFILE_PATH, path);
}

static void OnOk(HWND dialog) {
    MakeFileValues values;
    memset(&values, 0, sizeof values);
    DialogRead(dialog, MakeFileBoxFields, &values);
    if (MakeFileBoxOk(values)) EndDialog(dialog, 1);
}

static INT_PTR CALLBACK MakeFileBoxProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_INITDIALOG:
            OnInitDialog(dialog);
            return TRUE;
        case WM_COMMAND:
            switch (LOWORD(wParam)) {
                case IDC_MAKEFILE_SELECT:
                    OnSelect(dialog);
                    return TRUE;
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

int OnCreateListingFile(HWND frame) {
    if (!RecordsReadyForOutput()) return 0;
    return DialogBoxParamA(shell.instance, "MakeFileBox", frame, MakeFileBoxProc, 0) == 1;
}
