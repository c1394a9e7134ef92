// The link dialogs of the Configure menu: the entries from the frame's menu.
#ifndef VELDOR_DIALOGS_INSTRUMENT_DIALOGS_WIN32_H
#define VELDOR_DIALOGS_INSTRUMENT_DIALOGS_WIN32_H

#include <windows.h>

// PortsBox (menu command 40057): on OK the frame reopens the port.
void OnConfigurePorts(HWND frame);
// GpsDiffBox (40087).
void OnConfigureGpsDiff(HWND frame);
// AR3000aBox (40086).
void OnConfigureAr3000a(HWND frame);
// TzrBox (40062).
void OnConfigureTzr4100(HWND frame);

#endif
