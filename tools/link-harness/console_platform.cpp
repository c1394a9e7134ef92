// The platform seam for the console harness: the port is a file descriptor,
// status lines go to standard output, questions are answered No; the rest is
// the console stand-in (tools/stand-in).
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "console_platform.h"
#include "base/platform.h"
#include "shell/frame_commands.h"

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
void PlatformSetFrameCaption(const char* text) { printf("caption: %s\n", text); }
// Prints the command and runs it when it is one of the portable core's
// (Record > Stop on a full store).
void PlatformFrameCommand(int commandId) {
    printf("frame command %d\n", commandId);
    RunCoreFrameCommand(commandId);
}
