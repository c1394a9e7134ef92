// The local-time breakdown of a clock value, shared by every platform: each
// platform asks its own runtime for a struct tm and copies it out here.
#ifndef VELDOR_BASE_LOCAL_TIME_H
#define VELDOR_BASE_LOCAL_TIME_H

#include "base/platform.h"

struct tm;

// Copies the fields of a broken-down time into out (year in full, month
// 1..12); 0 when either pointer is null.
int LocalTimeFromTm(const struct tm* parts, LocalTime* out);

#endif
