// The nesting count of long operations.
#include "base/busy.h"

#include <atomic>

#include "base/platform.h"

static std::atomic<int> busyCount{0};

void BeginBusy() {
    if (++busyCount == 1) PlatformBusyChanged(1);
}

void EndBusy() {
    if (busyCount < 1) return;
    if (--busyCount == 0) PlatformBusyChanged(0);
}

int BusyCount() {
    return busyCount;
}

void ResetBusy() {
    busyCount = 0;
}
