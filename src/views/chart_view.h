// The Chart window's state and painter: the histogram of one channel over
// the 256 raw bins placed on the calibrated axis, the header strip with its
// read-out, and the faces of the four channel buttons.
#ifndef VELDOR_VIEWS_CHART_VIEW_H
#define VELDOR_VIEWS_CHART_VIEW_H

#include <stdint.h>

#include "views/draw_list.h"

// The channel shown, 0..3 ("Channel" of section "Chart" less 1); written back
// at exit. User-interface thread.
extern int32_t chartChannel;
// The row whose reading is marked, -1 for none.
extern int32_t chartLocationRecord;

// Rows holding each raw value of chartChannel, and the largest count; made
// again by every repaint with records.
constexpr int ChartBins = 256;
extern int32_t chartHits[ChartBins];
extern int32_t chartMaxHits;
// Pixels per hit and per unit of calibrated value; 0 until the first repaint
// with records, then those of the last such repaint.
extern float chartHitScale;
extern float chartReadingScale;
// The read-out of the axis values under the pointer.
constexpr int ChartReadoutSize = 32;
extern char chartReadout[ChartReadoutSize];
// The character height of the chart font.
extern int32_t chartFontHeight;

extern ViewRect chartHeaderRect;
extern ViewRect chartReadoutRect;
extern ViewRect chartPaneRect;
extern ViewRect chartGraphRect;

constexpr uint32_t ChartCurveColour = 0x00C00000;
constexpr uint32_t ChartMarkColour = 0x000000C0;

// The four rectangles for a client area of clientWidth by clientHeight, with
// textWidth by textHeight the size of "18888" in the window's default font.
void ChartLayout(int32_t clientWidth, int32_t clientHeight, int32_t textWidth,
                 int32_t textHeight);

// A float truncated toward zero. Not-a-number gives 0 and values beyond a
// billion are held there, so a wild calibration never overflows a pixel sum.
int32_t ToPixels(float value);

// Counts the rows of the store into chartHits for chartChannel (0..3) and
// sets chartMaxHits.
void ChartCount();
// The scales for chartGraphRect and the current counts. A scale whose divisor
// is 0 (no hits, or the same value at raw 0 and raw 255) is set to 0: the
// curve then stands at the left edge and the read-out gives nothing.
void ChartComputeScales();

// The axis labels for the low and high end of the curve by the screen's
// readingMode, into texts of DrawTextSize bytes.
void ChartEndLabels(char* low, char* high);

// The whole client area, in painting order.
void ChartPaint(DrawList* list);
// The read-out alone, as drawn at once after a pointer move.
void ChartPaintReadout(DrawList* list);

// The read-out after a pointer move to client (x, y): 1 when chartReadout
// changed and is to be drawn at once.
int ChartPointerMoved(int32_t x, int32_t y);

// A press on channel button n (0..3): 1 when it changed chartChannel, with
// the read-out blanked; the caller repaints chartPaneRect with erase,
// chartReadoutRect without, and the button chosen before.
int ChartChooseChannel(int n);
// The bitmap of channel button n (0..3): disabled with no records, else down
// for the channel shown and raised for the others.
int ChartButtonFace(int n, int held);

// The rectangle of a repaint area of the Chart window: 1 with *out set for
// AREA_CHART_RECT (chartPaneRect), 0 for any other area.
int ChartAreaRect(int area, ViewRect* out);

#endif
