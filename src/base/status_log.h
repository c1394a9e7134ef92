// The operator's status line (pane 0 of the status bar).
#ifndef VELDOR_BASE_STATUS_LOG_H
#define VELDOR_BASE_STATUS_LOG_H

constexpr int StatusLineSize = 256;

// printf-style; the text is cut to 255 characters. Callable from any thread.
void LogStatus(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

#endif
