#include "printing/print_boxes.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/platform.h"
#include "dialogs/dialog_fields.h"
#include "storage/settings_file.h"

namespace {

const TextSetting* const MapKeys[4] = {&KeyPlotScaleTlLat, &KeyPlotScaleTlLong, &KeyPlotScaleBrLat,
                                       &KeyPlotScaleBrLong};
const TextSetting* const PageKeys[4] = {&KeyPlotScaleTlX, &KeyPlotScaleTlY, &KeyPlotScaleBrX,
                                        &KeyPlotScaleBrY};

int32_t Flag(int32_t v) {
    return v != 0 ? 1 : 0;
}

int ModeOfRadio(int32_t area) {
    if (area == PRINT_RADIO_FIT_DISPLAYED) return PRINT_FIT_DISPLAYED;
    if (area == PRINT_RADIO_SPECIFY) return PRINT_SPECIFY;
    return PRINT_FIT_ENTIRE;
}

}  // namespace

void FormatPrinterText(const char* device, const char* port, char* out, int size) {
    snprintf(out, (size_t)size, "%s on %s", device, port);
}

// ---- PrintListBox -------------------------------------------------------------------

void PrintListBoxOpen(PrintListBoxValues* values) {
    values->format = DisplayFormatButtons(ReadPrintListingFormat());
    values->date = Flag(ReadSetting(KeyPrintListingDate));
    values->files = Flag(ReadSetting(KeyPrintListingFiles));
    values->stats = Flag(ReadSetting(KeyPrintListingStats));
}

void PrintListBoxStore(const PrintListBoxValues* values) {
    DisplayFormat format = DisplayFormatOfButtons(values->format);
    WriteSettingInt(KeyPrintListingLatLong, format.latLongMode);
    WriteSettingInt(KeyPrintListingSign, format.signMode);
    WriteSettingInt(KeyPrintListingDecimalPlaces, format.readingMode);
    WriteSettingInt(KeyPrintListingDate, Flag(values->date));
    WriteSettingInt(KeyPrintListingFiles, Flag(values->files));
    WriteSettingInt(KeyPrintListingStats, Flag(values->stats));
}

// ---- PrintPlotBox -------------------------------------------------------------------

void PrintPlotBoxOpen(PrintPlotBoxValues* values) {
    values->area = PRINT_RADIO_FIT_ENTIRE;
    values->confirm = Flag(ReadSetting(KeyPlotScaleConfirm));
    values->aspect = Flag(ReadSetting(KeyPlotScaleAspect));
    snprintf(values->dotSize, sizeof values->dotSize, "%d", (int)ReadSetting(KeyPlotScaleDotSize));
    for (int i = 0; i < 4; i++) {
        ReadSetting(*MapKeys[i], values->fields.map[i], PrintCoordinateTextSize);
        ReadSetting(*PageKeys[i], values->fields.page[i], PrintPageTextSize);
    }
}

int PrintAreaFieldsEnabled(int32_t area) {
    return area == PRINT_RADIO_SPECIFY;
}

void SetPrintableArea(int32_t widthMm, int32_t heightMm, char* out, int size) {
    printArea.printableWidth = widthMm;
    printArea.printableHeight = heightMm;
    snprintf(out, (size_t)size, "Printable area: %d x %d mm", (int)widthMm, (int)heightMm);
}

void PrintDotSizeSpin(PrintPlotBoxValues* values, int delta) {
    char text[PrintPageTextSize];
    SpinStep(values->dotSize, delta, PrintDotSizeMin, PrintDotSizeMax, text, sizeof text);
    memcpy(values->dotSize, text, sizeof text);
}

int PrintPlotBoxStore(const PrintPlotBoxValues* values) {
    int mode = ModeOfRadio(values->area);
    if (mode == PRINT_SPECIFY) printPlotBoxFields = values->fields;
    if (!ValidatePrintArea(mode, values->confirm)) return 0;
    if (mode == PRINT_SPECIFY) {
        for (int i = 0; i < 4; i++) {
            WriteSetting(*MapKeys[i], values->fields.map[i]);
            WriteSetting(*PageKeys[i], values->fields.page[i]);
        }
    }
    if (!AnyRecordInPrintArea()) {
        PlatformMessageBox("There is nothing to print", ICON_STOP);
        return 0;
    }
    printArea.fitToPage = mode != PRINT_SPECIFY;
    int size = atoi(values->dotSize);
    printArea.printDotSize = size < PrintDotSizeMin   ? PrintDotSizeMin
                             : size > PrintDotSizeMax ? PrintDotSizeMax
                                                      : size;
    WriteSetting(KeyPlotScaleDotSize, values->dotSize);
    printArea.keepAspect = Flag(values->aspect);
    WriteSettingInt(KeyPlotScaleAspect, printArea.keepAspect);
    WriteSettingInt(KeyPlotScaleConfirm, Flag(values->confirm));
    return 1;
}
