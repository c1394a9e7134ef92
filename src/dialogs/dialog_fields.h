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
    FIELD_RADIO = 3,  // size buttons with consecutive ids from controlId; the value is
                      // the int32_t index of the one checked
    FIELD_LIST = 4    // a drop-down list of items; the value is the char[size] text of
                      // the item chosen, kept when none is
};

struct DialogField {
    int controlId;
    int kind;
    int offset;  // of the value in the values struct
    int size;
    const char* const* items;  // FIELD_LIST: the items the dialog adds on opening
    int itemCount;
};

#define DIALOG_FIELD(id, kind, Values, member, size) \
    DialogField { id, kind, (int)offsetof(Values, member), size, nullptr, 0 }
#define DIALOG_TEXT(id, Values, member) \
    DIALOG_FIELD(id, FIELD_TEXT, Values, member, (int)sizeof(((Values*)nullptr)->member))
#define DIALOG_LIST(id, Values, member, items, itemCount)                                   \
    DialogField {                                                                          \
        id, FIELD_LIST, (int)offsetof(Values, member),                                     \
            (int)sizeof(((Values*)nullptr)->member), items, itemCount                      \
    }

// A spin control's step on the number in its edit: the text read as a whole
// number (anything else as 0), moved by delta and held within low..high,
// written into out as "%d". Returns the new number.
int32_t SpinStep(const char* text, int32_t delta, int32_t low, int32_t high, char* out,
                 int outSize);

#endif
