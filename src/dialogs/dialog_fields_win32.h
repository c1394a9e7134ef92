// Moves a dialog's values between its controls and its values struct, by the
// dialog's table of fields.
#ifndef VELDOR_DIALOGS_DIALOG_FIELDS_WIN32_H
#define VELDOR_DIALOGS_DIALOG_FIELDS_WIN32_H

#include <windows.h>

#include "dialogs/dialog_fields.h"

// Sets every control from the struct (and each edit's length limit).
void DialogFill(HWND dialog, const DialogField* fields, int count, const void* values);
// Reads every control into the struct.
void DialogRead(HWND dialog, const DialogField* fields, int count, void* values);
// A spin control's press: steps the number in edit editId by delta within
// low..high and writes it back.
void DialogSpin(HWND dialog, int editId, int delta, int low, int high);

// Cancel (also Escape and the close box) ends a dialog with 0, and its Help
// button, helpId, opens the help document. 1 when id was one of the two.
int DialogCancelOrHelp(HWND dialog, int id, int helpId);

// Runs one of the program's modal dialogs, whose template may hold spin
// controls; the result is EndDialog's.
INT_PTR RunDialogBox(HWND owner, const char* name, DLGPROC proc);
// Each of count spin controls from firstSpinId gets the edit from firstEditId
// as buddy, so that the arrow keys in the edit press it too, but writes
// nothing itself: every press arrives as UDN_DELTAPOS, the dialog refuses the
// move (RefuseSpinMove) and writes the edit, so the control's own position
// never moves and never sticks at an end of its range.
void PrepareSpins(HWND dialog, int firstSpinId, int firstEditId, int count);
// The direction of a spin press, +1 up or -1 down, with its control's id;
// 0 for any other notification.
int SpinPress(LPARAM lParam, int* spinId);
INT_PTR RefuseSpinMove(HWND dialog);

template <int N>
inline void DialogFill(HWND dialog, const DialogField (&fields)[N], const void* values) {
    DialogFill(dialog, fields, N, values);
}
template <int N>
inline void DialogRead(HWND dialog, const DialogField (&fields)[N], void* values) {
    DialogRead(dialog, fields, N, values);
}

#endif
