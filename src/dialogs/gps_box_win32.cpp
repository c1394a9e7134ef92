#include "dialogs/gps_box_win32.h"

#include "dialogs/dialog_fields_win32.h"
#include "dialogs/gps_box.h"
#include "resources/gps_ids.h"
#include "base/front_win32.h"
#include "resources/resource_ids.h"

namespace {

const DialogField GpsBoxFieldTable[] = {
    DIALOG_TEXT(IDC_GPS_HOUR, GpsBoxFields, time.hour),
    DIALOG_TEXT(IDC_GPS_MINUTE, GpsBoxFields, time.minute),
    DIALOG_TEXT(IDC_GPS_SECOND, GpsBoxFields, time.second),
    DIALOG_TEXT(IDC_GPS_UTC_OFFSET, GpsBoxFields, time.utcOffset),
    DIALOG_TEXT(IDC_GPS_DAY, GpsBoxFields, date.day),
    DIALOG_TEXT(IDC_GPS_MONTH, GpsBoxFields, date.month),
    DIALOG_TEXT(IDC_GPS_YEAR, GpsBoxFields, date.year),
    DIALOG_FIELD(IDC_GPS_NORTH, FIELD_CHECK, GpsBoxFields, latitude.northOrEast, 0),
    DIALOG_FIELD(IDC_GPS_SOUTH, FIELD_CHECK, GpsBoxFields, latitude.southOrWest, 0),
    DIALOG_TEXT(IDC_GPS_LAT_DEGREES, GpsBoxFields, latitude.degrees),
    DIALOG_TEXT(IDC_GPS_LAT_MINUTES, GpsBoxFields, latitude.minutes),
    DIALOG_TEXT(IDC_GPS_LAT_SECONDS, GpsBoxFields, latitude.seconds),
    DIALOG_FIELD(IDC_GPS_EAST, FIELD_CHECK, GpsBoxFields, longitude.northOrEast, 0),
    DIALOG_FIELD(IDC_GPS_WEST, FIELD_CHECK, GpsBoxFields, longitude.southOrWest, 0),
    DIALOG_TEXT(IDC_GPS_LONG_DEGREES, GpsBoxFields, longitude.degrees),
    DIALOG_TEXT(IDC_GPS_LONG_MINUTES, GpsBoxFields, longitude.minutes),
    DIALOG_TEXT(IDC_GPS_LONG_SECONDS, GpsBoxFields, longitude.seconds),
};

// The message boxes of the self-test report lose their owner first.
void CloseGpsBox(HWND box, int result) {
    SetPlatformWindow(WINDOW_GPS, nullptr);
    EndDialog(box, result);
}

void OnGpsBoxInit(HWND box) {
    CentreDialog(box);
    GpsBoxFields fields = {};
    LoadGpsBoxFields(&fields);
    DialogFill(box, GpsBoxFieldTable, &fields);
    SetPlatformWindow(WINDOW_GPS, box);
}

void OnGpsBoxButton(HWND box, int id) {
    GpsBoxFields fields = {};
    DialogRead(box, GpsBoxFieldTable, &fields);
    switch (GpsBoxPress(id, &fields)) {
    case GPS_BOX_SHOW_FIELDS: DialogFill(box, GpsBoxFieldTable, &fields); break;
    case GPS_BOX_HELP: PlatformFrameCommand(IDM_HELP_HELP); break;
    case GPS_BOX_DONE: CloseGpsBox(box, 1); break;
    default: break;
    }
}

INT_PTR CALLBACK GpsBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG: OnGpsBoxInit(box); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL) CloseGpsBox(box, 0);  // Escape and the close box
        else if (HIWORD(wParam) == BN_CLICKED) OnGpsBoxButton(box, LOWORD(wParam));
        return TRUE;
    case WM_DESTROY: SetPlatformWindow(WINDOW_GPS, nullptr); return FALSE;
    default: return FALSE;
    }
}

}  // namespace

void OnConfigureGps(HWND frame) {
    DialogBoxParamA(shell.instance, "GpsBox", frame, GpsBoxProc, 0);
}
