#include "dialogs/general_dialogs.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/platform.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "views/display_format.h"
#include "views/plot_view.h"

namespace {

// The settings value of each radio button, in the order shown.
const int32_t LatLongModes[4] = {LATLONG_DEG, LATLONG_DEG_MIN, LATLONG_DEG_MIN_SEC,
                                 LATLONG_MILLISECONDS};
const int32_t SignModes[2] = {SIGN_NORTH_SOUTH, SIGN_PLUS_MINUS};
const int32_t ReadingModes[4] = {READING_0, READING_0_0, READING_0_000, READING_RAW};

// The button of a value; a value that has none shows the first.
int RadioIndex(const int32_t* modes, int count, int32_t value) {
    for (int i = 0; i < count; i++)
        if (modes[i] == value) return i;
    return 0;
}
int32_t RadioValue(const int32_t* modes, int count, int32_t index) {
    return modes[index >= 0 && index < count ? index : 0];
}

void SetFlag(uint32_t flag, int32_t on) {
    if (on)
        statusFlags |= flag;
    else
        statusFlags &= ~flag;
}
int32_t FlagOf(uint32_t flag) {
    return (statusFlags & flag) != 0;
}

// A number of the dialog that may not be below 1: stores and writes it.
void StoreAtLeastOne(const char* text, int32_t* value, const IntSetting& key) {
    int n = atoi(text);
    *value = n < 1 ? 1 : n;
    WriteSettingInt(key, *value);
}

// A channel label, up to 31 characters.
void CopyLabel(char* to, const char* from) {
    memcpy(to, from, ChannelLabelSize);
    to[ChannelLabelSize - 1] = '\0';
}

void WriteFlag(uint32_t flag, int32_t on, const IntSetting& key) {
    SetFlag(flag, on);
    WriteSettingInt(key, on ? 1 : 0);
}

const TextSetting* const FontNameKeys[3] = {&KeyListingFontName, &KeyPlotFontName,
                                            &KeyChartFontName};
const IntSetting* const FontSizeKeys[3] = {&KeyListingFontSize, &KeyPlotFontSize,
                                           &KeyChartFontSize};
const TextSetting* const PowerBreakKeys[3] = {&KeyPlotPowerBreak1, &KeyPlotPowerBreak2,
                                              &KeyPlotPowerBreak3};

}  // namespace

// ---- DisplayBox ---------------------------------------------------------------------

DisplayBoxValues DisplayFormatButtons(const DisplayFormat& format) {
    DisplayBoxValues values;
    values.latLong = RadioIndex(LatLongModes, 4, format.latLongMode);
    values.sign = RadioIndex(SignModes, 2, format.signMode);
    values.reading = RadioIndex(ReadingModes, 4, format.readingMode);
    return values;
}

DisplayFormat DisplayFormatOfButtons(const DisplayBoxValues& values) {
    DisplayFormat format = ScreenFormat;
    format.latLongMode = RadioValue(LatLongModes, 4, values.latLong);
    format.signMode = RadioValue(SignModes, 2, values.sign);
    format.readingMode = RadioValue(ReadingModes, 4, values.reading);
    return format;
}

void DisplayBoxOpen(DisplayBoxValues* values) {
    *values = DisplayFormatButtons(ScreenFormat);
}

void DisplayBoxStore(const DisplayBoxValues* values) {
    ScreenFormat = DisplayFormatOfButtons(*values);
    WriteSettingInt(KeyListingLatLong, ScreenFormat.latLongMode);
    WriteSettingInt(KeyListingSign, ScreenFormat.signMode);
    WriteSettingInt(KeyListingDecimalPlaces, ScreenFormat.readingMode);
    PlatformRepaint(WINDOW_LISTING, AREA_WHOLE, 1);
    PlatformRepaint(WINDOW_PLOT, AREA_WHOLE, 1);
    PlatformRepaint(WINDOW_CHART, AREA_WHOLE, 1);
}

// ---- ColoursBox ---------------------------------------------------------------------

void ColoursBoxOpen(ColoursBoxValues* values) {
    for (int i = 0; i < 3; i++)
        snprintf(values->breaks[i], GeneralEditSize, "%.3f", (double)powerBreak[i]);
    snprintf(values->dotSize, GeneralEditSize, "%d", (int)dotSize);
}

void ColoursBoxSpin(ColoursBoxValues* values, int control, int delta) {
    if (control == COLOURS_DOT_SIZE) {
        int size = atoi(values->dotSize);
        if (delta > 0 ? size < 50 : size >= 2) size += delta;
        snprintf(values->dotSize, GeneralEditSize, "%d", size);
        return;
    }
    if (control < 0 || control > 2) return;
    double value = atof(values->breaks[control]) + delta;
    if (delta > 0 && control > 0) {
        double above = atof(values->breaks[control - 1]);
        if (value >= above) value = above - 1;
    } else if (delta < 0 && control < 2) {
        double below = atof(values->breaks[control + 1]);
        if (below >= value) value = below + 1;
    }
    snprintf(values->breaks[control], GeneralEditSize, "%.3f", value);
}

int ColoursBoxStore(const ColoursBoxValues* values) {
    double breaks[3];
    for (int i = 0; i < 3; i++) breaks[i] = atof(values->breaks[i]);
    int size = atoi(values->dotSize);
    if (!(breaks[0] > breaks[1] && breaks[1] > breaks[2])) {
        PlatformMessageBox("Error in number sequance", ICON_EXCLAMATION);
        return 0;
    }
    if (size < 1 || size > 50) {
        PlatformMessageBox("Invalid dot size\n(Range 1 - 50)", ICON_EXCLAMATION);
        return 0;
    }
    char text[GeneralEditSize];
    for (int i = 0; i < 3; i++) {
        powerBreak[i] = (float)breaks[i];
        snprintf(text, sizeof text, "%.3f", breaks[i]);
        WriteSetting(*PowerBreakKeys[i], text);
    }
    dotSize = size;
    snprintf(text, sizeof text, "%d", size);
    WriteSetting(KeyPlotDotSize, text);
    PlatformRepaint(WINDOW_PLOT, AREA_PLOT_RECT, 1);
    return 1;
}

// ---- RecSettingsBox -----------------------------------------------------------------

void RecSettingsOpen(RecSettingsValues* values) {
    values->distance = FlagOf(STATUS_DISTANCE_INTERVAL);
    snprintf(values->seconds, GeneralEditSize, "%d", (int)recordIntervalSeconds);
    snprintf(values->meters, GeneralEditSize, "%d", (int)recordIntervalMeters);
    values->autosave = FlagOf(STATUS_AUTOSAVE);
    snprintf(values->minutes, GeneralEditSize, "%d", (int)autosaveMinutes);
    values->averaging = FlagOf(STATUS_AVERAGING);
    for (int i = 0; i < 4; i++) CopyLabel(values->labels[i], channelLabels[i]);
}

int RecSettingsStore(const RecSettingsValues* values) {
    if (values->distance && (statusFlags & STATUS_TZR_MODE)) {
        PlatformMessageBox(
            "A distance recording interval and TZR mode are incompatible.\n"
            "Use one or the other, but not both at once.",
            ICON_EXCLAMATION);
        return 0;
    }
    WriteFlag(STATUS_DISTANCE_INTERVAL, values->distance, KeyRecordIntervalInMeters);
    StoreAtLeastOne(values->seconds, &recordIntervalSeconds, KeyRecordIntervalSeconds);
    StoreAtLeastOne(values->meters, &recordIntervalMeters, KeyRecordIntervalMeters);
    for (int i = 0; i < 4; i++) CopyLabel(channelLabels[i], values->labels[i]);
    PlatformRepaint(WINDOW_LISTING, AREA_WHOLE, 1);
    WriteFlag(STATUS_AUTOSAVE, values->autosave, KeyAutosaveEnable);
    StoreAtLeastOne(values->minutes, &autosaveMinutes, KeyAutosaveInterval);
    WriteFlag(STATUS_AVERAGING, values->averaging, KeyAveraging);
    return 1;
}

// ---- PrefBox ------------------------------------------------------------------------

void PrefBoxOpen(PrefBoxValues* values) {
    for (int i = 0; i < 3; i++) {
        ReadSetting(*FontNameKeys[i], values->fontName[i], FontNameSize);
        snprintf(values->fontSize[i], GeneralEditSize, "%d", ReadSetting(*FontSizeKeys[i]));
    }
    values->fullPath = FlagOf(STATUS_FULL_PATH);
    values->loadStored = FlagOf(STATUS_LOAD_STORED);
    values->checkStored = FlagOf(STATUS_CHECK_STORED);
    values->plotPosition = FlagOf(STATUS_PLOT_POSITION);
}

void PrefBoxSizeSpin(char* text, int delta) {
    int size = atoi(text) + delta;
    if (size >= 1 && size <= 100) snprintf(text, GeneralEditSize, "%d", size);
}

void PrefBoxStore(const PrefBoxValues* values) {
    for (int i = 0; i < 3; i++) {
        WriteSetting(*FontNameKeys[i], values->fontName[i]);
        WriteSetting(*FontSizeKeys[i], values->fontSize[i]);
    }
    WriteFlag(STATUS_FULL_PATH, values->fullPath, KeyShowPath);
    WriteFlag(STATUS_LOAD_STORED, values->loadStored, KeyLoadStoredData);
    WriteFlag(STATUS_CHECK_STORED, values->checkStored, KeyCheckStoredData);
    WriteFlag(STATUS_PLOT_POSITION, values->plotPosition, KeyPlotCurrentPosition);
    if (dataFileName[0] != '\0') UpdateFrameCaption();
}
