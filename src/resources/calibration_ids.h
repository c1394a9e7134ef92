// Control ids of CalibrationBox, shared by its template and its code.
#ifndef VELDOR_RESOURCES_CALIBRATION_IDS_H
#define VELDOR_RESOURCES_CALIBRATION_IDS_H

// "Channel 1" to "Channel 4", consecutive
#define IDC_CAL_CHANNEL1 1301
#define IDC_CAL_CHANNEL2 1302
#define IDC_CAL_CHANNEL3 1303
#define IDC_CAL_CHANNEL4 1304
#define IDC_CAL_LIST 1310
#define IDC_CAL_POWER 1311
#define IDC_CAL_VALUE 1312
#define IDC_CAL_INSERT_POWER 1313
#define IDC_CAL_ADD 1314
#define IDC_CAL_CHANGE 1315
#define IDC_CAL_DELETE 1316
#define IDC_CAL_NEW 1321
#define IDC_CAL_OPEN 1322
#define IDC_CAL_SAVE 1323
#define IDC_CAL_SAVE_AS 1324
#define IDC_CAL_DONE 1325
#define IDC_CAL_HELP 1326

#endif
