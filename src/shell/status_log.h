// LogStatus moved to base/status_log.h; this name stays for code that still
// includes it.
#ifndef VELDOR_SHELL_STATUS_LOG_H
#define VELDOR_SHELL_STATUS_LOG_H

#include "base/status_log.h"

#endif
