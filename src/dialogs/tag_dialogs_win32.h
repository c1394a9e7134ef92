// The tag text dialog and the manual reading dialog, and the frame commands
// that open them.
#ifndef VELDOR_DIALOGS_TAG_DIALOGS_WIN32_H
#define VELDOR_DIALOGS_TAG_DIALOGS_WIN32_H

#include <windows.h>

// AddEditTagTextBox for tag number (-1 for a new tag), owned by the frame;
// 1 when the tag table changed. The caller then calls TagTableChanged().
int RunTagTextBox(int number);
// The dialog for tag number with what follows a change of the table.
void EditTag(int number);

// Record > Add Text Tag (F5, 40089): the dialog for a new tag.
void OnAddTextTag(HWND frame);
// Record > Take a Manual Reading (F4, 40085): ManRecBox and, on OK, the
// manual record. The command's status line is the frame's.
void OnTakeManualReading(HWND frame);

#endif
