// The Text Tags window's decisions: the order of the tag table, the text of
// a list line, and what "Show", "Hide" and "Delete" do to the views and the
// table. A line's place in the list is its tag number, since every refresh
// sorts the table before it fills the list. User-interface thread only.
#ifndef VELDOR_VIEWS_TAGS_VIEW_H
#define VELDOR_VIEWS_TAGS_VIEW_H

// Sorts the tag table by record with a bubble sort; tags of one record keep
// their order among themselves. A sorted table costs one pass.
void SortTags();

// The list line of tag number: its record number as the operator counts it
// and its text.
void TagLineText(int number, char* out, int size);

// "Show": the Listing brings the tag's record to its top row and, when the
// record is in the store, the Plot and the Chart mark it. Nothing for a
// number that is no tag.
void ShowTagRecord(int number);

// "Hide" (and the window's closing): the Plot and the Chart lose their
// location marks; nothing while the store is empty.
void HideTagLocation();

// "Delete": the tag leaves the table, later tags move one place down, and
// the window refreshes. Nothing for a number that is no tag.
void DeleteTag(int number);

// What follows every change of the tag table by the dialog or the Text Tags
// window: the Text Tags window refreshes, the data count as changed and the
// Listing's index column (with its tag marks) repaints.
void TagTableChanged();

#endif
