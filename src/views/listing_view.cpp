#include "views/listing_view.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include "base/busy.h"
#include "base/platform.h"
#include "resources/resource_ids.h"
#include "base/status_log.h"
#include "survey/survey_state.h"
#include "views/chart_view.h"
#include "views/display_format.h"
#include "views/plot_view.h"

int32_t listingCharHeight;
ViewRect listingHeaderRect;
ViewRect listingLiveRect;
ViewRect listingColumns[ListingStripCount];
int32_t listingPopupRow;

// The column shares where each strip starts; the last strip ends at the
// client's right edge.
static const int StripStartShare[ListingStripCount] = {0, 2, 4, 6, 7, 8, 9};

static const char* const FixedTitles[3] = {"Index - Time", "Latitude", "Longitude"};

// The row height, never 0, so that no division fails before a font exists.
static int32_t RowHeight() { return listingCharHeight > 0 ? listingCharHeight : 1; }

static int32_t Smaller(int32_t a, int32_t b) { return a < b ? a : b; }

int32_t ListingColumnEdge(int32_t clientWidth, int k) { return clientWidth * k / 10; }

void ListingLayout(int32_t clientWidth, int32_t clientHeight) {
    int32_t h = listingCharHeight;
    listingHeaderRect = ViewRect{0, 0, clientWidth, h + 2};
    // The live band is the bottom h + 2 pixels, moved in by one on every side.
    listingLiveRect = ViewRect{1, clientHeight - h - 1, clientWidth - 1, clientHeight - 1};
    for (int k = 0; k < ListingStripCount; k++) {
        ViewRect& strip = listingColumns[k];
        strip.left = ListingColumnEdge(clientWidth, StripStartShare[k]);
        strip.right = k + 1 < ListingStripCount
                          ? ListingColumnEdge(clientWidth, StripStartShare[k + 1])
                          : clientWidth;
        strip.top = listingHeaderRect.bottom;
        strip.bottom = listingLiveRect.top - 1;
    }
}

int ListingAreaRect(int area, ViewRect* out) {
    switch (area) {
    case AREA_LISTING_COLUMNS:
        *out = listingColumns[0];
        out->right = listingColumns[ListingStripCount - 1].right;
        return 1;
    case AREA_LISTING_LIVE_ROW: *out = listingLiveRect; return 1;
    case AREA_LISTING_INDEX: *out = listingColumns[0]; return 1;
    default: return 0;
    }
}

// ---- Painting ---------------------------------------------------------------------

static const char* StripTitle(int k) {
    return k < 3 ? FixedTitles[k] : channelLabels[k - 3];
}

static void PaintRules(DrawList* list) {
    const ViewRect& head = listingHeaderRect;
    const ViewRect& live = listingLiveRect;
    int32_t right = head.right - 1;
    int32_t bottom = live.bottom;  // the client's last pixel row
    AddLine(list, 0, 0, right, 0, ColourBlack, PEN_SOLID);
    AddLine(list, right, 0, right, bottom, ColourBlack, PEN_SOLID);
    AddLine(list, right, bottom, 0, bottom, ColourBlack, PEN_SOLID);
    AddLine(list, 0, bottom, 0, 0, ColourBlack, PEN_SOLID);
    AddLine(list, head.left, head.bottom, head.right, head.bottom, ColourBlack, PEN_SOLID);
    AddLine(list, head.left, live.top - 1, head.right, live.top - 1, ColourBlack, PEN_SOLID);
    for (int k = 0; k < ListingStripCount; k++) {
        int32_t x = listingColumns[k].right;
        AddLine(list, x, live.top, x, live.bottom, ColourBlack, PEN_SOLID);
    }
    for (int k = 0; k < ListingStripCount; k++) {
        int32_t x = listingColumns[k].right;
        AddLine(list, x, head.top + 1, x, live.top - 1, ColourGrey, PEN_SOLID);
    }
}

static void PaintTitles(DrawList* list) {
    for (int k = 0; k < ListingStripCount; k++) {
        const ViewRect& strip = listingColumns[k];
        ViewRect cell{strip.left, listingHeaderRect.top + 1, strip.right,
                      listingHeaderRect.bottom - 1};
        AddText(list, StripTitle(k), 0, 0, TEXT_IN_RECT, cell, ColourBlack, ListingBandColour);
    }
}

static void PaintLiveRow(DrawList* list) {
    const ViewRect& live = listingLiveRect;
    const uint16_t flags = TEXT_CENTRE | TEXT_BOTTOM | TEXT_OPAQUE | TEXT_CLIPPED;
    LiveRowText row;
    if (!FormatLiveRow(&row)) {
        AddText(list, row.cell[0], live.left + (live.right - live.left) / 2, live.bottom, flags,
                live, ColourBlack, ColourGrey);
        return;
    }
    for (int k = 0; k < ListingStripCount; k++) {
        const ViewRect& strip = listingColumns[k];
        int32_t right = k + 1 < ListingStripCount ? strip.right : strip.right - 1;
        ViewRect cell{strip.left + 1, live.top, right, live.bottom};
        AddText(list, row.cell[k], cell.left + (cell.right - cell.left) / 2, live.bottom, flags,
                cell, ColourBlack, ColourGrey);
    }
}

static void ClampTopIndex() {
    if (listingTopIndex > recordCount - listingRowCount)
        listingTopIndex = recordCount - listingRowCount + 1;
    if (listingTopIndex < 0) listingTopIndex = 0;
}

static uint32_t PositionColour(uint8_t flags) {
    if (!(flags & RECORD_GPS_FIX)) return ListingDarkRed;
    return (flags & RECORD_GPS_DIFF) ? ListingDarkBlue : ListingDarkGreen;
}

static int IsTagged(int32_t index) {
    for (int t = 0; t < tagCount; t++)
        if (tagRecord[t] == index) return 1;
    return 0;
}

static void PaintRow(DrawList* list, int32_t r, int32_t i) {
    const Record& row = recordStore.rows[i];
    int32_t h = listingCharHeight;
    int32_t y = r * h + 2;
    char text[ScreenTextSize];
    for (int k = 0; k < ListingStripCount; k++) {
        const ViewRect& strip = listingColumns[k];
        ViewRect cell{strip.left + 1, r * h + 3, strip.right - 1,
                      Smaller((r + 1) * h, strip.bottom)};
        uint32_t colour = ColourBlack;
        if (k == 0) {
            FormatRowStamp(i, row.time, text);
        } else if (k <= 2) {
            FormatPosition(k == 1 ? row.latitude : row.longitude,
                           k == 1 ? AXIS_LATITUDE : AXIS_LONGITUDE, text);
            colour = PositionColour(row.flags);
        } else {
            FormatRowReading(row, k - 3, text);
            if (!(row.flags & RECORD_LIVE)) colour = ColourGrey;
        }
        AddText(list, text, strip.left + (strip.right - strip.left) / 2, y,
                TEXT_CENTRE | TEXT_TOP | TEXT_OPAQUE | TEXT_CLIPPED, cell, colour, ColourWhite);
    }
    if (IsTagged(i))
        AddText(list, "*", listingColumns[0].left + 2, y, TEXT_LEFT | TEXT_TOP | TEXT_CLIPPED,
                listingColumns[0], ListingDarkRed, ColourWhite);
}

void ListingPaint(DrawList* list) {
    const ViewRect& strip = listingColumns[0];
    int32_t h = listingCharHeight;
    listingRowCount = h > 0 ? (strip.bottom - strip.top) / h : 0;
    AddFill(list, listingHeaderRect, ListingBandColour);
    PaintRules(list);
    PaintTitles(list);
    PaintLiveRow(list);
    ClampTopIndex();
    for (int32_t r = 1; r <= listingRowCount + 1; r++) {
        int32_t i = listingTopIndex + r - 1;
        if (i >= recordCount || i >= MaxRecords) break;
        PaintRow(list, r, i);
    }
}

// ---- Scrolling --------------------------------------------------------------------

static int32_t MaxTopIndex() { return recordCount - listingRowCount + 1; }

int32_t ListingThumb() {
    if (recordCount <= listingRowCount + 1) return 0;
    return listingTopIndex * 100 / MaxTopIndex();
}

ListingScrollResult ListingScroll(int request, int32_t thumb) {
    ListingScrollResult result = {};
    int32_t old = listingTopIndex;
    int32_t max = MaxTopIndex();
    int32_t top = old;
    switch (request) {
    case LISTING_SCROLL_LINE_UP: top = old - 1; break;
    case LISTING_SCROLL_LINE_DOWN: top = old + 1; break;
    case LISTING_SCROLL_PAGE_UP: top = old - listingRowCount; break;
    case LISTING_SCROLL_PAGE_DOWN: top = old + listingRowCount; break;
    case LISTING_SCROLL_THUMB_POSITION:
    case LISTING_SCROLL_THUMB_TRACK: top = max * thumb / 100; break;
    case LISTING_SCROLL_TOP: top = 0; break;
    case LISTING_SCROLL_BOTTOM: top = max; break;
    default: break;
    }
    if (top > max) top = max;
    if (top < 0) top = 0;
    listingTopIndex = top;
    result.thumb = ListingThumb();
    if (top == old) return result;

    int32_t h = listingCharHeight;
    const ViewRect& first = listingColumns[0];
    result.moved = ViewRect{first.left, first.top + 1,
                            listingColumns[ListingStripCount - 1].right, first.bottom - 1};
    result.uncovered = result.moved;
    if (top == old - 1) {
        result.action = LISTING_SCROLL_BLOCK_DOWN;
        result.dy = h;
        result.uncovered.bottom = result.moved.top + h;
    } else if (top == old + 1) {
        result.action = LISTING_SCROLL_BLOCK_UP;
        result.dy = -h;
        result.uncovered.top = result.moved.bottom - h;
    } else {
        result.action = LISTING_SCROLL_REPAINT;
    }
    return result;
}

int ListingKeyRequest(int virtualKey) {
    switch (virtualKey) {
    case 0x26: return LISTING_SCROLL_LINE_UP;
    case 0x28: return LISTING_SCROLL_LINE_DOWN;
    case 0x21: return LISTING_SCROLL_PAGE_UP;
    case 0x22: return LISTING_SCROLL_PAGE_DOWN;
    case 0x24: return LISTING_SCROLL_TOP;
    case 0x23: return LISTING_SCROLL_BOTTOM;
    default: return -1;
    }
}

int ListingShowRecord(int32_t index) {
    if (index < 0 || index >= recordCount) return 0;
    if (listingTopIndex != index) {
        listingTopIndex = index;
        PlatformSetVerticalScroll(WINDOW_LISTING, ListingThumb());
        PlatformRepaint(WINDOW_LISTING, AREA_LISTING_COLUMNS, 1);
    }
    return 1;
}

// ---- Pointer and commands -------------------------------------------------------------

void ListingRightClick(int32_t y) {
    listingPopupRow = (y - listingColumns[0].top) / RowHeight() + listingTopIndex;
    LogStatus("Listing popup menu");
}

void ListingFinish() {
    BeginBusy();
    PlatformRepaint(WINDOW_LISTING, AREA_LISTING_COLUMNS, 1);
    PlatformSetVerticalScroll(WINDOW_LISTING, ListingThumb());
    PlatformRepaint(WINDOW_PLOT, AREA_PLOT_RECT, 1);
    PlatformRepaint(WINDOW_CHART, AREA_CHART_RECT, 1);
    PlatformNotifyWindow(WINDOW_TAGS, 0);
    statusFlags |= STATUS_CHANGED;
    EndBusy();
}

// A right click above the table can name row -1; deleting it would take the
// last record and shift every tag, so such a row deletes nothing.
void ListingDeleteRecord() {
    int32_t row = listingPopupRow;
    if (recordCount < 1 || row < 0) return;
    BeginBusy();
    LogStatus("Delete record");
    recordCount--;
    if (row < recordCount)
        memmove(&recordStore.rows[row], &recordStore.rows[row + 1],
                (size_t)(recordCount - row) * sizeof(Record));
    EndBusy();
    RemoveRecordTags(row);
    ListingFinish();
}

static void RepaintLocations() {
    PlatformRepaint(WINDOW_CHART, AREA_WHOLE, 1);
    PlatformRepaint(WINDOW_PLOT, AREA_WHOLE, 1);
}

void ListingShowLocation() {
    if (listingPopupRow < 0 || listingPopupRow >= recordCount) return;
    chartLocationRecord = listingPopupRow;
    plotLocationRecord = listingPopupRow;
    RepaintLocations();
}

void ListingHideLocation() {
    if (recordCount <= 0) return;
    chartLocationRecord = -1;
    plotLocationRecord = -1;
    RepaintLocations();
}

int ListingCommand(int id) {
    switch (id) {
    case IDM_LISTING_DELETE: ListingDeleteRecord(); return LISTING_COMMAND_DONE;
    case IDM_RECORD_START:
    case IDM_RECORD_STOP:
    case IDM_RECORD_CLEAR: return LISTING_COMMAND_TO_FRAME;
    case IDM_RECORD_FILTER:
        if (recordCount < 1) return LISTING_COMMAND_DONE;
        LogStatus("Filter records");
        return LISTING_COMMAND_FILTER_DIALOG;
    case IDM_RECORD_STATISTICS:
        LogStatus("Show listing stats");
        return LISTING_COMMAND_STATISTICS;
    case IDM_LISTING_SHOW_LOCATION: ListingShowLocation(); return LISTING_COMMAND_DONE;
    case IDM_LISTING_HIDE_LOCATION: ListingHideLocation(); return LISTING_COMMAND_DONE;
    default: return LISTING_COMMAND_DONE;
    }
}

// ---- Statistics -------------------------------------------------------------------

// Appends to text (ListingStatisticsSize bytes), never past its end. Each
// piece goes straight into the text, so a long file name is cut only where
// the whole text ends.
static void Append(char* text, const char* format, ...) {
    size_t used = strlen(text);
    if (used >= (size_t)ListingStatisticsSize - 1) return;
    va_list args;
    va_start(args, format);
    vsnprintf(text + used, ListingStatisticsSize - used, format, args);
    va_end(args);
}

void ListingStatisticsText(char* text) {
    const RecordingParams& p = recordingParams;
    text[0] = '\0';
    if (dataFileName[0] == '\0') Append(text, "Data Filename\n\n");
    else Append(text, "Data Filename\t\t%s\n\n", DisplayFileName(dataFileName));
    if (p.startTime < 1) {
        Append(text, "Recording started\n\n");
    } else {
        char date[DateTextSize];
        Append(text, "Recording started\t\t%s\n", FormatDateText(p.startTime, date));
    }
    if (p.distanceMode != 0)
        Append(text, "Recording interval\t\t%ld Meters\n\n", (long)p.intervalMeters);
    else
        Append(text, "Recording interval\t\t%ld Sec\n\n", (long)p.intervalSeconds);
    Append(text, "Records\t\t\t%ld out of %ld\n\n", (long)recordCount, (long)MaxRecords);
    Append(text, "Calibration files\tCh1\t%s\n", DisplayFileName(p.calFileName[0]));
    Append(text, "\t\tCh2\t%s\n", DisplayFileName(p.calFileName[1]));
    Append(text, "\t\tCh3\t%s\n", DisplayFileName(p.calFileName[2]));
    Append(text, "\t\tCh4\t%s\n\n", DisplayFileName(p.calFileName[3]));
    Append(text, "Text tags\t\t\t%d\n\n", (int)tagCount);
}
