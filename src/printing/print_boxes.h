// The rules of the two print dialogs, PrintListBox and PrintPlotBox, over
// plain structs of what their controls hold: what they show when they open,
// what OK checks and writes. The dialogs' windows only move these values.
#ifndef VELDOR_PRINTING_PRINT_BOXES_H
#define VELDOR_PRINTING_PRINT_BOXES_H

#include <stdint.h>

#include "dialogs/general_dialogs.h"
#include "printing/print_plot.h"

// "%s on %s": the printer's name and its port; out holds size bytes.
void FormatPrinterText(const char* device, const char* port, char* out, int size);

// ---- PrintListBox -------------------------------------------------------------------
struct PrintListBoxValues {
    DisplayBoxValues format;      // the three radio groups, as in the display dialog
    int32_t date, files, stats;   // the header's check boxes
};
// From section "Print Listing".
void PrintListBoxOpen(PrintListBoxValues* values);
// OK: writes the six keys of section "Print Listing".
void PrintListBoxStore(const PrintListBoxValues* values);

// ---- PrintPlotBox -------------------------------------------------------------------
// The area radio buttons in the order shown.
constexpr int PRINT_RADIO_FIT_ENTIRE = 0, PRINT_RADIO_FIT_DISPLAYED = 1, PRINT_RADIO_SPECIFY = 2;
struct PrintPlotBoxValues {
    int32_t area;  // PRINT_RADIO_...
    int32_t confirm;
    int32_t aspect;
    char dotSize[PrintPageTextSize];
    PrintAreaFields fields;  // the eight "Define area" edits
};
// From section "Plot scale"; "Fit entire area to page" chosen.
void PrintPlotBoxOpen(PrintPlotBoxValues* values);
// 1 when the eight "Define area" fields take input for the chosen radio.
int PrintAreaFieldsEnabled(int32_t area);
// The printer's printable size in mm becomes printArea's and the text
// "Printable area: %d x %d mm" (out holds size bytes).
void SetPrintableArea(int32_t widthMm, int32_t heightMm, char* out, int size);
// A dot size's spin press: the field's number moved by delta within 1..100.
void PrintDotSizeSpin(PrintPlotBoxValues* values, int delta);
// OK: the area checked for the chosen mode (with its messages and the
// optional confirmation), a record inside it, then printArea's dot size,
// aspect and fit filled and the keys written. Returns 1 when the dialog
// ends; 0 leaves it open with what was typed.
int PrintPlotBoxStore(const PrintPlotBoxValues* values);

#endif
