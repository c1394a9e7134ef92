// The geometry behind the Plot window: the one view (centre and scale), the
// rectangles of the window, positions to pixels and back, zoom in / out /
// auto, the scroll bar positions, scrolling and the window title.
//
// Positions are milliseconds of arc (3600000 to the degree), north and east
// positive; pixels are client coordinates of the Plot window. The plot is a
// plain latitude/longitude grid with one scale for both axes. Nothing here
// draws; the window performs the repaints and reads the bar positions and the
// title from the state below.
#ifndef VELDOR_VIEWS_PLOT_GEOMETRY_H
#define VELDOR_VIEWS_PLOT_GEOMETRY_H

#include <stdint.h>

#include "views/draw_list.h"

constexpr int32_t MasPerDegree = 3600000;
constexpr int32_t PlotLatitudeLimit = 324000000;        // 90 degrees
constexpr int32_t PlotLongitudeLimit = 648000000;       // 180 degrees
constexpr int32_t PlotWorldHeight = 648000000;          // the whole span of latitude
constexpr int32_t PlotWorldWidth = 1296000000;          // the whole span of longitude
constexpr int32_t PlotVerticalScrollStep = 6480000;     // 1.8 degrees
constexpr int32_t PlotHorizontalScrollStep = 12960000;  // 3.6 degrees
constexpr int PlotTitleSize = 64;

// Left, top inclusive; right, bottom one past the last pixel.
using PlotRect = ViewRect;

struct PlotPixel {
    int32_t x;
    int32_t y;
};

struct PlotPosition {
    int32_t latitude;
    int32_t longitude;
};

struct PlotScrollPos {
    int32_t vertical;    // 0 (north) .. 100 (south)
    int32_t horizontal;  // 0 (west) .. 100 (east)
};

struct PlotView {
    int32_t centreLatitude;  // shown at the centre pixel of plotArea
    int32_t centreLongitude;
    int32_t scale;         // milliseconds of arc per pixel; 0 = not set yet
    PlotRect headerRect;   // the strip of buttons and read-out
    PlotRect readoutRect;  // the cursor read-out inside the strip
    PlotRect plotArea;     // where records are drawn
    // What the window's scroll bars are to show (0..100). Set by scrolling
    // (its own bar), by auto zoom, by the last zoom out step and by a reset
    // (both); the window copies them to its bars.
    int32_t verticalScrollPos;
    int32_t horizontalScrollPos;
};

// The one view of the program. It outlives the Plot window.
extern PlotView plotView;
// The text the Plot window's caption is to show. A reset puts "Plot" here;
// the window fills it with PlotTitle at a size change and after the zoom
// commands.
extern char plotTitle[PlotTitleSize];

enum ZoomResult { ZoomChanged = 0, ZoomNothingToDo = 1, ZoomAreaInvalid = 2 };

// Scroll codes as the bars and the keys send them.
enum PlotScrollCode {
    PLOT_SCROLL_LINE_BACK = 0,  // line up / left
    PLOT_SCROLL_LINE_ON = 1,    // line down / right
    PLOT_SCROLL_PAGE_BACK = 2,  // page up / left
    PLOT_SCROLL_PAGE_ON = 3,    // page down / right
    PLOT_SCROLL_THUMB_POSITION = 4,
    PLOT_SCROLL_THUMB_TRACK = 5,
    PLOT_SCROLL_START = 6,  // top / left
    PLOT_SCROLL_END = 7     // bottom / right
};

// Centre 0, 0, scale 0, both bar positions set again from the centre and the
// title back to "Plot". Run when the Plot window is created, when the data
// file is closed and when a data file is read. The rectangles stay.
void ResetPlotView();

// The rectangles for a client area of clientWidth by clientHeight pixels.
void PlotLayout(int32_t clientWidth, int32_t clientHeight);

// Width and height of plotArea; 0 or negative when the window is tiny.
int32_t PlotAreaWidth();
int32_t PlotAreaHeight();

PlotPixel PlotCentrePixel();
// The pixel of a position, which may lie outside plotArea. A pixel beyond the
// 32-bit range is held at its end, which still lies outside.
PlotPixel PlotToPixel(int32_t latitude, int32_t longitude);
// The position of a pixel; held within the 32-bit range.
PlotPosition PlotFromPixel(int32_t x, int32_t y);
// 1 when the pixel lies in plotArea.
int PlotPixelVisible(int32_t x, int32_t y);

// The scale at which the whole world fits plotArea, at least 1.
int32_t PlotWorldScale();
// Gives a scale of 0 or less the world scale. Each repaint runs it first.
void PlotEnsureScale();

// 1 when the view changed.
int PlotZoomIn();
int PlotZoomOut();
ZoomResult PlotZoomAuto();

// The bar positions that belong to the current centre.
PlotScrollPos PlotScrollPositions();
// Moves the centre by a scroll code (thumb is the 16-bit thumb position of
// codes 4 and 5). 1 when the centre changed; the bar's position in plotView
// is then set and plotArea is to be repainted with erase.
int PlotScrollVertical(int code, uint16_t thumb);
int PlotScrollHorizontal(int code, uint16_t thumb);

// The title for the current view: "Plot" with no records, else the size of
// plotArea on the ground. At most size-1 characters.
void PlotTitle(char* buffer, int size);

#endif
