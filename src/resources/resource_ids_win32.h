// Resource ids of the Windows program that the portable code never needs:
// icons, the accelerator table, string-table texts and control ids.
#ifndef VELDOR_RESOURCES_RESOURCE_IDS_WIN32_H
#define VELDOR_RESOURCES_RESOURCE_IDS_WIN32_H

// Icons of the five window classes.
#define IDI_FRAME 20
#define IDI_LISTING 150
#define IDI_PLOT 151
#define IDI_CHART 152
#define IDI_TAGS 153

// The frame's accelerator table.
#define IDR_ACCELERATORS 154

// String-table texts.
#define IDS_RESET_CONTROLLER 2
#define IDS_GPS_RESET 3
#define IDS_GPS_RESET_SENT 4
#define IDS_GPS_SELF_TEST 5
#define IDS_TIMER_ERROR 6
#define IDS_AUTOSAVE_NO_NAME 7
#define IDS_AUTO_ZOOM_INVALID 8

// Children of the frame.
#define IDC_MDI_CLIENT 100
#define IDC_STATUS_BAR 101
#define IDC_MDI_FIRST_CHILD 105

#endif
