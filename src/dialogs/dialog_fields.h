// A dialog's controls as data: a table of rows, each a control id of the
// dialog template, its kind and the place of its value in the dialog's
// values struct. One routine fills the controls from the struct when the
// dialog opens and one reads them back on OK; the dialog's own rule function
// then checks the struct and names its message. Nothing here knows a window.
#ifndef VELDOR_DIALOGS_DIALOG_FIELDS_H
#define VELDOR_DIALOGS_DIALOG_FIELDS_H

#include <stddef.h>
#include <stdint.h>

enum DialogFieldKind {
    FIELD_TEXT = 1,   // an edit; the value is char[size], the edit holds size - 1 characters
    FIELD_CHECK = 2,  // a check box; the value is int32_t, 0 or 1
    FIELD_RADIO = 3   // size buttons with consecutive ids from controlId; the value is
                      // the int32_t index of the one checked
};

struct DialogField {
    int controlId;
    int kind;
    int offset;  // of the value in the values struct
    int size;
};

#define DIALOG_FIELD(id, kind, Values, member, size) \
    DialogField { id, kind, (int)offsetof(Values, member), size }
#define DIALOG_TEXT(id, Values, member) \
    DIALOG_FIELD(id, FIELD_TEXT, Values, member, (int)sizeof(((Values*)nullptr)->member))

// A spin control's step on the number in its edit: the text read as a whole
// number (anything else as 0), moved by delta and held within low..high,
// written into out as "%d". Returns the new number.
int32_t SpinStep(const char* text, int32_t delta, int32_t low, int32_t high, char* out,
                 int outSize);

#endif
