// The text forms of positions, readings, row stamps, file names and dates.
//
// Two families: the screen form (Listing rows and live row, the Plot's cursor
// read-out, the print-plot confirmation), governed by ScreenFormat, and the
// report form (printed listing, listing text file), each report with a
// DisplayFormat of its own read from its section of the settings file.
// Everything here is pure text work over ChannelLookup and the survey state;
// nothing fails and no value is rejected.
#ifndef VELDOR_VIEWS_DISPLAY_FORMAT_H
#define VELDOR_VIEWS_DISPLAY_FORMAT_H

#include <stdint.h>

#include "survey/survey_state.h"

// Which pair of hemisphere letters a coordinate takes.
constexpr int AXIS_LATITUDE = 1;
constexpr int AXIS_LONGITUDE = 2;

// latLongMode, with the labels of the dialogs' radio buttons.
constexpr int32_t LATLONG_DEG = 1;           // "Deg"
constexpr int32_t LATLONG_DEG_MIN = 2;       // "Deg Min"
constexpr int32_t LATLONG_DEG_MIN_SEC = 3;   // "Deg Min Sec"
constexpr int32_t LATLONG_MILLISECONDS = 4;  // "Milliseconds"
// signMode.
constexpr int32_t SIGN_NORTH_SOUTH = 1;  // "North/South"
constexpr int32_t SIGN_PLUS_MINUS = 2;   // "+/-"
// readingMode ("Decimal places"); 2 is never written by the program.
constexpr int32_t READING_RAW = -1;   // "Raw"
constexpr int32_t READING_0 = 0;      // "0"
constexpr int32_t READING_0_0 = 1;    // "0.0"
constexpr int32_t READING_0_000 = 3;  // "0.000"

// Buffer sizes, terminator included.
constexpr int ScreenTextSize = 64;   // one screen position, reading or row stamp
constexpr int ReportFieldSize = 32;  // the most one report field appends, plus 1
constexpr int DateTextSize = 26;     // "Tue Mar 02 09:05:07 2021\n"

struct DisplayFormat {
    int32_t latLongMode;
    int32_t signMode;
    int32_t readingMode;
};

// The screen's format, section "Listing"; starts as the settings' defaults
// (Deg Min, North/South, one decimal).
extern DisplayFormat ScreenFormat;

// LoadScreenFormat, ReadPrintListingFormat and ReadListingFileFormat read
// these formats from the settings file (storage/settings_file.h).

// ---- Positions (milliseconds of arc, north and east positive) ----------------------
// Screen form of one coordinate into out (ScreenTextSize bytes); returns out.
// A latLongMode outside 1..3 shows milliseconds; no plus sign in "+/-".
char* FormatPosition(int32_t value, int axis, char* out);
// Report form of one coordinate, appended to line. A latLongMode outside 2..4
// shows degrees; "+/-" always shows the sign, except in Milliseconds.
// line must have room for ReportFieldSize - 1 more characters.
void AppendPositionField(char* line, int32_t value, int axis, const DisplayFormat& format);
// The same, never letting line (lineSize bytes) grow past lineSize - 1.
void AppendPositionField(char* line, int lineSize, int32_t value, int axis,
                         const DisplayFormat& format);

// ---- Readings (raw bytes through ChannelLookup) --------------------------------------
// Screen form of one reading into out (ScreenTextSize bytes); returns out.
// A readingMode outside the list shows three decimals. A channel outside 0..3
// is taken as the nearest of 0 and 3.
char* FormatReading(int channel, uint8_t raw, char* out);
// Report form of one reading, appended to line. A readingMode outside the
// list shows the truncated integer. line must have room for
// ReportFieldSize - 1 more characters.
void AppendReadingField(char* line, int channel, uint8_t raw, const DisplayFormat& format);
void AppendReadingField(char* line, int lineSize, int channel, uint8_t raw,
                        const DisplayFormat& format);
// The fields of a record that every report line has, appended to line,
// never letting it grow past lineSize - 1: latitude, longitude, the four
// readings and, for a row with an accessory channel, its number; each field
// but the first after separator.
void AppendRecordFields(char* line, int lineSize, const Record& row,
                        const DisplayFormat& format, const char* separator);
// Appends " [number]" to a screen reading text (ScreenTextSize bytes).
void AppendChannelMark(char* text, int number);

// ---- Listing rows --------------------------------------------------------------------
// "%d - " of index + 1, then "unknown" for time 0, else hh:mm:ss in local
// time. out is ScreenTextSize bytes; returns out.
char* FormatRowStamp(int32_t index, uint32_t time, char* out);
// A record row's reading cell: FormatReading, with the channel mark of the
// row's accessoryChannel on the current input channel when the row has
// RECORD_HAS_CHANNEL. out is ScreenTextSize bytes; returns out.
char* FormatRowReading(const Record& row, int channel, char* out);

#define NO_VALID_DATA_TEXT "- No currently valid data -"
constexpr int ListingColumnCount = 7;

// The texts of the Listing's live row. With valid 1, cell 0 is the number the
// next record will get, cells 1 and 2 the live position, cells 3 to 6 the
// live readings (the current input channel marked with liveAccessoryChannel
// when that is not 0). With valid 0 (dataValidTicks is 0) cell 0 holds the
// one text of the whole row and the other cells are empty.
struct LiveRowText {
    int valid;
    char cell[ListingColumnCount][ScreenTextSize];
};
// Fills out from liveState and recordCount; returns out->valid.
int FormatLiveRow(LiveRowText* out);

// ---- Names and dates -----------------------------------------------------------------
// The whole path with STATUS_FULL_PATH set, else what follows its last '\'
// (the whole path when it has none). Returns a pointer into path.
const char* DisplayFileName(const char* path);
// The 24-character local date and time of the clock value followed by "\n",
// as "Tue Mar 02 09:05:07 2021\n", into out (DateTextSize bytes). A value that
// cannot be broken down gives an empty text. Returns out.
char* FormatDateText(uint32_t time, char* out);

// The frame caption for the current data file: "VELDOR" or
// "VELDOR [ name ]".
void UpdateFrameCaption();

#endif
