// What the core asks of the platform, for a console program: message boxes
// go to stderr, the settings file is read with the portable profile reader,
// and there are no windows, port or file dialogs.
#include <stdio.h>
#include <time.h>

#include "base/local_time.h"
#include "base/platform.h"
#include "storage/ini_file.h"

int PlatformPortIsOpen() { return 0; }
int PlatformPortWrite(const char*, int) { return 0; }
void PlatformSetStatusPane(int, const char*) {}
int PlatformAskYesNo(const char*) { return 0; }
void PlatformMessageBox(const char* text, int) { fprintf(stderr, "veldor-export: %s\n", text); }
int PlatformWindowExists(int) { return 0; }
void PlatformRepaint(int, int, int) {}
void PlatformSetVerticalScroll(int, int) {}
void PlatformSetHorizontalScroll(int, int) {}
void PlatformSetWindowCaption(int, const char*) {}
int PlatformClientSize(int, int* width, int* height) {
    *width = *height = 0;
    return 0;
}
void PlatformNotifyWindow(int, int) {}
void PlatformSetFrameCaption(const char*) {}
void PlatformFrameCommand(int) {}
uint32_t PlatformTime() { return (uint32_t)time(nullptr); }
int PlatformLocalTime(uint32_t seconds, LocalTime* out) {
    const time_t t = (time_t)seconds;
    return LocalTimeFromTm(localtime(&t), out);
}
void PlatformBusyChanged(int) {}
int ChooseFile(char* path, int, int) {
    path[0] = '\0';
    return 0;
}
int ProfileGetInt(const char* section, const char* key, int defaultValue, const char* path) {
    return IniGetInt(section, key, defaultValue, path);
}
int ProfileGetString(const char* section, const char* key, const char* defaultValue,
                     char* buffer, int size, const char* path) {
    return IniGetString(section, key, defaultValue, buffer, size, path);
}
int ProfileWriteString(const char*, const char*, const char*, const char*) { return 0; }
