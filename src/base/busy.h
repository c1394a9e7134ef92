// The nesting count of long operations. The wait cursor shows while it is
// above 0: the platform is told (PlatformBusyChanged) each time the count
// leaves 0 or comes back to it.
#ifndef VELDOR_BASE_BUSY_H
#define VELDOR_BASE_BUSY_H

void BeginBusy();
// Never takes the count below 0.
void EndBusy();
int BusyCount();
// Sets the count back to 0 without telling the platform (a fresh process).
void ResetBusy();

#endif
