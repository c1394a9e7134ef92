#include "base/status_log.h"

#include <stdarg.h>
#include <stdio.h>

#include "base/platform.h"

void LogStatus(const char* format, ...) {
    char line[StatusLineSize];
    va_list args;
    va_start(args, format);
    int n = vsnprintf(line, sizeof line, format, args);
    va_end(args);
    if (n < 0) line[0] = '\0';
    PlatformSetStatusPane(0, line);
}
