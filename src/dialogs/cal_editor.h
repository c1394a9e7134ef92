// CalibrationBox, Record > Calibration: the editor of the four channels'
// curves. It works on a list of text lines, one "%03d\t%.3f" line for each
// (power, value) point, kept in text order (which is the order of power, the
// power having a fixed width). The list is the working copy of the channel on
// show: CalTable changes only when the list is saved, and the lookup with it.
// The dialog's list box shows these lines; the text is the only copy, so a
// value reaches the table rounded to three decimals.
#ifndef VELDOR_DIALOGS_CAL_EDITOR_H
#define VELDOR_DIALOGS_CAL_EDITOR_H

#include <stdint.h>

#include "survey/cal_lookup.h"
#include "views/draw_list.h"

constexpr int CalEditorLineSize = 64;
constexpr int CalEditorMaxEntries = 255;  // what "Add" lets the operator make
constexpr int CalEditorFieldSize = 64;    // the power and value edits

struct CalEditorState {
    int32_t calEditorChannel;  // the channel on show, 0..3
    int16_t calEditorDirty;    // the list differs from what was last saved or loaded
    int32_t count;             // lines in the list
    int32_t selected;          // the highlighted line, -1 for none
    char lines[CalMaxPoints][CalEditorLineSize];
};

// The edits under "Power" and "Value".
struct CalEditorFields {
    char power[CalEditorFieldSize];
    char value[CalEditorFieldSize];
};

// Work the dialog posts to itself, to be done after the message in hand, in
// this order when several come together.
enum CalEditorRequest {
    CAL_REQUEST_REFILL = 1,     // CalEditorRefill, then empty edits and redraw
    CAL_REQUEST_CAPTION = 2,    // CalEditorShowCaption
    CAL_REQUEST_SAVE_LIST = 4   // CalEditorSaveList for the channel on show
};

// Opening: sends "CA 1", clears the dirty flag, shows channel 0 (the list
// empty). Returns the requests (refill and caption).
int CalEditorOpen(CalEditorState* s);

// Fills the list from CalTable[calEditorChannel], every point of the table
// (a file's points out of order or twice are all kept, in text order), with
// no line selected.
void CalEditorRefill(CalEditorState* s);

// "VELDOR - Calibration [ <name> ]" with the channel's file name (key "Chn
// filename", or "<appDirectory>\Default.cal" when it is empty) as
// DisplayFileName shows it; CalEditorShowCaption sets it on the dialog.
void CalEditorCaption(int channel, char* out, int size);
void CalEditorShowCaption(const CalEditorState* s);

// Parses the list into CalTable[channel] (atoi of the power, its low 8 bits;
// atof of the value), writes it to the channel's file (key "Chn filename",
// else the bare name "Chan_n.cal", the key left unset) and rebuilds the
// channel's lookup. Returns what WriteCalFile returned.
int CalEditorSaveList(CalEditorState* s, int channel);

// "Add" and "Change" of the point in the fields, "Delete" of the selected
// line. Each checks and tells the operator why it refuses; 1 when the list
// changed (the line entered is then selected, the graph asked to redraw and
// the dirty flag set), 0 when it did not.
int CalEditorAdd(CalEditorState* s, const CalEditorFields* fields);
int CalEditorChange(CalEditorState* s, const CalEditorFields* fields);
int CalEditorDelete(CalEditorState* s);

// Selecting line `index`: its first three characters go to the power edit,
// what stands from the fifth character on to the value edit.
void CalEditorPickLine(CalEditorState* s, int index, CalEditorFields* fields);

// "Insert Power": the live raw reading of the channel as "%03d".
void CalEditorInsertPower(const CalEditorState* s, CalEditorFields* fields);

// The unsaved-change question: when dirty, asks whether to save and on Yes
// runs "Save as". With `clear` the dirty flag is cleared afterwards whatever
// happened.
void CalEditorAskToSave(CalEditorState* s, int clear);

// A channel button: the question, then that channel. Returns the requests.
int CalEditorChooseChannel(CalEditorState* s, int channel);

// "Save": the list to the channel's file as it is, empty or not.
int CalEditorSave(CalEditorState* s);
// "Save as": asks for a name (ChooseFile, save-calibration mode, the key as
// suggestion), stores it in the channel's key and saves. 1 when saved.
int CalEditorSaveAs(CalEditorState* s);

// "Open" and "New" after their file dialog gave `path` (the dialogs' cancel
// never gets here). An empty path: "Invalid filename, data not saved".
// "Open" reads the file into the table (the lookup follows on closing);
// "New" empties the table and saves the empty list at once. Both store the
// path in the channel's key. Return the requests.
int CalEditorOpenFile(CalEditorState* s, const char* path);
int CalEditorNewFile(CalEditorState* s, const char* path);

// "Done" or closing the window: the question (the flag kept), all four
// lookups rebuilt, "OP 1" sent.
void CalEditorClose(CalEditorState* s);

// Asks the open dialog to redraw its graph.
void CalEditorRedraw();

// The graph in the client rectangle of the dialog: the lower three quarters
// of its left half, a sunken frame, a white box, the live line (dotted,
// dark red) at the raw reading and the curve of the list (dark blue), from
// the lower left to the upper right corner, the values scaled between the
// least and the greatest. No curve for fewer than 2 lines or equal values.
// 0 when a line could not be read ("Error reading values from list box"),
// the graph then half drawn.
int PaintCalGraph(const CalEditorState* s, ViewRect client, int raw, DrawList* list);

#endif
