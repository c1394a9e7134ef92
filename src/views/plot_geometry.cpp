#include "views/plot_geometry.h"

#include <stdio.h>

#include "base/busy.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

PlotView plotView = {0, 0, 0, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, 50, 50};
char plotTitle[PlotTitleSize] = "Plot";

// Degrees to radians as the title has always computed it (3.1415926535898 / 180).
static const double TitleDegreesToRadians = 0.017453292519943334;

// A client size past this is no window; holding it here keeps every product
// of a size and a scale within 64 bits and every pixel within 32.
static const int32_t MaxClientSize = 0x40000000;

static int32_t Clamp32(int64_t value, int64_t low, int64_t high) {
    if (value < low) return (int32_t)low;
    if (value > high) return (int32_t)high;
    return (int32_t)value;
}

static int32_t Saturate32(int64_t value) {
    return Clamp32(value, INT32_MIN, INT32_MAX);
}

static int32_t Max32(int32_t a, int32_t b) {
    return a > b ? a : b;
}

// ---- View and layout --------------------------------------------------------------

static void SetBothScrollPositions() {
    PlotScrollPos pos = PlotScrollPositions();
    plotView.verticalScrollPos = pos.vertical;
    plotView.horizontalScrollPos = pos.horizontal;
}

void ResetPlotView() {
    plotView.centreLatitude = 0;
    plotView.centreLongitude = 0;
    plotView.scale = 0;
    SetBothScrollPositions();
    snprintf(plotTitle, sizeof plotTitle, "Plot");
    PlatformSetWindowCaption(WINDOW_PLOT, plotTitle);
    PlatformSetVerticalScroll(WINDOW_PLOT, plotView.verticalScrollPos);
    PlatformSetHorizontalScroll(WINDOW_PLOT, plotView.horizontalScrollPos);
}

void PlotLayout(int32_t clientWidth, int32_t clientHeight) {
    int32_t cw = Clamp32(clientWidth, 0, MaxClientSize);
    int32_t ch = Clamp32(clientHeight, 0, MaxClientSize);
    plotView.headerRect = PlotRect{0, 0, cw, 33};
    plotView.readoutRect = PlotRect{304, 6, Max32(cw - 20, 304), 27};
    plotView.plotArea = PlotRect{1, 34, cw - 1, ch - 1};
}

int32_t PlotAreaWidth() {
    return plotView.plotArea.right - plotView.plotArea.left;
}

int32_t PlotAreaHeight() {
    return plotView.plotArea.bottom - plotView.plotArea.top;
}

// ---- Projections ------------------------------------------------------------------

PlotPixel PlotCentrePixel() {
    PlotPixel c;
    c.x = plotView.plotArea.left + PlotAreaWidth() / 2;
    c.y = plotView.plotArea.top + PlotAreaHeight() / 2;
    return c;
}

PlotPixel PlotToPixel(int32_t latitude, int32_t longitude) {
    // The scale is set by every repaint before it projects; a scale of 0 here
    // is taken as the world scale rather than divided by.
    int64_t scale = plotView.scale > 0 ? plotView.scale : PlotWorldScale();
    PlotPixel c = PlotCentrePixel();
    int64_t dLon = (int64_t)longitude - plotView.centreLongitude;
    int64_t dLat = (int64_t)latitude - plotView.centreLatitude;
    PlotPixel p;
    p.x = Saturate32(c.x + dLon / scale);
    p.y = Saturate32(c.y - dLat / scale);
    return p;
}

PlotPosition PlotFromPixel(int32_t x, int32_t y) {
    PlotPixel c = PlotCentrePixel();
    int64_t scale = plotView.scale;
    PlotPosition pos;
    pos.longitude = Saturate32(plotView.centreLongitude + ((int64_t)x - c.x) * scale);
    pos.latitude = Saturate32(plotView.centreLatitude + ((int64_t)c.y - y) * scale);
    return pos;
}

int PlotPixelVisible(int32_t x, int32_t y) {
    const PlotRect& a = plotView.plotArea;
    return x >= a.left && x < a.right && y >= a.top && y < a.bottom;
}

// ---- Scale and zoom ---------------------------------------------------------------

int32_t PlotWorldScale() {
    int32_t byWidth = PlotWorldWidth / Max32(PlotAreaWidth(), 1);
    int32_t byHeight = PlotWorldHeight / Max32(PlotAreaHeight(), 1);
    return Max32(Max32(byWidth, byHeight), 1);
}

void PlotEnsureScale() {
    if (plotView.scale <= 0) plotView.scale = PlotWorldScale();
}

int PlotZoomIn() {
    PlotEnsureScale();
    if (plotView.scale == 1) return 0;
    LogStatus("Plot zoom in");
    plotView.scale = Max32(plotView.scale / 2, 1);
    return 1;
}

int PlotZoomOut() {
    PlotEnsureScale();
    // The outermost scale is the world scale; on an empty plot area it is
    // taken as for an area of one pixel, like the world scale of a repaint.
    int32_t limit = PlotWorldScale();
    if (plotView.scale == limit) return 0;
    LogStatus("Plot zoom out");
    if (plotView.scale >= limit / 2) {
        plotView.scale = limit;
        plotView.centreLatitude = 0;
        plotView.centreLongitude = 0;
        SetBothScrollPositions();
    } else {
        plotView.scale *= 2;
    }
    return 1;
}

ZoomResult PlotZoomAuto() {
    int32_t count = recordCount < MaxRecords ? recordCount : MaxRecords;
    if (count < 2) return ZoomNothingToDo;
    int32_t w = PlotAreaWidth();
    int32_t h = PlotAreaHeight();
    if (h <= 0 || w <= 0) return ZoomAreaInvalid;

    BeginBusy();
    LogStatus("Plot auto zoom");
    int32_t minLat = recordStore.rows[0].latitude, maxLat = minLat;
    int32_t minLon = recordStore.rows[0].longitude, maxLon = minLon;
    for (int32_t i = 1; i < count; i++) {
        const Record& r = recordStore.rows[i];
        if (r.latitude < minLat) minLat = r.latitude;
        if (r.latitude > maxLat) maxLat = r.latitude;
        if (r.longitude < minLon) minLon = r.longitude;
        if (r.longitude > maxLon) maxLon = r.longitude;
    }
    // Positions are taken as stored, legal or not: the spans may need 33 bits.
    int64_t dLat = (int64_t)maxLat - minLat;
    int64_t dLon = (int64_t)maxLon - minLon;
    if (dLat == 0 && dLon == 0) {
        plotView.centreLatitude = minLat;
        plotView.centreLongitude = minLon;
        plotView.scale = 1;
    } else {
        plotView.centreLatitude = (int32_t)(minLat + dLat / 2);
        plotView.centreLongitude = (int32_t)(minLon + dLon / 2);
        int64_t a = dLat / h;
        int64_t b = dLon / w;
        int64_t m = a > b ? a : b;
        plotView.scale = Clamp32(m + m / 3, 1, INT32_MAX);
    }
    SetBothScrollPositions();
    EndBusy();
    return ZoomChanged;
}

// ---- Scrolling --------------------------------------------------------------------

PlotScrollPos PlotScrollPositions() {
    PlotScrollPos pos;
    int32_t lat = plotView.centreLatitude;
    int32_t lon = plotView.centreLongitude;
    if (lat <= -PlotLatitudeLimit)
        pos.vertical = 100;
    else if (lat >= PlotLatitudeLimit)
        pos.vertical = 0;
    else
        pos.vertical = 100 - (lat + PlotLatitudeLimit) / PlotVerticalScrollStep;
    if (lon <= -PlotLongitudeLimit)
        pos.horizontal = 0;
    else if (lon >= PlotLongitudeLimit)
        pos.horizontal = 100;
    else
        pos.horizontal = (lon + PlotLongitudeLimit) / PlotHorizontalScrollStep;
    return pos;
}

// Extent of plotArea along one axis in milliseconds of arc, in 64 bits: a
// tall narrow window at the world scale passes 32 bits. An empty area moves
// nothing rather than moving backwards.
static int64_t AreaSpan(int32_t pixels) {
    int64_t scale = plotView.scale > 0 ? plotView.scale : PlotWorldScale();
    return (pixels > 0 ? pixels : 0) * scale;
}

// The new centre on one axis for a scroll code, before the clamp. direction is
// +1 when "back" (up / left) increases the value, -1 when it decreases it.
static int64_t ScrolledCentre(int64_t centre, int code, uint16_t thumb, int64_t span, int direction,
                              int64_t thumbStep, int64_t startValue) {
    switch (code) {
        case PLOT_SCROLL_LINE_BACK:
            return centre + direction * (span / 20);
        case PLOT_SCROLL_LINE_ON:
            return centre - direction * (span / 20);
        case PLOT_SCROLL_PAGE_BACK:
            return centre + direction * (span / 2);
        case PLOT_SCROLL_PAGE_ON:
            return centre - direction * (span / 2);
        case PLOT_SCROLL_THUMB_POSITION:
        case PLOT_SCROLL_THUMB_TRACK:
            return direction * (50 - (int64_t)thumb) * thumbStep;
        case PLOT_SCROLL_START:
            return startValue;
        case PLOT_SCROLL_END:
            return -startValue;
        default:
            return centre;
    }
}

int PlotScrollVertical(int code, uint16_t thumb) {
    int64_t next = ScrolledCentre(plotView.centreLatitude, code, thumb, AreaSpan(PlotAreaHeight()),
                                  +1, PlotVerticalScrollStep, PlotLatitudeLimit);
    int32_t clamped = Clamp32(next, -PlotLatitudeLimit, PlotLatitudeLimit);
    if (clamped == plotView.centreLatitude) return 0;
    plotView.centreLatitude = clamped;
    plotView.verticalScrollPos = PlotScrollPositions().vertical;
    return 1;
}

int PlotScrollHorizontal(int code, uint16_t thumb) {
    int64_t next = ScrolledCentre(plotView.centreLongitude, code, thumb, AreaSpan(PlotAreaWidth()),
                                  -1, PlotHorizontalScrollStep, -PlotLongitudeLimit);
    int32_t clamped = Clamp32(next, -PlotLongitudeLimit, PlotLongitudeLimit);
    if (clamped == plotView.centreLongitude) return 0;
    plotView.centreLongitude = clamped;
    plotView.horizontalScrollPos = PlotScrollPositions().horizontal;
    return 1;
}

// ---- Title ------------------------------------------------------------------------

static double GroundKm(int32_t pixels) {
    // An empty area has no size on the ground rather than a negative one.
    double n = pixels > 0 ? (double)pixels : 0.0;
    return n * (double)plotView.scale / 3600000.0 * TitleDegreesToRadians * (double)EarthRadiusKm;
}

void PlotTitle(char* buffer, int size) {
    if (buffer == nullptr || size <= 0) return;
    if (recordCount < 1) {
        snprintf(buffer, (size_t)size, "Plot");
        return;
    }
    double width = GroundKm(PlotAreaWidth());
    double height = GroundKm(PlotAreaHeight());
    const char* format = "Plot   [%.1fkm x %.1fkm]";
    if (width < 0.1 || height < 0.1) {
        width *= 1000;
        height *= 1000;
        format = "Plot   [%.3fm x %.3fm]";
    } else if (width < 1.0 || height < 1.0) {
        width *= 1000;
        height *= 1000;
        format = "Plot   [%.1fm x %.1fm]";
    }
    // Both values pass through single precision before they are printed.
    float narrowWidth = (float)width;
    float narrowHeight = (float)height;
    char text[PlotTitleSize];
    snprintf(text, sizeof text, format, (double)narrowWidth, (double)narrowHeight);
    snprintf(buffer, (size_t)size, "%s", text);
}
