#include "views/display_format.h"

#include <stdio.h>
#include <string.h>

#include "base/platform.h"
#include "survey/cal_lookup.h"

DisplayFormat ScreenFormat = {LATLONG_DEG_MIN, SIGN_NORTH_SOUTH, READING_0_0};

namespace {

constexpr uint32_t MsPerDegree = 3600000u;
constexpr uint32_t MsPerMinute = 60000u;

// Appends text to line (lineSize bytes), cutting it where the buffer ends.
void AppendText(char* line, int lineSize, const char* text) {
    if (line == nullptr || lineSize < 1) return;
    size_t used = 0;
    while (used < (size_t)lineSize && line[used] != '\0') used++;
    if (used >= (size_t)lineSize) {
        line[lineSize - 1] = '\0';  // no terminator found: end the text here
        return;
    }
    size_t room = (size_t)lineSize - 1 - used;
    size_t length = strlen(text);
    if (length > room) length = room;
    memcpy(line + used, text, length);
    line[used + length] = '\0';
}

// sign, number and hemisphere letter one after the other into out (size bytes).
void Compose(char* out, int size, const char* sign, const char* number, const char* hemisphere) {
    out[0] = '\0';
    AppendText(out, size, sign);
    AppendText(out, size, number);
    AppendText(out, size, hemisphere);
}

// " N" / " S" on the latitude axis, " E" / " W" on any other.
const char* HemisphereText(int axis, int negative) {
    if (axis == AXIS_LATITUDE) return negative ? " S" : " N";
    return negative ? " W" : " E";
}

// For the callers that only promise room for one field.
int FieldLineSize(const char* line) {
    return line == nullptr ? 0 : (int)strlen(line) + ReportFieldSize;
}

// |value| without overflow: the smallest value keeps its magnitude 2^31.
uint32_t Magnitude(int32_t value) {
    return value < 0 ? 0u - (uint32_t)value : (uint32_t)value;
}

// The quotient of two floats in single precision. The division is done in
// double and rounded once to float: double has more than twice the bits of
// float, so this is the correctly rounded float quotient whatever precision
// the compiler keeps intermediates in.
float SingleDivide(float numerator, float denominator) {
    return (float)((double)numerator / (double)denominator);
}

// The magnitude texts; out is ScreenTextSize bytes.
void DegreeText(uint32_t m, char* out) {
    float d = SingleDivide((float)m, 3600000.0f);
    snprintf(out, ScreenTextSize, "%.7f", (double)d);
}

void DegreeMinuteText(uint32_t m, char* out) {
    uint32_t rem = m % MsPerDegree;
    float f = SingleDivide((float)rem, 60000.0f);
    snprintf(out, ScreenTextSize, "%d %.5f", (int)(m / MsPerDegree), (double)f);
}

void DegreeMinuteSecondText(uint32_t m, char* out) {
    uint32_t rem = m % MsPerDegree;
    uint32_t rem2 = rem % MsPerMinute;
    float s = SingleDivide((float)rem2, 1000.0f);
    snprintf(out, ScreenTextSize, "%d %d %.3f", (int)(m / MsPerDegree), (int)(rem / MsPerMinute),
             (double)s);
}

void MillisecondText(uint32_t m, char* out) {
    snprintf(out, ScreenTextSize, "%lu", (unsigned long)m);
}

int ClampChannel(int channel) {
    if (channel < 0) return 0;
    if (channel > 3) return 3;
    return channel;
}

// A calibrated value truncated toward zero. Values beyond the 32-bit range
// saturate and a NaN gives 0, so no table content is undefined here.
long TruncateReading(float v) {
    if (v != v) return 0;
    if (v >= 2147483648.0f) return 2147483647L;
    if (v <= -2147483648.0f) return -2147483647L - 1;
    return (long)(int32_t)v;
}

// The text of one reading in a given mode; out is ScreenTextSize bytes.
// wideOther says what a mode outside the list gives: three decimals (screen)
// or the truncated integer (report).
void ReadingText(int channel, uint8_t raw, int32_t mode, int wideOther, char* out) {
    if (mode == READING_RAW) {
        snprintf(out, ScreenTextSize, "%d", (int)raw);
        return;
    }
    float v = ChannelLookup[ClampChannel(channel)][raw];
    if (mode == READING_0_0) {
        snprintf(out, ScreenTextSize, "%.1f", (double)v);
    } else if (mode == READING_0_000 || (mode != READING_0 && wideOther)) {
        snprintf(out, ScreenTextSize, "%.3f", (double)v);
    } else {
        snprintf(out, ScreenTextSize, "%ld", TruncateReading(v));
    }
}

const char* const WeekdayNames[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const char* const MonthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// The local-time breakdown, 1 when it exists and every field is in range.
int BreakDown(uint32_t time, LocalTime* parts) {
    if (!PlatformLocalTime(time, parts)) return 0;
    return parts->weekday >= 0 && parts->weekday <= 6 && parts->month >= 1 && parts->month <= 12 &&
           parts->day >= 1 && parts->day <= 31 && parts->hour >= 0 && parts->hour <= 23 &&
           parts->minute >= 0 && parts->minute <= 59 && parts->second >= 0 && parts->second <= 60 &&
           parts->year >= 0 && parts->year <= 9999;
}

}  // namespace

// ---- Positions ----------------------------------------------------------------------------

char* FormatPosition(int32_t value, int axis, char* out) {
    if (out == nullptr) return out;
    uint32_t m = Magnitude(value);
    char number[ScreenTextSize];
    switch (ScreenFormat.latLongMode) {
        case LATLONG_DEG:
            DegreeText(m, number);
            break;
        case LATLONG_DEG_MIN:
            DegreeMinuteText(m, number);
            break;
        case LATLONG_DEG_MIN_SEC:
            DegreeMinuteSecondText(m, number);
            break;
        default:
            MillisecondText(m, number);
            break;
    }
    int negative = value < 0;
    const char* sign = "";
    const char* hemisphere = "";
    if (ScreenFormat.signMode == SIGN_PLUS_MINUS) {
        sign = negative ? "-" : "";
    } else {
        hemisphere = HemisphereText(axis, negative);
    }
    Compose(out, ScreenTextSize, sign, number, hemisphere);
    return out;
}

void AppendPositionField(char* line, int lineSize, int32_t value, int axis,
                         const DisplayFormat& format) {
    uint32_t m = Magnitude(value);
    int negative = value < 0;
    int plusMinus = format.signMode == SIGN_PLUS_MINUS;
    char number[ScreenTextSize];
    switch (format.latLongMode) {
        case LATLONG_DEG_MIN:
            DegreeMinuteText(m, number);
            break;
        case LATLONG_DEG_MIN_SEC:
            DegreeMinuteSecondText(m, number);
            break;
        case LATLONG_MILLISECONDS:
            if (plusMinus) {
                snprintf(number, sizeof number, "%ld", (long)value);
            } else {
                MillisecondText(m, number);
            }
            break;
        default:
            DegreeText(m, number);
            break;
    }
    const char* sign = "";
    if (plusMinus && format.latLongMode != LATLONG_MILLISECONDS) sign = negative ? "-" : "+";
    const char* hemisphere = plusMinus ? "" : HemisphereText(axis, negative);
    char field[ReportFieldSize];
    Compose(field, ReportFieldSize, sign, number, hemisphere);
    AppendText(line, lineSize, field);
}

void AppendPositionField(char* line, int32_t value, int axis, const DisplayFormat& format) {
    AppendPositionField(line, FieldLineSize(line), value, axis, format);
}

// ---- Readings --------------------------------------------------------------------------------

char* FormatReading(int channel, uint8_t raw, char* out) {
    if (out == nullptr) return out;
    ReadingText(channel, raw, ScreenFormat.readingMode, 1, out);
    return out;
}

void AppendReadingField(char* line, int lineSize, int channel, uint8_t raw,
                        const DisplayFormat& format) {
    char text[ScreenTextSize];
    ReadingText(channel, raw, format.readingMode, 0, text);
    text[ReportFieldSize - 1] = '\0';
    AppendText(line, lineSize, text);
}

void AppendReadingField(char* line, int channel, uint8_t raw, const DisplayFormat& format) {
    AppendReadingField(line, FieldLineSize(line), channel, raw, format);
}

void AppendRecordFields(char* line, int lineSize, const Record& row,
                        const DisplayFormat& format, const char* separator) {
    AppendPositionField(line, lineSize, row.latitude, AXIS_LATITUDE, format);
    AppendText(line, lineSize, separator);
    AppendPositionField(line, lineSize, row.longitude, AXIS_LONGITUDE, format);
    for (int c = 0; c < 4; c++) {
        AppendText(line, lineSize, separator);
        AppendReadingField(line, lineSize, c, row.ch[c], format);
    }
    if (row.flags & RECORD_HAS_CHANNEL) {
        char channel[16];
        snprintf(channel, sizeof channel, "%s%d", separator, (int)row.accessoryChannel);
        AppendText(line, lineSize, channel);
    }
}

void AppendChannelMark(char* text, int number) {
    char mark[24];
    snprintf(mark, sizeof mark, " [%d]", number);
    AppendText(text, ScreenTextSize, mark);
}

// ---- Listing rows ------------------------------------------------------------------------------

char* FormatRowStamp(int32_t index, uint32_t time, char* out) {
    if (out == nullptr) return out;
    // The operator counts records from 1; the sum is taken in 64 bits so that
    // no index overflows.
    long long number = (long long)index + 1;
    if (time == 0) {
        snprintf(out, ScreenTextSize, "%lld - unknown", number);
        return out;
    }
    // The time-of-day part of the date text: its characters 11 to 18.
    char date[DateTextSize];
    FormatDateText(time, date);
    if (date[0] == '\0') {
        snprintf(out, ScreenTextSize, "%lld - ", number);
    } else {
        snprintf(out, ScreenTextSize, "%lld - %.8s", number, date + 11);
    }
    return out;
}

char* FormatRowReading(const Record& row, int channel, char* out) {
    if (out == nullptr) return out;
    FormatReading(channel, row.ch[ClampChannel(channel)], out);
    if ((row.flags & RECORD_HAS_CHANNEL) && channel == currentInputChannel) {
        AppendChannelMark(out, row.accessoryChannel);
    }
    return out;
}

int FormatLiveRow(LiveRowText* out) {
    if (out == nullptr) return 0;
    for (int c = 0; c < ListingColumnCount; c++) out->cell[c][0] = '\0';
    if (liveState.dataValidTicks == 0) {
        out->valid = 0;
        snprintf(out->cell[0], ScreenTextSize, "%s", NO_VALID_DATA_TEXT);
        return 0;
    }
    out->valid = 1;
    snprintf(out->cell[0], ScreenTextSize, "%lld", (long long)recordCount + 1);
    FormatPosition(liveState.liveLatitude, AXIS_LATITUDE, out->cell[1]);
    FormatPosition(liveState.liveLongitude, AXIS_LONGITUDE, out->cell[2]);
    uint8_t accessory = liveState.liveAccessoryChannel;
    for (int c = 0; c < 4; c++) {
        char* cell = out->cell[3 + c];
        FormatReading(c, liveState.liveReadings[c], cell);
        if (accessory != 0 && c == currentInputChannel) AppendChannelMark(cell, accessory);
    }
    return 1;
}

// ---- Names and dates
// ------------------------------------------------------------------------------

const char* DisplayFileName(const char* path) {
    if (path == nullptr) return "";
    if (statusFlags & STATUS_FULL_PATH) return path;
    const char* slash = strrchr(path, '\\');
    return slash == nullptr ? path : slash + 1;
}

char* FormatDateText(uint32_t time, char* out) {
    if (out == nullptr) return out;
    out[0] = '\0';
    LocalTime parts;
    if (!BreakDown(time, &parts)) return out;
    snprintf(out, DateTextSize, "%s %s %02d %02d:%02d:%02d %04d\n", WeekdayNames[parts.weekday],
             MonthNames[parts.month - 1], parts.day, parts.hour, parts.minute, parts.second,
             parts.year);
    return out;
}

void UpdateFrameCaption() {
    if (dataFileName[0] == '\0') {
        PlatformSetFrameCaption("VELDOR");
        return;
    }
    char caption[PathSize + 16];
    snprintf(caption, sizeof caption, "%s [ %s ]", "VELDOR", DisplayFileName(dataFileName));
    PlatformSetFrameCaption(caption);
}
