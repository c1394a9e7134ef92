// The Listing window's state and painter: the table of the record store with
// its title band and live row, the top-row clamp, the scroll arithmetic, the
// forwarded keys, the right-click row, the popup menu's commands (Delete
// Record, Show / Hide Location, Statistics) and the repaint areas.
//
// listingTopIndex and listingRowCount live with the survey state, since
// AddRecord keeps them in step. Everything here is written and read on the
// user-interface thread only.
#ifndef VELDOR_VIEWS_LISTING_VIEW_H
#define VELDOR_VIEWS_LISTING_VIEW_H

#include <stdint.h>

#include "views/draw_list.h"

constexpr int ListingStripCount = 7;

// The font's text height in pixels, the height of one row.
extern int32_t listingCharHeight;
// The band of column titles, the band of the live row and the seven strips
// between them, in client coordinates (right and bottom exclusive).
extern ViewRect listingHeaderRect;
extern ViewRect listingLiveRect;
extern ViewRect listingColumns[ListingStripCount];
// The record index under the last right click; 0 until the first.
extern int32_t listingPopupRow;

constexpr uint32_t ListingBandColour = Rgb(128, 255, 255);
constexpr uint32_t ListingDarkRed = Rgb(128, 0, 0);    // positions without a fix; tag marks
constexpr uint32_t ListingDarkGreen = Rgb(0, 128, 0);  // positions with a fix
constexpr uint32_t ListingDarkBlue = Rgb(0, 0, 128);   // positions with a differential fix

// The left edge of column share k (0..10) of a client area clientWidth wide:
// clientWidth * k / 10, multiplied first.
int32_t ListingColumnEdge(int32_t clientWidth, int k);

// All rectangles from a client area of clientWidth by clientHeight pixels and
// listingCharHeight.
void ListingLayout(int32_t clientWidth, int32_t clientHeight);

// The whole client area, in painting order. Sets listingRowCount and clamps
// (and stores) listingTopIndex on the way.
void ListingPaint(DrawList* list);

// The rectangle of a repaint area: AREA_LISTING_COLUMNS (the seven strips
// together), AREA_LISTING_LIVE_ROW, AREA_LISTING_INDEX (strip 0). 0 for any
// other area.
int ListingAreaRect(int area, ViewRect* out);

// ---- Scrolling ----------------------------------------------------------------------
// Scroll requests, numbered as the scroll bar sends them.
enum ListingScrollRequest {
    LISTING_SCROLL_LINE_UP = 0,
    LISTING_SCROLL_LINE_DOWN = 1,
    LISTING_SCROLL_PAGE_UP = 2,
    LISTING_SCROLL_PAGE_DOWN = 3,
    LISTING_SCROLL_THUMB_POSITION = 4,
    LISTING_SCROLL_THUMB_TRACK = 5,
    LISTING_SCROLL_TOP = 6,
    LISTING_SCROLL_BOTTOM = 7
};

// What the window does after a scroll request.
enum ListingScrollAction {
    LISTING_SCROLL_NONE = 0,        // the top row did not change
    LISTING_SCROLL_BLOCK_DOWN = 1,  // one row up: the table moves down by dy
    LISTING_SCROLL_BLOCK_UP = 2,    // one row down: the table moves up (dy negative)
    LISTING_SCROLL_REPAINT = 3      // any other jump: the strips with erase
};

struct ListingScrollResult {
    int action;
    int32_t thumb;       // the new thumb position, 0..100
    ViewRect moved;      // what a block move shifts
    int32_t dy;          // by how many pixels, down positive
    ViewRect uncovered;  // what is then repainted without erase
};

// The thumb position for listingTopIndex and the store: 0 while every
// record fits, else top * 100 / (recordCount - listingRowCount + 1).
int32_t ListingThumb();

// Applies a scroll request (thumb: the bar's position 0..100 for the two
// thumb requests) to listingTopIndex and says what the window must do.
// Unknown requests change nothing.
ListingScrollResult ListingScroll(int request, int32_t thumb);

// The scroll request of a forwarded virtual-key code; -1 for other keys.
int ListingKeyRequest(int virtualKey);

// Brings record index to the first table row; 0 (and nothing) for an index
// outside the store, else 1.
int ListingShowRecord(int32_t index);

// ---- Pointer and commands --------------------------------------------------------------
// A right click at client y: sets listingPopupRow (no range check) and logs.
void ListingRightClick(int32_t y);

// What the window does after a command of the popup menu or the frame.
enum ListingCommandResult {
    LISTING_COMMAND_DONE = 0,           // nothing more
    LISTING_COMMAND_TO_FRAME = 1,       // post the same command to the frame
    LISTING_COMMAND_FILTER_DIALOG = 2,  // open FilterBox; on OK call ListingFinish
    LISTING_COMMAND_STATISTICS = 3      // show ListingStatisticsText in a box
};
// Runs a command (IDM_LISTING_..., IDM_RECORD_...) as far as the portable
// side goes and says what the window must do next.
int ListingCommand(int id);

// Deletes record listingPopupRow; nothing for an empty store or a row below 0.
void ListingDeleteRecord();
// After records were taken out: strips, thumb, Plot, Chart and Tags.
void ListingFinish();
// Show / Hide Location on the Plot and the Chart.
void ListingShowLocation();
void ListingHideLocation();

// The text of the statistics box, into text (ListingStatisticsSize bytes).
constexpr int ListingStatisticsSize = 1024;
void ListingStatisticsText(char* text);

#endif
