// Control ids of the two tag and manual reading dialogs and of the Text Tags
// window; shared by their resource script and their window procedures.
#ifndef VELDOR_RESOURCES_TAGS_IDS_H
#define VELDOR_RESOURCES_TAGS_IDS_H

// AddEditTagTextBox
#define IDC_TAG_INDEX 1101
#define IDC_TAG_TEXT 1102

// ManRecBox
#define IDC_MANUAL_LATITUDE 1111
#define IDC_MANUAL_LONGITUDE 1112
#define IDC_MANUAL_CH1 1113
#define IDC_MANUAL_CH2 1114
#define IDC_MANUAL_CH3 1115
#define IDC_MANUAL_CH4 1116
#define IDC_MANUAL_HELP 1117

// The Text Tags window's list and buttons
#define IDC_TAGS_LIST 1121
#define IDC_TAGS_SHOW 1122
#define IDC_TAGS_HIDE 1123
#define IDC_TAGS_ADD 1124
#define IDC_TAGS_EDIT 1125
#define IDC_TAGS_DELETE 1126

#endif
