// The local-time breakdown of a clock value.
#include "base/local_time.h"

#include <time.h>

int LocalTimeFromTm(const struct tm* parts, LocalTime* out) {
    if (parts == nullptr || out == nullptr) return 0;
    out->year = parts->tm_year + 1900;
    out->month = parts->tm_mon + 1;
    out->day = parts->tm_mday;
    out->hour = parts->tm_hour;
    out->minute = parts->tm_min;
    out->second = parts->tm_sec;
    out->weekday = parts->tm_wday;
    return 1;
}
