// What the core asks of the platform, for a console program: message boxes
// go to stderr and nothing else is shown; the rest is the console stand-in
// (tools/stand-in).
#include <stdio.h>

#include "base/platform.h"

int PlatformPortIsOpen() { return 0; }
int PlatformPortWrite(const char*, int) { return 0; }
void PlatformSetStatusPane(int, const char*) {}
int PlatformAskYesNo(const char*) { return 0; }
void PlatformMessageBox(const char* text, int) { fprintf(stderr, "veldor-export: %s\n", text); }
void PlatformSetFrameCaption(const char*) {}
void PlatformFrameCommand(int) {}
