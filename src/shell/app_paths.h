// The paths moved to base/app_paths.h; this name stays for code that still
// includes it (some unit tests).
#ifndef VELDOR_SHELL_APP_PATHS_H
#define VELDOR_SHELL_APP_PATHS_H

#include "base/app_paths.h"

#endif
