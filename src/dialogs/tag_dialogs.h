// The rules of the two dialogs that add to the store by hand: the tag text
// dialog (AddEditTagTextBox), which adds a text tag or edits one, and the
// manual reading dialog (ManRecBox), which fills ManualReading for the next
// record. Each works on a plain struct of the dialog's edit texts; the
// dialog procedures only move those texts in and out of the controls.
// Everything here runs on the user-interface thread.
#ifndef VELDOR_DIALOGS_TAG_DIALOGS_H
#define VELDOR_DIALOGS_TAG_DIALOGS_H

#include "views/tags_view.h"

// ---- AddEditTagTextBox --------------------------------------------------------------------
// "Index" and "Text" hold 49 characters each.
constexpr int TagEditSize = 50;

struct TagDialogValues {
    char index[TagEditSize];  // the record number as the operator counts it
    char text[TagEditSize];
};

// What TagDialogOpen returns when the dialog is not to open.
constexpr int TagDialogRefused = -2;

// The opening of the dialog for tag number (-1, or any number that is no
// tag, for a new tag). Refuses with a stop box when the store is empty, and
// for a new tag when the table is full. Otherwise fills values: an existing
// tag's record number and text, or for a new tag the last record and no
// text. Returns the tag in hand (the number, or -1 for a new tag), or
// TagDialogRefused.
int TagDialogOpen(int number, TagDialogValues* values);

// "OK" for the tag in hand: stores the record index and the text, as a new
// tag or over the old one, and returns 1. Returns 0 with nothing changed
// when the index is no record of the store or the text is empty; the dialog
// then stays open and says nothing.
int TagDialogStore(int tagInHand, const TagDialogValues* values);

// ---- ManRecBox -----------------------------------------------------------------------------
// Each edit holds 31 characters.
constexpr int ManualEditSize = 32;

struct ManualReadingValues {
    char latitude[ManualEditSize];  // milliseconds of arc, plain decimal
    char longitude[ManualEditSize];
    char readings[4][ManualEditSize];  // raw bytes
};

// The values a live record would get now: the live ones, or with averaging
// on the means of the history, which this uses up (even if the dialog is
// then cancelled).
void ManualReadingOpen(ManualReadingValues* values);

// "OK": the position through atol, the readings through atoi cut to their
// low 8 bits, into ManualReading. Nothing is refused.
void ManualReadingStore(const ManualReadingValues* values);

#endif
