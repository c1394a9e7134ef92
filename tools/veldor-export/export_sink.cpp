// The buffered output of the writers, and the texts they share.
#include "export_sink.h"

#include <math.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

void Flush(Sink* s) {
    if (s->used > 0 && fwrite(s->buffer, 1, s->used, s->file) != s->used) s->failed = 1;
    s->used = 0;
}

void Put(Sink* s, const char* text, size_t n) {
    if (s->used + n > sizeof s->buffer) Flush(s);
    if (n > sizeof s->buffer) {
        if (fwrite(text, 1, n, s->file) != n) s->failed = 1;
        return;
    }
    memcpy(s->buffer + s->used, text, n);
    s->used += n;
}

void Put(Sink* s, const char* text) {
    Put(s, text, strlen(text));
}

void Putf(Sink* s, const char* format, ...) {
    char text[4096];
    va_list args;
    va_start(args, format);
    int n = vsnprintf(text, sizeof text, format, args);
    va_end(args);
    if (n > 0) Put(s, text, n < (int)sizeof text ? (size_t)n : sizeof text - 1);
}

void PutInt(Sink* s, int64_t value) {
    char digits[24];
    int n = 0;
    uint64_t v = value < 0 ? (uint64_t)(-(value + 1)) + 1 : (uint64_t)value;
    do digits[sizeof digits - 1 - n++] = (char)('0' + v % 10);
    while ((v /= 10) != 0);
    if (value < 0) digits[sizeof digits - 1 - n++] = '-';
    Put(s, digits + sizeof digits - n, (size_t)n);
}

// Milliseconds of arc as degrees with 7 places: mas / 3600000 = mas * 25 / 9
// ten-millionths, rounded half away from zero.
void PutDegrees(Sink* s, int32_t mas) {
    const int64_t scaled = (int64_t)mas * 25;
    const int64_t units = ((scaled < 0 ? -scaled : scaled) + 4) / 9;
    if (scaled < 0 && units != 0) Put(s, "-", 1);
    PutInt(s, units / 10000000);
    char fraction[9];
    snprintf(fraction, sizeof fraction, ".%07d", (int)(units % 10000000));
    Put(s, fraction, 8);
}

// 8-bit text (the program's ANSI code page, taken as Latin-1) as UTF-8,
// escaped for the format (CSV: for the inside of a quoted field).
void PutEscaped(Sink* s, const char* text, int escape) {
    for (const unsigned char* p = (const unsigned char*)text; *p != '\0'; p++) {
        const unsigned char c = *p;
        char out[8];
        if (c >= 0x80) {
            out[0] = (char)(0xC0 | (c >> 6));
            out[1] = (char)(0x80 | (c & 0x3F));
            Put(s, out, 2);
        } else if (escape == ESCAPE_CSV && c == '"') {
            Put(s, "\"\"", 2);
        } else if (escape == ESCAPE_JSON && (c == '"' || c == '\\')) {
            out[0] = '\\', out[1] = (char)c;
            Put(s, out, 2);
        } else if (escape == ESCAPE_JSON && c < 0x20) {
            snprintf(out, sizeof out, "\\u%04x", c);
            Put(s, out, 6);
        } else if (escape == ESCAPE_XML && (c == '<' || c == '>' || c == '&' || c == '"')) {
            Put(s, c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : "&quot;");
        } else if (escape == ESCAPE_XML && c < 0x20 && c != '\t' && c != '\n' && c != '\r') {
            Put(s, "?", 1);  // not allowed in XML 1.0
        } else {
            Put(s, (const char*)p, 1);
        }
    }
}

// A clock value as ISO 8601 UTC, "1970-01-01T00:00:00Z" (20 characters).
void IsoTime(uint32_t seconds, char out[21]) {
    const int64_t days = seconds / 86400;
    const int secondOfDay = (int)(seconds % 86400);
    // Civil date from days since 1970-01-01 (proleptic Gregorian).
    const int64_t z = days + 719468;
    const int64_t era = z / 146097;
    const int64_t doe = z - era * 146097;
    const int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const int64_t mp = (5 * doy + 2) / 153;
    const int day = (int)(doy - (153 * mp + 2) / 5 + 1);
    const int month = (int)(mp < 10 ? mp + 3 : mp - 9);
    const int year = (int)(yoe + era * 400 + (month <= 2));
    char text[64];
    snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", year % 10000, month, day,
             secondOfDay / 3600, secondOfDay / 60 % 60, secondOfDay % 60);
    memcpy(out, text, 20);
    out[20] = '\0';
}

static double RadiansOf(int32_t mas) {
    return (double)mas / 3600000.0 * 3.14159265358979323846 / 180.0;
}

static double GreatCircle(const Record& a, const Record& b) {
    const double lat1 = RadiansOf(a.latitude), lat2 = RadiansOf(b.latitude);
    const double dLat = lat2 - lat1;
    const double dLon = RadiansOf((int32_t)((uint32_t)b.longitude - (uint32_t)a.longitude));
    const double h =
        sin(dLat / 2) * sin(dLat / 2) + cos(lat1) * cos(lat2) * sin(dLon / 2) * sin(dLon / 2);
    return 2.0 * (double)EarthRadiusKm * 1000.0 * asin(sqrt(h < 1.0 ? h : 1.0));
}

double DistanceDriven() {
    double metres = 0.0;
    int32_t previous = -1;
    for (int32_t i = 0; i < recordCount; i++) {
        if (!(recordStore.rows[i].flags & RECORD_GPS_FIX)) continue;
        if (previous >= 0) metres += GreatCircle(recordStore.rows[previous], recordStore.rows[i]);
        previous = i;
    }
    return metres;
}

int RecordTimeSpan(uint32_t* first, uint32_t* last) {
    *first = *last = 0;
    for (int32_t i = 0; i < recordCount; i++) {
        const uint32_t t = recordStore.rows[i].time;
        if (t == 0) continue;
        if (*first == 0 || t < *first) *first = t;
        if (t > *last) *last = t;
    }
    return *first != 0;
}
