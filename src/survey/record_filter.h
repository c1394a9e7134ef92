// The record filter: one pass over the store that removes records by
// position, by reading or by the GPS state at the moment of the record. The
// pass is destructive and has no undo; the text tags follow their records.
//
// The Win32 FilterBox reads its controls into FilterFields, and its OK
// button calls FilterDialogOk; everything below that is here.
#ifndef VELDOR_SURVEY_RECORD_FILTER_H
#define VELDOR_SURVEY_RECORD_FILTER_H

#include <stdint.h>

// A test names what is removed: "greater than" L removes the records above L.
constexpr uint8_t FILTER_TEST_NONE = 0;
constexpr uint8_t FILTER_TEST_GREATER = 1;  // "greater than"
constexpr uint8_t FILTER_TEST_LESS = 2;     // "less than"

// The entries of the test drop-down lists, in order (selection + 1 = test).
extern const char* const FilterTestNames[2];
// The entries of the channel drop-down list, in order (selection + 1 = channel).
extern const char* const FilterChannelNames[4];

constexpr int FilterLimitTextSize = 21;    // the edit boxes take 20 characters
constexpr int FilterLimitReadLength = 23;  // characters of an edit box looked at

struct FilterCriteria {
    uint8_t gpsTrackedOnly;  // remove the records that were not tracked
    uint8_t latitudeTest;    // FILTER_TEST_...
    int32_t latitudeLimit;   // milliseconds of arc, south negative
    uint8_t longitudeTest;
    int32_t longitudeLimit;  // milliseconds of arc, west negative
    uint8_t readingTest;
    uint8_t readingChannel;  // 1..4
    float readingLimit;
    uint8_t readingCalibrated;  // 1: ChannelLookup values, 0: raw bytes
};

// What the controls of FilterBox hold; selections are zero-based list
// positions, as the drop-down lists report them.
struct FilterFields {
    int gpsTrackedOnly;  // "Remove readings where GPS was not tracking"
    int latitudeOn;      // "Filter on Latitude"
    int latitudeSelection;
    char latitudeText[FilterLimitReadLength + 1];
    int longitudeOn;  // "Filter on Longitude"
    int longitudeSelection;
    char longitudeText[FilterLimitReadLength + 1];
    int readingOn;  // "Filter on channel"
    int channelSelection;
    int readingSelection;
    char readingText[FilterLimitReadLength + 1];
    int calibrated;  // "Calibrated units" rather than "Raw units"
};

// The state of the controls each time the dialog opens: every box clear,
// "greater than", channel "1", limits "0", "Calibrated units".
FilterFields DefaultFilterFields();

// A position limit as atol reads it: leading blanks skipped, the number ends
// at the first character that cannot belong to it, no number gives 0. At
// most FilterLimitReadLength characters are looked at; beyond 32 bits the
// value stops at the nearest end of the range.
int32_t ParseFilterPositionLimit(const char* text);
// A reading limit as atof reads it, rounded to a 32-bit float; the same rules.
float ParseFilterReadingLimit(const char* text);

// The criteria from the fields. A test whose box is clear is 0 and its list
// and edit box are not read.
FilterCriteria ReadFilterCriteria(const FilterFields& fields);

// The raw byte a "Raw units" limit compares with: the limit truncated toward
// zero, cut to its low 8 bits (12.9 is 12, -1 is 255, 300 is 44).
uint8_t RawFilterLimit(float limit);

// 1 when the row goes under the criteria. No side effects.
int FilterRemovesRecord(const FilterCriteria& criteria, int32_t index);

// The pass. Returns 0, with nothing changed, when no test is chosen;
// otherwise 1, also when no record went. Removed rows take their text tags
// with them and later tags follow their records. Runs between BeginBusy and
// EndBusy. Repaints and STATUS_CHANGED are left to the caller.
int ApplyFilterCriteria(const FilterCriteria& criteria);

// The OK button of FilterBox: reads the criteria and runs the pass. On 0 the
// operator is told "Nothing to do" (stop icon) and the dialog stays open; on
// 1 the dialog ends with 1.
int FilterDialogOk(const FilterFields& fields);

#endif
