#include "views/plot_view.h"

#include <stdio.h>

#include "base/platform.h"
#include "resources/resource_ids.h"
#include "base/status_log.h"
#include "survey/cal_lookup.h"
#include "survey/recording_engine.h"
#include "views/display_format.h"

int32_t plotChannel;
float powerBreak[3] = {80.0f, 60.0f, 40.0f};
uint32_t PlotColourHigh;
uint32_t PlotColourMid;
uint32_t PlotColourLow;
uint32_t PlotColourNone;
int32_t dotSize = 5;
int32_t plotLocationRecord = -1;
char plotReadout[PlotReadoutSize];

#define NO_DATA_TEXT "- No Data -"
#define SUSPENDED_TEXT "- Display Suspended While Recording -"

// ---- Colour rule ------------------------------------------------------------------

int PlotBand(float value) {
    if (value > powerBreak[0]) return 0;
    if (value > powerBreak[1]) return 1;
    if (value > powerBreak[2]) return 2;
    return 3;
}

uint32_t PlotBandColour(float value) {
    switch (PlotBand(value)) {
    case 0: return PlotColourHigh;
    case 1: return PlotColourMid;
    case 2: return PlotColourLow;
    default: return PlotColourNone;
    }
}

static float ChannelValue(const Record& row, int c) { return ChannelLookup[c][row.ch[c]]; }

int PlotRowSquares(const Record& row, int32_t x, int32_t y, int32_t channel, int32_t size,
                   PlotSquare squares[4]) {
    int32_t d = size;
    if (channel == PLOT_ALL) {
        // Channel 1 up and left of the pixel, 2 up and right, 3 down and left,
        // 4 down and right.
        for (int c = 0; c < 4; c++) {
            int32_t left = (c & 1) ? x : x - d;
            int32_t top = (c & 2) ? y : y - d;
            squares[c] = PlotSquare{left, top, left + d, top + d,
                                    PlotBandColour(ChannelValue(row, c))};
        }
        return 4;
    }
    float value;
    if (channel >= 0 && channel <= 3) {
        value = ChannelValue(row, channel);
    } else if (channel == PLOT_BEST) {
        value = ChannelValue(row, 0);
        for (int c = 1; c < 4; c++)
            if (ChannelValue(row, c) > value) value = ChannelValue(row, c);
    } else {
        return 0;
    }
    int32_t left = x - d / 2;
    int32_t top = y - d / 2;
    squares[0] = PlotSquare{left, top, left + d, top + d, PlotBandColour(value)};
    return 1;
}

// ---- Pixels -----------------------------------------------------------------------

static int Suspended() { return (statusFlags & STATUS_PLOT_SUSPENDED) != 0; }
static int LivePositionShown() {
    return liveState.dataValidTicks != 0 && (statusFlags & STATUS_PLOT_POSITION) != 0;
}

// 0x00BBGGRR to the image's 0x00RRGGBB.
static uint32_t ImageColour(uint32_t colour) {
    return ((colour & 0xFF) << 16) | (colour & 0xFF00) | ((colour >> 16) & 0xFF);
}

PlotSquare PlotClampSquare(PlotSquare s) {
    const PlotRect& a = plotView.plotArea;
    if (s.left < a.left) s.left = a.left;
    if (s.top < a.top) s.top = a.top;
    if (s.right > a.right) s.right = a.right;
    if (s.bottom > a.bottom) s.bottom = a.bottom;
    return s;
}

// Fills a square clamped to plotArea.
static void FillSquare(const PlotImage& image, PlotSquare s) {
    const PlotRect& a = plotView.plotArea;
    s = PlotClampSquare(s);
    // The image may be smaller than the area when the window is tiny.
    if (s.right > a.left + image.width) s.right = a.left + image.width;
    if (s.bottom > a.top + image.height) s.bottom = a.top + image.height;
    uint32_t pixel = ImageColour(s.colour);
    for (int32_t y = s.top; y < s.bottom; y++) {
        uint32_t* line = image.pixels + (size_t)(y - a.top) * (size_t)image.width - a.left;
        for (int32_t x = s.left; x < s.right; x++) line[x] = pixel;
    }
}

int PlotPaintPixels(const PlotImage& image) {
    size_t total = (size_t)(image.width > 0 ? image.width : 0) *
                   (size_t)(image.height > 0 ? image.height : 0);
    for (size_t i = 0; i < total; i++) image.pixels[i] = 0x00FFFFFF;
    if (Suspended() || total == 0) return 0;
    PlotEnsureScale();
    if (LivePositionShown()) {
        PlotPixel p = PlotToPixel(liveState.liveLatitude, liveState.liveLongitude);
        if (PlotPixelVisible(p.x, p.y))
            FillSquare(image, PlotSquare{p.x - dotSize, p.y - dotSize, p.x + dotSize,
                                         p.y + dotSize, PlotMarkerColour});
    }
    int drawn = 0;
    PlotSquare squares[4];
    for (int32_t i = 0; i < recordCount && i < MaxRecords; i++) {
        const Record& row = recordStore.rows[i];
        PlotPixel p = PlotToPixel(row.latitude, row.longitude);
        if (!PlotPixelVisible(p.x, p.y)) continue;
        int n = PlotRowSquares(row, p.x, p.y, plotChannel, dotSize, squares);
        for (int k = 0; k < n; k++) FillSquare(image, squares[k]);
        drawn++;
    }
    return drawn;
}

// ---- Strip, texts and cross hair ----------------------------------------------------------

void PlotPaintReadout(DrawList* list) {
    const PlotRect& r = plotView.readoutRect;
    if (r.left >= r.right) return;
    if (plotReadout[0] == '\0' || recordCount < 1) snprintf(plotReadout, PlotReadoutSize, " ");
    AddText(list, plotReadout, r.left + (r.right - r.left) / 2, r.bottom - 2,
            TEXT_CENTRE | TEXT_BOTTOM | TEXT_OPAQUE | TEXT_CLIPPED, r, ColourBlack, ColourWhite);
}

static void AreaText(DrawList* list, const char* text) {
    PlotPixel c = PlotCentrePixel();
    AddText(list, text, c.x, c.y, TEXT_CENTRE | TEXT_BOTTOM | TEXT_OPAQUE | TEXT_CLIPPED,
            plotView.plotArea, ColourBlack, ColourWhite);
}

void PlotPaintStrip(DrawList* list) {
    AddBox(list, plotView.headerRect, ColourGrey);
    if (plotView.readoutRect.left < plotView.readoutRect.right) {
        AddSunkenFrame(list, plotView.readoutRect, 1);
        PlotPaintReadout(list);
    }
    if (recordCount < 1 && !LivePositionShown()) AreaText(list, NO_DATA_TEXT);
    if (Suspended()) AreaText(list, SUSPENDED_TEXT);
}

static int32_t Clamp(int32_t v, int32_t low, int32_t high) {
    return v < low ? low : (v > high ? high : v);
}

void PlotPaintCrossHair(DrawList* list) {
    if (Suspended() || recordCount < 1) return;
    if (plotLocationRecord < 0 || plotLocationRecord >= recordCount) return;
    const Record& row = recordStore.rows[plotLocationRecord];
    PlotPixel p = PlotToPixel(row.latitude, row.longitude);
    const PlotRect& a = plotView.plotArea;
    int32_t x = Clamp(p.x, a.left, a.right - 1);
    int32_t y = Clamp(p.y, a.top, a.bottom - 1);
    AddLine(list, x, a.top, x, a.bottom, PlotCrossHairColour, PEN_DOTTED);
    AddLine(list, a.left, y, a.right, y, PlotCrossHairColour, PEN_DOTTED);
}

// ---- Buttons ----------------------------------------------------------------------

// Raised, down and disabled face of each button; Colours has no disabled one.
static const int ButtonFaces[10][3] = {
    {IDB_CH1_UP, IDB_CH1_DOWN, IDB_CH1_OFF},
    {IDB_CH2_UP, IDB_CH2_DOWN, IDB_CH2_OFF},
    {IDB_CH3_UP, IDB_CH3_DOWN, IDB_CH3_OFF},
    {IDB_CH4_UP, IDB_CH4_DOWN, IDB_CH4_OFF},
    {IDB_ALL_UP, IDB_ALL_DOWN, IDB_ALL_OFF},
    {IDB_BEST_UP, IDB_BEST_DOWN, IDB_BEST_OFF},
    {IDB_ZOOM_IN_UP, IDB_ZOOM_IN_DOWN, IDB_ZOOM_IN_OFF},
    {IDB_ZOOM_OUT_UP, IDB_ZOOM_OUT_DOWN, IDB_ZOOM_OUT_OFF},
    {IDB_ZOOM_AUTO_UP, IDB_ZOOM_AUTO_DOWN, IDB_ZOOM_AUTO_OFF},
    {IDB_COLOURS_UP, IDB_COLOURS_DOWN, IDB_COLOURS_UP},
};

int PlotButtonFace(int n, int held) {
    if (n < 0 || n > 9) return 0;
    int disabled = 0;
    if (n <= 5) {
        if (recordCount < 1) return ButtonFaces[n][2];
        return ButtonFaces[n][plotChannel == n ? 1 : 0];
    }
    if (n == 6 || n == 7) disabled = recordCount < 1 && liveState.dataValidTicks == 0;
    if (n == 8) disabled = recordCount < 1;
    if (disabled) return ButtonFaces[n][2];
    return ButtonFaces[n][held ? 1 : 0];
}

int PlotChooseChannel(int n, int* previous) {
    if (recordCount < 1 || n < 0 || n > 5 || plotChannel == n) return 0;
    *previous = plotChannel;
    plotChannel = n;
    return 1;
}

// ---- Suspension, read-out and keys ----------------------------------------------------------

int PlotCheckSuspension(uint32_t elapsedMs) {
    if (!(statusFlags & STATUS_RECORDING) || maxPlotTime <= 0 || Suspended()) return 0;
    if (elapsedMs <= (uint32_t)maxPlotTime) return 0;
    statusFlags |= STATUS_PLOT_SUSPENDED;
    LogStatus("Plot window display suspended by program");
    return 1;
}

int PlotPointerMoved(int32_t x, int32_t y) {
    if (!PlotPixelVisible(x, y)) return 0;
    if (plotChannel < 0 || plotChannel > 5) plotChannel = 0;
    if (recordCount < 1 && !LivePositionShown()) return 0;
    PlotPosition pos = PlotFromPixel(x, y);
    char latitude[ScreenTextSize], longitude[ScreenTextSize];
    FormatPosition(pos.latitude, AXIS_LATITUDE, latitude);
    FormatPosition(pos.longitude, AXIS_LONGITUDE, longitude);
    snprintf(plotReadout, PlotReadoutSize, "%.29s,  %.29s", latitude, longitude);
    return 1;
}

int PlotKeyAction(int virtualKey, int* code) {
    switch (virtualKey) {
    case 38: *code = PLOT_SCROLL_LINE_BACK; return PLOT_KEY_VSCROLL;
    case 40: *code = PLOT_SCROLL_LINE_ON; return PLOT_KEY_VSCROLL;
    case 37: *code = PLOT_SCROLL_LINE_BACK; return PLOT_KEY_HSCROLL;
    case 39: *code = PLOT_SCROLL_LINE_ON; return PLOT_KEY_HSCROLL;
    case 33:
    case 107: *code = IDM_PLOT_ZOOM_IN; return PLOT_KEY_COMMAND;
    case 34:
    case 109: *code = IDM_PLOT_ZOOM_OUT; return PLOT_KEY_COMMAND;
    case 36: *code = IDM_PLOT_ZOOM_AUTO; return PLOT_KEY_COMMAND;
    default: return 0;
    }
}

// ---- Commands ---------------------------------------------------------------------

void PlotShowView() {
    PlotTitle(plotTitle, PlotTitleSize);
    PlatformSetWindowCaption(WINDOW_PLOT, plotTitle);
    PlatformSetVerticalScroll(WINDOW_PLOT, plotView.verticalScrollPos);
    PlatformSetHorizontalScroll(WINDOW_PLOT, plotView.horizontalScrollPos);
}

static void ViewChanged() {
    PlatformRepaint(WINDOW_PLOT, AREA_PLOT_RECT, 1);
    snprintf(plotReadout, PlotReadoutSize, " ");
    PlatformRepaint(WINDOW_PLOT, AREA_PLOT_READOUT, 0);
}

int PlotCommand(int id) {
    int changed = 0;
    switch (id) {
    case IDM_PLOT_ZOOM_IN:
    case IDM_PLOT_ZOOM_OUT:
        changed = id == IDM_PLOT_ZOOM_IN ? PlotZoomIn() : PlotZoomOut();
        if (changed) {
            PlotShowView();
            ViewChanged();
        }
        return changed;
    case IDM_PLOT_ZOOM_AUTO: {
        ZoomResult result = PlotZoomAuto();
        if (result == ZoomChanged) ViewChanged();
        if (result == ZoomAreaInvalid)
            PlatformMessageBox("Can not auto zoom as the screen plot area size is invalid",
                               ICON_EXCLAMATION);
        PlotShowView();
        return result == ZoomChanged;
    }
    default: return 0;
    }
}

int PlotScroll(int vertical, int code, uint16_t thumb) {
    int changed = vertical ? PlotScrollVertical(code, thumb) : PlotScrollHorizontal(code, thumb);
    if (!changed) return 0;
    if (vertical) PlatformSetVerticalScroll(WINDOW_PLOT, plotView.verticalScrollPos);
    else PlatformSetHorizontalScroll(WINDOW_PLOT, plotView.horizontalScrollPos);
    PlatformRepaint(WINDOW_PLOT, AREA_PLOT_RECT, 1);
    return 1;
}
