#include "link/gps_commands.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "link/frame_codec.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "storage/settings_file.h"

namespace {

// String-table text 3.
const char ResetQuestion[] =
    "Resetting will change all settings to the factory default.\nThis means that the GPS will "
    "have to reaquire all the current satellite information before it can produce a valid "
    "position fix.\n\nDo you want to continue?";
// String-table text 4.
const char ResetSentNote[] =
    "GPS reset command has been sent.\n\nTo reduce the time to the first position fix, you "
    "should now set the latitude & longitude.";
// String-table text 5.
const char SelfTestQuestion[] =
    "Running a self test will cause the GPS to loose track of current satellites which will "
    "have to be reaquired before valid position fixes can be made.\n\nDo you want to continue?";

struct PositionAxis {
    uint32_t maxDegrees;
    const char* hemisphereMessage;
    const char* command;  // "LT" or "LG"
    const char* statusLine;
    const TextSetting* hemisphereKey;
    const char* positiveLetter;
    const char* negativeLetter;
    const IntSetting* degreesKey;
    const IntSetting* minutesKey;
    const TextSetting* secondsKey;
};

const PositionAxis LatitudeAxis = {90,
                                   "Invalid north/south setting",
                                   "LT",
                                   "Set GPS latitude command sent",
                                   &KeyGpsLatNS,
                                   "N",
                                   "S",
                                   &KeyGpsLatDeg,
                                   &KeyGpsLatMin,
                                   &KeyGpsLatSec};
const PositionAxis LongitudeAxis = {180,
                                    "Invalid east/west setting",
                                    "LG",
                                    "Set GPS longitude command sent",
                                    &KeyGpsLongEW,
                                    "E",
                                    "W",
                                    &KeyGpsLongDeg,
                                    &KeyGpsLongMin,
                                    &KeyGpsLongSec};

int IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A whole number as plain decimal conversion reads it: leading blanks, an
// optional sign, digits; the rest is ignored, no number gives 0. Beyond 32
// bits it stops at the nearest end of the range.
int32_t WholeNumber(const char* text) {
    long long value = strtoll(text, nullptr, 10);
    if (value > INT32_MAX) return INT32_MAX;
    if (value < INT32_MIN) return INT32_MIN;
    return (int32_t)value;
}

// A decimal number with an optional fraction and exponent, held in single
// precision. Only decimal text counts, so that every C runtime reads the
// same number; no number gives 0.
float DecimalNumber(const char* text) {
    char number[GpsFieldSize];
    const char* p = text;
    while (*p == ' ' || *p == '\t') p++;
    const char* start = p;
    const char* end = p;
    if (*p == '+' || *p == '-') p++;
    int digits = 0;
    for (; IsDigit(*p); p++) digits++;
    if (*p == '.') {
        for (p++; IsDigit(*p); p++) digits++;
    }
    if (digits > 0) {
        end = p;
        if (*p == 'e' || *p == 'E') {
            const char* q = p + 1;
            if (*q == '+' || *q == '-') q++;
            if (IsDigit(*q)) {
                while (IsDigit(*q)) q++;
                end = q;
            }
        }
    }
    size_t length = (size_t)(end - start);
    if (length == 0) return 0.0f;
    if (length >= sizeof number) length = sizeof number - 1;
    memcpy(number, start, length);
    number[length] = '\0';
    double value = strtod(number, nullptr);
    if (value > 1e30 || value < -1e30) return value > 0 ? 1e30f : -1e30f;
    return (float)value;
}

void SetText(char* field, const char* format, long value) {
    snprintf(field, GpsFieldSize, format, value);
}

void SetSecondsText(char* field, float seconds) {
    snprintf(field, GpsFieldSize, "%.3f", (double)seconds);
}

int Refuse(const char* message) {
    PlatformMessageBox(message, ICON_STOP);
    return 0;
}

int32_t Clamp(int32_t value, int32_t low, int32_t high) {
    return value < low ? low : value > high ? high : value;
}

float ClampSeconds(double value) {
    if (!(value >= -59.0)) return -59.0f;  // NaN too
    if (value > 59.0) return 59.0f;
    return (float)value;
}

void LoadPosition(const PositionAxis& axis, GpsPositionFields* fields) {
    char letter[8];
    ReadSetting(*axis.hemisphereKey, letter, sizeof letter);
    fields->northOrEast = letter[0] == axis.positiveLetter[0] ? 1 : 0;
    fields->southOrWest = !fields->northOrEast;
    int32_t maxDegrees = (int32_t)axis.maxDegrees;
    SetText(fields->degrees, "%ld",
            (long)Clamp(ReadSetting(*axis.degreesKey), -maxDegrees, maxDegrees));
    SetText(fields->minutes, "%ld", (long)Clamp(ReadSetting(*axis.minutesKey), -59, 59));
    SetSecondsText(fields->seconds, ClampSeconds(ReadSettingNumber(*axis.secondsKey)));
}

int SetPosition(const PositionAxis& axis, GpsPositionFields* fields) {
    if (!fields->northOrEast && !fields->southOrWest) return Refuse(axis.hemisphereMessage);
    uint32_t degrees = (uint32_t)WholeNumber(fields->degrees);
    uint32_t minutes = (uint32_t)WholeNumber(fields->minutes);
    float seconds = DecimalNumber(fields->seconds);
    if (degrees > axis.maxDegrees) return Refuse("Invalid degree value");
    if (minutes > 59) return Refuse("Invalid minute value");
    // Written this way round so that a NaN fails as well.
    if (!((double)seconds >= 0.0 && (double)seconds <= 59.999))
        return Refuse("Invalid second value");
    seconds += 0.0f;  // "-0" shows as 0.000

    SetText(fields->degrees, "%ld", (long)degrees);
    SetText(fields->minutes, "%ld", (long)minutes);
    SetSecondsText(fields->seconds, seconds);

    float thousandths = seconds * 1000.0f;
    int32_t value = ((int32_t)degrees * 60 + (int32_t)minutes) * 60000 + (int32_t)thousandths;
    int negative = !fields->northOrEast;
    if (negative) value = -value;
    SendFramef("%s %ld", axis.command, (long)value);
    LogStatus("%s", axis.statusLine);

    WriteSetting(*axis.hemisphereKey, negative ? axis.negativeLetter : axis.positiveLetter);
    WriteSettingInt(*axis.degreesKey, (int)degrees);
    WriteSettingInt(*axis.minutesKey, (int)minutes);
    WriteSetting(*axis.secondsKey, fields->seconds);
    return 1;
}

}  // namespace

void LoadGpsBoxFields(GpsBoxFields* fields) {
    memset(fields, 0, sizeof *fields);
    LocalTime now;
    if (PlatformLocalTime(PlatformTime(), &now)) {
        SetText(fields->time.hour, "%ld", (long)now.hour);
        SetText(fields->time.minute, "%02ld", (long)now.minute);
        SetText(fields->time.second, "%02ld", (long)now.second);
        SetText(fields->date.day, "%ld", (long)now.day);
        SetText(fields->date.month, "%ld", (long)now.month);
        SetText(fields->date.year, "%ld", (long)now.year);
    }
    SetText(fields->time.utcOffset, "%ld", (long)Clamp(ReadSetting(KeyGpsUtcOffset), -12, 12));
    LoadPosition(LatitudeAxis, &fields->latitude);
    LoadPosition(LongitudeAxis, &fields->longitude);
}

int GpsSetTime(GpsTimeFields* fields) {
    uint32_t hour = (uint32_t)WholeNumber(fields->hour);
    uint32_t minute = (uint32_t)WholeNumber(fields->minute);
    uint32_t second = (uint32_t)WholeNumber(fields->second);
    int32_t offset = WholeNumber(fields->utcOffset);
    if (hour > 23) return Refuse("Invalid hour value");
    if (minute > 59) return Refuse("Invalid minute value");
    if (second > 60) return Refuse("Invalid second value");  // a leap second is legal
    if (offset < -12 || offset > 12) return Refuse("Invalid UTC offset");

    SetText(fields->hour, "%ld", (long)hour);
    SetText(fields->minute, "%02ld", (long)minute);
    SetText(fields->second, "%02ld", (long)second);
    SetText(fields->utcOffset, "%ld", (long)offset);

    int utcHour = (int)hour - offset;
    if (utcHour < 0) utcHour += 24;
    if (utcHour > 23) utcHour -= 24;
    // Only the hour moves to UTC; the operator sets the UTC date himself.
    SendFramef("OT %d %d %d", utcHour, (int)minute, (int)second);
    LogStatus("Set GPS time command sent");
    WriteSettingInt(KeyGpsUtcOffset, offset);
    return 1;
}

int GpsSetDate(GpsDateFields* fields) {
    uint32_t day = (uint32_t)WholeNumber(fields->day);
    uint32_t month = (uint32_t)WholeNumber(fields->month);
    uint32_t year = (uint32_t)WholeNumber(fields->year);
    if (day < 1 || day > 31) return Refuse("Invalid day value");
    if (month < 1 || month > 12) return Refuse("Invalid month value");
    // Two digits: 80..99 are 1980..1999, 0..77 are 2000..2077; 78 and 79 fail.
    if (year >= 80 && year <= 99) year += 1900;
    if (year < 78) year += 2000;
    if (year < 1980 || year > 2077) return Refuse("Invalid year value");

    SetText(fields->day, "%ld", (long)day);
    SetText(fields->month, "%ld", (long)month);
    SetText(fields->year, "%ld", (long)year);
    SendFramef("OD %d %d %d", (int)day, (int)month, (int)year);
    LogStatus("Set GPS date command sent");
    return 1;
}

int GpsSetLatitude(GpsPositionFields* fields) {
    return SetPosition(LatitudeAxis, fields);
}

int GpsSetLongitude(GpsPositionFields* fields) {
    return SetPosition(LongitudeAxis, fields);
}

void GpsInitialise() {
    SendFrameText("OI 1");
    LogStatus("Set GPS initalise command sent");
}

int GpsReset() {
    if (!PlatformAskYesNo(ResetQuestion)) return 0;
    SendFrameText("OI 2");
    LogStatus("Set GPS reset command sent");
    PlatformMessageBox(ResetSentNote, ICON_QUESTION);
    return 1;
}

int GpsSelfTest() {
    if (!PlatformAskYesNo(SelfTestQuestion)) return 0;
    SendFrameText("OS");
    LogStatus("GPS self test command sent");
    return 1;
}
