// The platform seam for the console harness: the port is a file descriptor,
// status lines go to standard output, questions are answered No.
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include "console_platform.h"
#include "base/local_time.h"
#include "base/platform.h"
#include "storage/ini_file.h"

int consolePortFd = -1;

int PlatformPortIsOpen() { return consolePortFd >= 0 ? 1 : 0; }

int PlatformPortWrite(const char* data, int length) {
    int done = 0;
    while (consolePortFd >= 0 && done < length) {
        ssize_t n = write(consolePortFd, data + done, (size_t)(length - done));
        if (n <= 0) return 0;
        done += (int)n;
    }
    return done == length ? 1 : 0;
}

void PlatformSetStatusPane(int pane, const char* text) {
    if (pane == 0) printf("status: %s\n", text);
    else if (pane == 1) printf("state:  %s\n", text);
    fflush(stdout);
}

int PlatformAskYesNo(const char* text) {
    printf("question (answered No): %s\n", text);
    return 0;
}

void PlatformMessageBox(const char* text, int) { printf("message: %s\n", text); }
int PlatformWindowExists(int) { return 0; }
void PlatformRepaint(int, int, int) {}
void PlatformSetVerticalScroll(int, int) {}
void PlatformSetHorizontalScroll(int, int) {}
void PlatformSetWindowCaption(int, const char*) {}
int PlatformClientSize(int, int* width, int* height) {
    *width = 0;
    *height = 0;
    return 0;
}
void PlatformNotifyWindow(int, int) {}
void PlatformSetFrameCaption(const char* text) { printf("caption: %s\n", text); }
void PlatformFrameCommand(int commandId) { printf("frame command %d\n", commandId); }
uint32_t PlatformTime() { return (uint32_t)time(nullptr); }

int PlatformLocalTime(uint32_t seconds, LocalTime* out) {
    time_t t = (time_t)seconds;
    struct tm parts;
    if (out == nullptr || localtime_r(&t, &parts) == nullptr) return 0;
    return LocalTimeFromTm(&parts, out);
}

void PlatformBusyChanged(int) {}

int ChooseFile(char* path, int size, int) {
    if (size > 0) path[0] = '\0';
    return 0;
}

int ProfileGetInt(const char* section, const char* key, int defaultValue, const char* path) {
    return IniGetInt(section, key, defaultValue, path);
}

int ProfileGetString(const char* section, const char* key, const char* defaultValue,
                     char* buffer, int size, const char* path) {
    return IniGetString(section, key, defaultValue, buffer, size, path);
}

int ProfileWriteString(const char* section, const char* key, const char* value,
                       const char* path) {
    return IniWriteString(section, key, value, path);
}
