#include "survey/record_filter.h"

#include <float.h>
#include <math.h>
#include <stdlib.h>
#include <string.h>

#include "base/busy.h"
#include "base/platform.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"

const char* const FilterTestNames[2] = {"greater than", "less than"};
const char* const FilterChannelNames[4] = {"1", "2", "3", "4"};

namespace {

int IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

int IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Copies into out (FilterLimitReadLength + 1 bytes) the number at the start
// of text: blanks skipped, an optional sign, digits, and with withFraction a
// decimal point with digits and an exponent. Anything else ends the number,
// so the C runtimes of every platform read the same span.
void NumberSpan(const char* text, int withFraction, char* out) {
    char window[FilterLimitReadLength + 1];
    int length = 0;
    if (text != nullptr) {
        while (length < FilterLimitReadLength && text[length] != '\0') {
            window[length] = text[length];
            length++;
        }
    }
    window[length] = '\0';

    const char* p = window;
    while (IsBlank(*p)) p++;
    const char* start = p;
    const char* end = p;  // just past the last character of a valid number
    if (*p == '+' || *p == '-') p++;
    int digits = 0;
    while (IsDigit(*p)) {
        p++;
        digits++;
    }
    if (withFraction && *p == '.') {
        p++;
        while (IsDigit(*p)) {
            p++;
            digits++;
        }
    }
    if (digits > 0) {
        end = p;
        if (withFraction && (*p == 'e' || *p == 'E')) {
            const char* q = p + 1;
            if (*q == '+' || *q == '-') q++;
            if (IsDigit(*q)) {
                while (IsDigit(*q)) q++;
                end = q;
            }
        }
    }
    size_t count = (size_t)(end - start);
    memcpy(out, start, count);
    out[count] = '\0';
}

int RowIsTracked(const Record& row) {
    return (row.flags & RECORD_TRACKED_MASK) == RECORD_TRACKED_MASK;
}

// 1 when the value lies on the removed side of the limit; equal stays.
template <typename T>
int Beyond(uint8_t test, T value, T limit) {
    if (test == FILTER_TEST_GREATER) return value > limit;
    if (test == FILTER_TEST_LESS) return value < limit;
    return 0;
}

uint8_t TestFromSelection(int selection) {
    return (uint8_t)(selection + 1);
}

}  // namespace

FilterFields DefaultFilterFields() {
    FilterFields fields;
    memset(&fields, 0, sizeof fields);
    strcpy(fields.latitudeText, "0");
    strcpy(fields.longitudeText, "0");
    strcpy(fields.readingText, "0");
    fields.calibrated = 1;
    return fields;
}

int32_t ParseFilterPositionLimit(const char* text) {
    char number[FilterLimitReadLength + 1];
    NumberSpan(text, 0, number);
    if (number[0] == '\0') return 0;
    long long value = strtoll(number, nullptr, 10);
    if (value > INT32_MAX) return INT32_MAX;
    if (value < INT32_MIN) return INT32_MIN;
    return (int32_t)value;
}

float ParseFilterReadingLimit(const char* text) {
    char number[FilterLimitReadLength + 1];
    NumberSpan(text, 1, number);
    if (number[0] == '\0') return 0.0f;
    double value = strtod(number, nullptr);
    // A double beyond the float range has no float value: it becomes infinite.
    if (value > (double)FLT_MAX) return HUGE_VALF;
    if (value < -(double)FLT_MAX) return -HUGE_VALF;
    return (float)value;
}

FilterCriteria ReadFilterCriteria(const FilterFields& fields) {
    FilterCriteria criteria;
    memset(&criteria, 0, sizeof criteria);
    criteria.gpsTrackedOnly = fields.gpsTrackedOnly ? 1 : 0;
    if (fields.latitudeOn) {
        criteria.latitudeTest = TestFromSelection(fields.latitudeSelection);
        criteria.latitudeLimit = ParseFilterPositionLimit(fields.latitudeText);
    }
    if (fields.longitudeOn) {
        criteria.longitudeTest = TestFromSelection(fields.longitudeSelection);
        criteria.longitudeLimit = ParseFilterPositionLimit(fields.longitudeText);
    }
    if (fields.readingOn) {
        criteria.readingTest = TestFromSelection(fields.readingSelection);
        criteria.readingLimit = ParseFilterReadingLimit(fields.readingText);
        criteria.readingChannel = (uint8_t)(fields.channelSelection + 1);
        criteria.readingCalibrated = fields.calibrated ? 1 : 0;
    }
    return criteria;
}

uint8_t RawFilterLimit(float limit) {
    // Past 32 bits (and for NaN) the low 8 bits of the truncated value are 0:
    // every float of that size is a multiple of 256.
    if (!(limit > -2147483648.0f && limit < 2147483648.0f)) return 0;
    return (uint8_t)(uint32_t)(int32_t)limit;
}

int FilterRemovesRecord(const FilterCriteria& criteria, int32_t index) {
    const Record& row = recordStore.rows[index];
    if (criteria.gpsTrackedOnly && !RowIsTracked(row)) return 1;
    if (Beyond(criteria.latitudeTest, row.latitude, criteria.latitudeLimit)) return 1;
    if (Beyond(criteria.longitudeTest, row.longitude, criteria.longitudeLimit)) return 1;
    if (criteria.readingTest != FILTER_TEST_NONE) {
        int channel = criteria.readingChannel - 1;
        if (channel < 0) channel = 0;
        if (channel > 3) channel = 3;
        uint8_t raw = row.ch[channel];
        if (criteria.readingCalibrated) {
            if (Beyond(criteria.readingTest, ChannelLookup[channel][raw], criteria.readingLimit))
                return 1;
        } else if (Beyond(criteria.readingTest, raw, RawFilterLimit(criteria.readingLimit))) {
            return 1;
        }
    }
    return 0;
}

int ApplyFilterCriteria(const FilterCriteria& criteria) {
    BeginBusy();
    if (!criteria.gpsTrackedOnly && criteria.latitudeTest == FILTER_TEST_NONE &&
        criteria.longitudeTest == FILTER_TEST_NONE && criteria.readingTest == FILTER_TEST_NONE) {
        EndBusy();
        return 0;
    }
    int32_t kept = 0;
    for (int32_t i = 0; i < recordCount; i++) {
        if (FilterRemovesRecord(criteria, i)) {
            // kept is the row's number now that the rows before it have left:
            // the numbering the tags are in.
            RemoveRecordTags(kept);
        } else {
            recordStore.rows[kept] = recordStore.rows[i];
            kept++;
        }
    }
    recordCount = kept;
    EndBusy();
    return 1;
}

int FilterDialogOk(const FilterFields& fields) {
    if (ApplyFilterCriteria(ReadFilterCriteria(fields))) return 1;
    PlatformMessageBox("Nothing to do", ICON_STOP);
    return 0;
}
