// GpsBox, Configure > GPS: the entry from the frame's menu.
#ifndef VELDOR_DIALOGS_GPS_BOX_WIN32_H
#define VELDOR_DIALOGS_GPS_BOX_WIN32_H

#include <windows.h>

// Runs the modal dialog over the frame (menu command 40058). While it is
// open it is WINDOW_GPS, the owner of the GPS message boxes.
void OnConfigureGps(HWND frame);

#endif
