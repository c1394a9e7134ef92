// Control ids of GpsBox, shared by its template and its code.
#ifndef VELDOR_RESOURCES_GPS_IDS_H
#define VELDOR_RESOURCES_GPS_IDS_H

// "Set Time"
#define IDC_GPS_HOUR 1201
#define IDC_GPS_MINUTE 1202
#define IDC_GPS_SECOND 1203
#define IDC_GPS_UTC_OFFSET 1204
#define IDC_GPS_SET_TIME 1205
// "Set Date"
#define IDC_GPS_DAY 1211
#define IDC_GPS_MONTH 1212
#define IDC_GPS_YEAR 1213
#define IDC_GPS_SET_DATE 1214
// "Set Position", latitude
#define IDC_GPS_NORTH 1221
#define IDC_GPS_SOUTH 1222
#define IDC_GPS_LAT_DEGREES 1223
#define IDC_GPS_LAT_MINUTES 1224
#define IDC_GPS_LAT_SECONDS 1225
#define IDC_GPS_SET_LATITUDE 1226
// "Set Position", longitude
#define IDC_GPS_EAST 1231
#define IDC_GPS_WEST 1232
#define IDC_GPS_LONG_DEGREES 1233
#define IDC_GPS_LONG_MINUTES 1234
#define IDC_GPS_LONG_SECONDS 1235
#define IDC_GPS_SET_LONGITUDE 1236
// The row of buttons
#define IDC_GPS_DONE 1241
#define IDC_GPS_HELP 1242
#define IDC_GPS_INITIALISE 1243
#define IDC_GPS_SELF_TEST 1244
#define IDC_GPS_RESET 1245

#endif
