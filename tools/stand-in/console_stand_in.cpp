// The seam for a console program: no windows and no file dialogs, the PC
// clock in local time, no busy cursor. The program adds its port, its status
// lines, its questions and message boxes, its frame caption and commands.
#include <time.h>

#include "base/local_time.h"
#include "base/platform.h"

int PlatformWindowExists(int) { return 0; }
void PlatformRepaint(int, int, int) {}
void PlatformSetVerticalScroll(int, int) {}
int PlatformClientSize(int, int* width, int* height) {
    *width = *height = 0;
    return 0;
}
void PlatformNotifyWindow(int, int) {}

uint32_t PlatformTime() { return (uint32_t)time(nullptr); }
int PlatformLocalTime(uint32_t seconds, LocalTime* out) {
    const time_t t = (time_t)seconds;
    return LocalTimeFromTm(localtime(&t), out);
}

void PlatformBusyChanged(int) {}
int ChooseFile(char* path, int size, int) {
    if (size > 0) path[0] = '\0';
    return 0;
}
