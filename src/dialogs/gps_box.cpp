#include "dialogs/gps_box.h"

#include "resources/gps_ids.h"

int GpsBoxPress(int controlId, GpsBoxFields* fields) {
    int sent = 0;
    switch (controlId) {
    case IDC_GPS_SET_TIME: sent = GpsSetTime(&fields->time); break;
    case IDC_GPS_SET_DATE: sent = GpsSetDate(&fields->date); break;
    case IDC_GPS_SET_LATITUDE: sent = GpsSetLatitude(&fields->latitude); break;
    case IDC_GPS_SET_LONGITUDE: sent = GpsSetLongitude(&fields->longitude); break;
    case IDC_GPS_INITIALISE: GpsInitialise(); break;
    case IDC_GPS_SELF_TEST: GpsSelfTest(); break;
    case IDC_GPS_RESET: GpsReset(); break;
    case IDC_GPS_HELP: return GPS_BOX_HELP;
    case IDC_GPS_DONE: return GPS_BOX_DONE;
    default: break;
    }
    return sent ? GPS_BOX_SHOW_FIELDS : GPS_BOX_STAYS;
}
