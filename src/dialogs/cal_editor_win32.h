// CalibrationBox, Record > Calibration: the entry from the frame's menu.
#ifndef VELDOR_DIALOGS_CAL_EDITOR_WIN32_H
#define VELDOR_DIALOGS_CAL_EDITOR_WIN32_H

#include <windows.h>

// Runs the modal editor over the frame (menu command 40038). While it is
// open it is WINDOW_CALIBRATION, whose graph each RA message redraws, and
// the controller sends in calibration output.
void OnCalibration(HWND frame);

#endif
