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

template <int N>
inline void DialogFill(HWND dialog, const DialogField (&fields)[N], const void* values) {
    DialogFill(dialog, fields, N, values);
}
template <int N>
inline void DialogRead(HWND dialog, const DialogField (&fields)[N], void* values) {
    DialogRead(dialog, fields, N, values);
}

#endif
