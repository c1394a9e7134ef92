// Control ids of FilterBox and MakeFileBox. The radio buttons of one group
// have consecutive ids, in the order of the group's values.
#ifndef VELDOR_RESOURCES_RECORDS_IDS_H
#define VELDOR_RESOURCES_RECORDS_IDS_H

// FilterBox
#define IDC_FILTER_POSITION_GROUP 1200
#define IDC_FILTER_GPS_TRACKED 1201
#define IDC_FILTER_LATITUDE 1202
#define IDC_FILTER_LATITUDE_TEST 1203
#define IDC_FILTER_LATITUDE_LIMIT 1204
#define IDC_FILTER_LATITUDE_UNIT 1205
#define IDC_FILTER_LONGITUDE 1206
#define IDC_FILTER_LONGITUDE_TEST 1207
#define IDC_FILTER_LONGITUDE_LIMIT 1208
#define IDC_FILTER_LONGITUDE_UNIT 1209
#define IDC_FILTER_READING_GROUP 1210
#define IDC_FILTER_READING 1211
#define IDC_FILTER_CHANNEL 1212
#define IDC_FILTER_ALL_READINGS 1213
#define IDC_FILTER_READING_TEST 1214
#define IDC_FILTER_READING_LIMIT 1215
#define IDC_FILTER_CALIBRATED 1216  // "Calibrated units"; "Raw units" is 1217
#define IDC_FILTER_RAW 1217

// MakeFileBox
#define IDC_MAKEFILE_NAME_LABEL 1240
#define IDC_MAKEFILE_PATH 1241
#define IDC_MAKEFILE_SELECT 1242
#define IDC_MAKEFILE_DEG 1250           // "Deg", "Deg Min", "Deg Min Sec", "Milliseconds"
#define IDC_MAKEFILE_NORTH_SOUTH 1260   // "North/South", "+/-"
#define IDC_MAKEFILE_DECIMALS_0 1270    // "0", "0.0", "0.000", "Raw"
#define IDC_MAKEFILE_SPACE 1280         // "Space", "TAB", "Comma"
#define IDC_MAKEFILE_FORMAT_GROUP 1290  // the frames around the four groups: 1290..1293

#endif
