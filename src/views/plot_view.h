// The Plot window's state and painter: the colour rule of a dot, the squares
// of a record, the current-position marker, the cross hair, the header strip
// with its read-out, the faces of the ten buttons and the suspension rule.
// The dots are written as pixels into an image of plotArea; everything else
// goes into a draw list. The print job uses the same colour rule.
#ifndef VELDOR_VIEWS_PLOT_VIEW_H
#define VELDOR_VIEWS_PLOT_VIEW_H

#include <stdint.h>

#include "survey/survey_state.h"
#include "views/draw_list.h"
#include "views/plot_geometry.h"

// What decides a dot's colour: 0..3 a channel, 4 All, 5 Best ("Channel" of
// section "Plot" less 1); written back at exit. User-interface thread.
constexpr int32_t PLOT_ALL = 4;
constexpr int32_t PLOT_BEST = 5;
extern int32_t plotChannel;
// The three colour breaks, calibrated values ("Power break 1" to "3").
extern float powerBreak[3];
// The four colours of a dot, 0x00BBGGRR, from Colours.txt
// (storage/colours_file.h).
extern uint32_t PlotColourHigh;
extern uint32_t PlotColourMid;
extern uint32_t PlotColourLow;
extern uint32_t PlotColourNone;
// Side of a dot in pixels.
extern int32_t dotSize;
// The row carrying the cross hair, -1 for none.
extern int32_t plotLocationRecord;
// The read-out of the position under the pointer.
constexpr int PlotReadoutSize = 64;
extern char plotReadout[PlotReadoutSize];

constexpr uint32_t PlotMarkerColour = 0x00800080;
constexpr uint32_t PlotCrossHairColour = 0x000000C0;

// The band colour of a calibrated value: the first of High, Mid, Low whose
// break the value is strictly above, else None.
uint32_t PlotBandColour(float value);
// The band (0 High, 1 Mid, 2 Low, 3 None) of a value.
int PlotBand(float value);

// One filled square of a dot, right and bottom exclusive.
struct PlotSquare {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
    uint32_t colour;
};
// The squares of a row drawn at pixel (x, y) for the given channel choice and
// dot size: one square (a channel, or Best), four (All); 0 for a choice
// outside 0..5. Not clamped.
int PlotRowSquares(const Record& row, int32_t x, int32_t y, int32_t channel, int32_t size,
                   PlotSquare squares[4]);

// A square held within plotArea: each side no further out than the area's.
PlotSquare PlotClampSquare(PlotSquare square);

// A 32-bit top-down image of plotArea: pixel (x, y) of the client area is
// pixels[(y - plotArea.top) * width + (x - plotArea.left)], as 0x00RRGGBB.
struct PlotImage {
    uint32_t* pixels;
    int32_t width;
    int32_t height;
};
// White, then the current-position marker and every visible record's dot,
// each clamped to plotArea, in store order. Returns the number of records
// drawn. Draws nothing but white while the display is suspended.
int PlotPaintPixels(const PlotImage& image);

// The strip and texts of a repaint: the grey header with its outline, the
// sunken frame and text of the read-out, and "- No Data -" or the
// suspension text in plotArea.
void PlotPaintStrip(DrawList* list);
// The read-out alone, as drawn at once after a pointer move.
void PlotPaintReadout(DrawList* list);
// The cross hair on plotLocationRecord, over the dots; nothing while
// suspended or when the row does not exist.
void PlotPaintCrossHair(DrawList* list);

// The face of button n (0..9) of the strip: its bitmap resource id, for the
// control held down or not. Channel choice faces follow plotChannel.
int PlotButtonFace(int n, int held);
// A press on channel button n (0..5): 1 when it changed plotChannel, with
// the button chosen before in *previous (the caller repaints plotArea with
// erase and redraws that button).
int PlotChooseChannel(int n, int* previous);

// Shows the view on the window: the title from PlotTitle and both bars.
void PlotShowView();
// The zoom commands 4107, 4108, 4109 and the bars: 1 when the view changed
// (the repaints are requested here).
int PlotCommand(int id);
int PlotScroll(int vertical, int code, uint16_t thumb);

// After a repaint that took `elapsedMs`: sets STATUS_PLOT_SUSPENDED and says
// so when recording with maxPlotTime above 0 and the repaint took longer.
// Returns 1 when it suspended.
int PlotCheckSuspension(uint32_t elapsedMs);

// The read-out after a pointer move to client (x, y); 1 when plotReadout
// changed and is to be drawn at once.
int PlotPointerMoved(int32_t x, int32_t y);

// The forwarded key code to what it does: returns the message to post
// (PLOT_KEY_VSCROLL / PLOT_KEY_HSCROLL with *code the scroll code, or
// PLOT_KEY_COMMAND with *code the command id), 0 for a key it ignores.
constexpr int PLOT_KEY_VSCROLL = 1;
constexpr int PLOT_KEY_HSCROLL = 2;
constexpr int PLOT_KEY_COMMAND = 3;
int PlotKeyAction(int virtualKey, int* code);

#endif
