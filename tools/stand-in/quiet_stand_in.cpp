// What no stand-in of the platform seam shows: horizontal scroll bars and
// window captions.
#include "base/platform.h"

void PlatformSetHorizontalScroll(int, int) {}
void PlatformSetWindowCaption(int, const char*) {}
