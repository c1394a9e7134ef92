// The settings file: every section and key the program reads or writes, with
// the default a reader gets when the key or the file is missing. Values go
// straight through the private-profile calls of the platform; nothing is
// cached here.
#ifndef VELDOR_STORAGE_SETTINGS_FILE_H
#define VELDOR_STORAGE_SETTINGS_FILE_H

#include <stdint.h>

#include "survey/recording_engine.h"
#include "views/display_format.h"

// Read with this default, a window place or size means "nothing stored".
constexpr int SettingNotStored = -2147483647 - 1;

struct IntSetting {
    const char* section;
    const char* key;
    int defaultValue;
};

struct TextSetting {
    const char* section;
    const char* key;
    const char* defaultValue;
    int maxLength;  // characters, without the terminator
};

// ---- Sections -----------------------------------------------------------------
#define SECTION_MAIN_WINDOW "Main window"
#define SECTION_LISTING "Listing"
#define SECTION_LISTING_FILE "Listing File"
#define SECTION_PRINT_LISTING "Print Listing"
#define SECTION_PLOT "Plot"
#define SECTION_PLOT_SCALE "Plot scale"
#define SECTION_CHART "Chart"
#define SECTION_TEXT_TAGS "Text Tags"
#define SECTION_GENERAL "General"
#define SECTION_CALIBRATION "Calibration"
#define SECTION_PORT "Port"
#define SECTION_GPS_SET "GPS Set"
#define SECTION_GPS_DIFF "GPS Diff"
#define SECTION_AR3000A "AR3000A"
#define SECTION_TZR4100 "TZR4100"
#define SECTION_SETUP "Setup"

// ---- "Main window" --------------------------------------------------------------
constexpr IntSetting KeyMainOriginX{SECTION_MAIN_WINDOW, "Origin X", SettingNotStored};
constexpr IntSetting KeyMainOriginY{SECTION_MAIN_WINDOW, "Origin Y", SettingNotStored};
constexpr IntSetting KeyMainWidth{SECTION_MAIN_WINDOW, "Width", SettingNotStored};
constexpr IntSetting KeyMainHeight{SECTION_MAIN_WINDOW, "Height", SettingNotStored};
constexpr IntSetting KeyMainMaximised{SECTION_MAIN_WINDOW, "Maximised", 0};
constexpr IntSetting KeyShowListing{SECTION_MAIN_WINDOW, "Show listing", 1};
constexpr IntSetting KeyShowPlot{SECTION_MAIN_WINDOW, "Show plot", 1};
constexpr IntSetting KeyShowChart{SECTION_MAIN_WINDOW, "Show chart", 1};
constexpr IntSetting KeyShowTags{SECTION_MAIN_WINDOW, "Show tags", 1};

// ---- "Listing" -------------------------------------------------------------------
constexpr IntSetting KeyListingLatLong{SECTION_LISTING, "Lat/Long", LATLONG_DEG_MIN};
constexpr IntSetting KeyListingSign{SECTION_LISTING, "Sign", SIGN_NORTH_SOUTH};
constexpr IntSetting KeyListingDecimalPlaces{SECTION_LISTING, "Decimal places", READING_0_0};
constexpr TextSetting KeyListingFontName{SECTION_LISTING, "FontName", "Arial", 63};
constexpr IntSetting KeyListingFontSize{SECTION_LISTING, "FontSize", 12};
// Child window places use the section named by the window's title; see
// ChildOriginX and its sisters below.

// ---- "Listing File" -------------------------------------------------------------
constexpr IntSetting KeyListingFileLatLong{SECTION_LISTING_FILE, "Lat/Long", 1};
constexpr IntSetting KeyListingFileSign{SECTION_LISTING_FILE, "Sign", 1};
constexpr IntSetting KeyListingFileDecimalPlaces{SECTION_LISTING_FILE, "Decimal places", 1};
constexpr IntSetting KeyListingFileSeparator{SECTION_LISTING_FILE, "Separator", 1};

// ---- "Print Listing" ----------------------------------------------------------
constexpr IntSetting KeyPrintListingLatLong{SECTION_PRINT_LISTING, "Lat/Long", 1};
constexpr IntSetting KeyPrintListingSign{SECTION_PRINT_LISTING, "Sign", 1};
constexpr IntSetting KeyPrintListingDecimalPlaces{SECTION_PRINT_LISTING, "Decimal places", 1};
constexpr IntSetting KeyPrintListingDate{SECTION_PRINT_LISTING, "Date", 1};
constexpr IntSetting KeyPrintListingFiles{SECTION_PRINT_LISTING, "Files", 1};
constexpr IntSetting KeyPrintListingStats{SECTION_PRINT_LISTING, "Stats", 1};

// ---- "Plot" ------------------------------------------------------------------------
constexpr IntSetting KeyPlotChannel{SECTION_PLOT, "Channel", 1};
constexpr TextSetting KeyPlotPowerBreak1{SECTION_PLOT, "Power break 1", "80", 31};
constexpr TextSetting KeyPlotPowerBreak2{SECTION_PLOT, "Power break 2", "60", 31};
constexpr TextSetting KeyPlotPowerBreak3{SECTION_PLOT, "Power break 3", "40", 31};
constexpr TextSetting KeyPlotDotSize{SECTION_PLOT, "Dot size", "5", 31};
constexpr TextSetting KeyPlotFontName{SECTION_PLOT, "FontName", "Arial", 63};
constexpr IntSetting KeyPlotFontSize{SECTION_PLOT, "FontSize", 12};

// ---- "Plot scale" -----------------------------------------------------------------
constexpr TextSetting KeyPlotScaleTlLat{SECTION_PLOT_SCALE, "TL Lat", "0", 31};
constexpr TextSetting KeyPlotScaleTlLong{SECTION_PLOT_SCALE, "TL Long", "0", 31};
constexpr TextSetting KeyPlotScaleBrLat{SECTION_PLOT_SCALE, "BR Lat", "0", 31};
constexpr TextSetting KeyPlotScaleBrLong{SECTION_PLOT_SCALE, "BR Long", "0", 31};
constexpr TextSetting KeyPlotScaleTlX{SECTION_PLOT_SCALE, "TL X", "0", 15};
constexpr TextSetting KeyPlotScaleTlY{SECTION_PLOT_SCALE, "TL Y", "0", 15};
constexpr TextSetting KeyPlotScaleBrX{SECTION_PLOT_SCALE, "BR X", "0", 15};
constexpr TextSetting KeyPlotScaleBrY{SECTION_PLOT_SCALE, "BR Y", "0", 15};
constexpr IntSetting KeyPlotScaleConfirm{SECTION_PLOT_SCALE, "Confirm", 1};
constexpr IntSetting KeyPlotScaleAspect{SECTION_PLOT_SCALE, "Aspect 1:1", 1};
constexpr IntSetting KeyPlotScaleDotSize{SECTION_PLOT_SCALE, "Dot size", 10};

// ---- "Chart" -----------------------------------------------------------------------
constexpr IntSetting KeyChartChannel{SECTION_CHART, "Channel", 1};
constexpr TextSetting KeyChartFontName{SECTION_CHART, "FontName", "Arial", 63};
constexpr IntSetting KeyChartFontSize{SECTION_CHART, "FontSize", 12};

// ---- "Text Tags" ------------------------------------------------------------------
constexpr IntSetting KeyTagsOriginX{SECTION_TEXT_TAGS, "Origin X", 20};
constexpr IntSetting KeyTagsOriginY{SECTION_TEXT_TAGS, "Origin Y", 20};

// ---- "General" ---------------------------------------------------------------------
constexpr IntSetting KeyRecordIntervalSeconds{SECTION_GENERAL, "Record Interval Seconds", DefaultRecordIntervalSeconds};
constexpr IntSetting KeyRecordIntervalMeters{SECTION_GENERAL, "Record Interval Meters", DefaultRecordIntervalMeters};
constexpr IntSetting KeyRecordIntervalInMeters{SECTION_GENERAL, "Record Interval in Meters", 0};
constexpr IntSetting KeyAutosaveEnable{SECTION_GENERAL, "Autosave Enable", 0};
constexpr IntSetting KeyAutosaveInterval{SECTION_GENERAL, "Autosave Interval", DefaultAutosaveMinutes};
constexpr IntSetting KeyAveraging{SECTION_GENERAL, "Averaging", 0};
constexpr IntSetting KeyShowPath{SECTION_GENERAL, "Show Path", 0};
constexpr IntSetting KeyLoadStoredData{SECTION_GENERAL, "Load stored data", 1};
constexpr IntSetting KeyCheckStoredData{SECTION_GENERAL, "Check stored data", 1};
constexpr IntSetting KeyPlotCurrentPosition{SECTION_GENERAL, "Plot Current Position", 0};
constexpr IntSetting KeyMaxPlotTime{SECTION_GENERAL, "Max plot time", DefaultMaxPlotTime};
constexpr IntSetting KeyEarthRadius{SECTION_GENERAL, "Earth Radius (km)", DefaultEarthRadiusKm};

// ---- "Calibration" ----------------------------------------------------------------
// Default empty; some readers supply their own default (see CalibrationFileName).
constexpr TextSetting KeyCalibrationFile[4] = {
    {SECTION_CALIBRATION, "Ch1 filename", "", 259},
    {SECTION_CALIBRATION, "Ch2 filename", "", 259},
    {SECTION_CALIBRATION, "Ch3 filename", "", 259},
    {SECTION_CALIBRATION, "Ch4 filename", "", 259},
};

// ---- "Port" -------------------------------------------------------------------------
constexpr TextSetting KeyPcPort{SECTION_PORT, "PC Port", "COM1", 255};

// ---- "GPS Set" ----------------------------------------------------------------------
constexpr IntSetting KeyGpsUtcOffset{SECTION_GPS_SET, "UTC Offset", 0};
constexpr TextSetting KeyGpsLatNS{SECTION_GPS_SET, "Lat N/S", "N", 1};
constexpr IntSetting KeyGpsLatDeg{SECTION_GPS_SET, "Lat Deg", 0};
constexpr IntSetting KeyGpsLatMin{SECTION_GPS_SET, "Lat Min", 0};
constexpr TextSetting KeyGpsLatSec{SECTION_GPS_SET, "Lat Sec", "0", 31};
constexpr TextSetting KeyGpsLongEW{SECTION_GPS_SET, "Long E/W", "E", 1};
constexpr IntSetting KeyGpsLongDeg{SECTION_GPS_SET, "Long Deg", 0};
constexpr IntSetting KeyGpsLongMin{SECTION_GPS_SET, "Long Min", 0};
constexpr TextSetting KeyGpsLongSec{SECTION_GPS_SET, "Long Sec", "0", 31};

// ---- "GPS Diff" ---------------------------------------------------------------------
constexpr IntSetting KeyGpsDiffEnable{SECTION_GPS_DIFF, "Enable GPS Diff mode", 0};
constexpr TextSetting KeyGpsDiffBaudRate{SECTION_GPS_DIFF, "Baud Rate", "4800", 15};

// ---- "AR3000A" ----------------------------------------------------------------------
constexpr IntSetting KeyAr3000aEnable{SECTION_AR3000A, "Enable AR3000A mode", 0};
constexpr TextSetting KeyAr3000aBaudRate{SECTION_AR3000A, "Baud Rate", "4800", 15};
constexpr TextSetting KeyAr3000aFreq[4] = {
    {SECTION_AR3000A, "Ch1 Freq", "88.0", 31},
    {SECTION_AR3000A, "Ch2 Freq", "89.0", 31},
    {SECTION_AR3000A, "Ch3 Freq", "90.0", 31},
    {SECTION_AR3000A, "Ch4 Freq", "91.0", 31},
};
constexpr TextSetting KeyAr3000aMode[4] = {
    {SECTION_AR3000A, "Ch1 Mode", "WFM", 15},
    {SECTION_AR3000A, "Ch2 Mode", "WFM", 15},
    {SECTION_AR3000A, "Ch3 Mode", "WFM", 15},
    {SECTION_AR3000A, "Ch4 Mode", "WFM", 15},
};
constexpr IntSetting KeyAr3000aAttOn[4] = {
    {SECTION_AR3000A, "Ch1 Att on", 0},
    {SECTION_AR3000A, "Ch2 Att on", 0},
    {SECTION_AR3000A, "Ch3 Att on", 0},
    {SECTION_AR3000A, "Ch4 Att on", 0},
};

// ---- "TZR4100" ----------------------------------------------------------------------
// Read as 0 at start-up; the accessory set-up at port open reads it with 1.
constexpr IntSetting KeyTzrEnable{SECTION_TZR4100, "Enable TZR4100 mode", 0};
constexpr int TzrEnableDefaultAtPortOpen = 1;
constexpr IntSetting KeyTzrInitialChannel{SECTION_TZR4100, "Inital channel", 1};
constexpr IntSetting KeyTzrNumberOfChannels{SECTION_TZR4100, "Number of channels", DefaultTzrChannelCount};
constexpr IntSetting KeyTzrIncrementChannel{SECTION_TZR4100, "Incriment channel", 1};
constexpr IntSetting KeyTzrInputChannel{SECTION_TZR4100, "Input channel", 1};

// ---- "Setup" ------------------------------------------------------------------------
constexpr IntSetting KeySetupStatus{SECTION_SETUP, "Status", 2};

// ---- Access through the settings file at settingsPath ------------------------------
int ReadSetting(const IntSetting& setting);
// The same key read with another default than the table's.
int ReadSettingWithDefault(const IntSetting& setting, int defaultValue);
// Copies the value (at most the setting's length and size-1 characters).
void ReadSetting(const TextSetting& setting, char* buffer, int size);
void ReadSettingWithDefault(const TextSetting& setting, const char* defaultValue,
                            char* buffer, int size);
// A text number ("80", "12.5"), converted as atof does.
double ReadSettingNumber(const TextSetting& setting);

int WriteSetting(const IntSetting& setting, const char* value);
int WriteSetting(const TextSetting& setting, const char* value);
int WriteSettingInt(const IntSetting& setting, int value);

// A child window's place keys live in the section named by its title.
int ReadWindowPlace(const char* section, const char* key);

// ---- The display formats ----------------------------------------------------------
// Reads "Lat/Long", "Sign" and "Decimal places" of section "Listing" into
// ScreenFormat (start-up).
void LoadScreenFormat();
// The report formats, read afresh from "Print Listing" / "Listing File".
DisplayFormat ReadPrintListingFormat();
DisplayFormat ReadListingFileFormat();

#endif
