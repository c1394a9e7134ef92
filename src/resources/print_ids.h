// Control ids of PrintListBox, PrintPlotBox and AbortBox, shared by their
// templates and their code.
#ifndef VELDOR_RESOURCES_PRINT_IDS_H
#define VELDOR_RESOURCES_PRINT_IDS_H

// Both print dialogs.
#define IDC_PRINT_PRINTER 1901  // "%s on %s", read-only
#define IDC_PRINT_SELECT 1902
#define IDC_PRINT_HELP 1903

// PrintListBox: three groups of radio buttons with consecutive ids, as the
// display dialog's, and the header's check boxes.
#define IDC_PRINT_LIST_DEG 1911          // .. 1914 "Milliseconds"
#define IDC_PRINT_LIST_NORTH_SOUTH 1915  // 1916 "+/-"
#define IDC_PRINT_LIST_READING_0 1917    // .. 1920 "Raw"
#define IDC_PRINT_LIST_DATE 1921
#define IDC_PRINT_LIST_FILES 1922
#define IDC_PRINT_LIST_STATS 1923

// PrintPlotBox
#define IDC_PRINT_PLOT_PRINTABLE 1931  // "Printable area: %d x %d mm"
#define IDC_PRINT_PLOT_FIT_ENTIRE 1932  // 1933 "Fit displayed area to page", 1934 "Specify area"
#define IDC_PRINT_PLOT_CONFIRM 1935
#define IDC_PRINT_PLOT_ASPECT 1936
#define IDC_PRINT_PLOT_DOT_SIZE 1937
#define IDC_PRINT_PLOT_DOT_SPIN 1938
#define IDC_PRINT_PLOT_MAP 1941   // .. 1944: TL Lat, TL Long, BR Lat, BR Long
#define IDC_PRINT_PLOT_PAGE 1945  // .. 1948: TL X, TL Y, BR X, BR Y

// AbortBox
#define IDC_ABORT_PAGE 1951
#define IDC_ABORT_STATUS 1952

#endif
