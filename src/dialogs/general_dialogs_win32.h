// The four settings dialogs: entries from the frame's menu and the Plot.
#ifndef VELDOR_DIALOGS_GENERAL_DIALOGS_WIN32_H
#define VELDOR_DIALOGS_GENERAL_DIALOGS_WIN32_H

#include <windows.h>

// Configure > Display (menu command 40068): DisplayBox over the frame.
void OnConfigureDisplay(HWND frame);
// Record > Settings (40074): RecSettingsBox over the frame.
void OnRecordSettings(HWND frame);
// File > Preferences (40079): PrefBox over the frame.
void OnPreferences(HWND frame);
// The Plot's Colours/Size: ColoursBox over owner; 1 for OK, 0 for Cancel.
int RunColoursBox(HWND owner);

#endif
