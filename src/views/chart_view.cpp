#include "views/chart_view.h"

#include <stdio.h>
#include <string.h>

#include "base/platform.h"
#include "resources/resource_ids.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

int32_t chartChannel;
int32_t chartLocationRecord = -1;
int32_t chartHits[ChartBins];
int32_t chartMaxHits;
float chartHitScale;
float chartReadingScale;
char chartReadout[ChartReadoutSize];
int32_t chartFontHeight;

ViewRect chartHeaderRect;
ViewRect chartReadoutRect;
ViewRect chartPaneRect;
ViewRect chartGraphRect;

#define NO_DATA_TEXT "- No Data -"

static int32_t Greater(int32_t a, int32_t b) { return a > b ? a : b; }

static int ChannelShown() { return chartChannel >= 0 && chartChannel <= 3; }

void ChartLayout(int32_t clientWidth, int32_t clientHeight, int32_t textWidth,
                 int32_t textHeight) {
    chartHeaderRect = ViewRect{0, 0, clientWidth, 33};
    chartReadoutRect = ViewRect{130, 6, Greater(clientWidth - 20, 130), 27};
    chartPaneRect = ViewRect{0, 33, clientWidth, clientHeight};
    int32_t left = 5 + textWidth;
    chartGraphRect = ViewRect{left, 43, Greater(clientWidth - 10, left),
                              Greater(clientHeight - 2 * textHeight - 5, 43)};
}

int32_t ToPixels(float value) {
    const float limit = 1.0e9f;
    if (!(value == value)) return 0;  // not a number
    if (value > limit) return (int32_t)limit;
    if (value < -limit) return -(int32_t)limit;
    return (int32_t)value;
}

// ---- Counts and scales ------------------------------------------------------------

void ChartCount() {
    memset(chartHits, 0, sizeof chartHits);
    chartMaxHits = 0;
    if (!ChannelShown()) return;
    for (int32_t i = 0; i < recordCount && i < MaxRecords; i++)
        chartHits[recordStore.rows[i].ch[chartChannel]]++;
    for (int b = 0; b < ChartBins; b++)
        if (chartHits[b] > chartMaxHits) chartMaxHits = chartHits[b];
}

void ChartComputeScales() {
    if (!ChannelShown()) return;
    const ViewRect& g = chartGraphRect;
    float height = (float)g.bottom - (float)g.top;
    float width = (float)g.right - (float)g.left;
    float lo = ChannelLookup[chartChannel][0];
    float hi = ChannelLookup[chartChannel][255];
    float span = hi - lo;
    chartHitScale = chartMaxHits > 0 ? height / (float)chartMaxHits : 0.0f;
    chartReadingScale = span != 0.0f ? width / span : 0.0f;
}

// The x offset of a calibrated value from the graph's left edge.
static int32_t ReadingOffset(float value, float lo) {
    float offset = value - lo;
    return ToPixels(offset * chartReadingScale);
}

static int32_t HitsOffset(int32_t hits) {
    return ToPixels((float)hits * chartHitScale);
}

// ---- Texts ------------------------------------------------------------------------

static void ReadingLabel(char* out, int raw, float value) {
    switch (ScreenFormat.readingMode) {
    case READING_RAW: snprintf(out, DrawTextSize, "%d", raw); break;
    case READING_0: snprintf(out, DrawTextSize, "%d", (int)ToPixels(value)); break;
    case READING_0_000: snprintf(out, DrawTextSize, "%.3f", (double)value); break;
    default: snprintf(out, DrawTextSize, "%.1f", (double)value); break;
    }
}

void ChartEndLabels(char* low, char* high) {
    int c = ChannelShown() ? chartChannel : 0;
    ReadingLabel(low, 0, ChannelLookup[c][0]);
    ReadingLabel(high, 255, ChannelLookup[c][255]);
}

// Sets chartReadout to text. A text longer than the buffer loses its hits
// field whole rather than its last digits, so that no number is shown cut;
// a reading that is itself too long (only a wild calibration makes one) is
// cut at the end of the buffer.
static void SetReadout(char* text) {
    size_t length = strlen(text);
    if (length > ChartReadoutSize - 1) {
        char* hits = strstr(text, ",  Hits");
        if (hits != nullptr && hits - text <= ChartReadoutSize - 1) *hits = '\0';
        length = strlen(text);
        if (length > ChartReadoutSize - 1) length = ChartReadoutSize - 1;
    }
    memcpy(chartReadout, text, length);
    chartReadout[length] = '\0';
}

// ---- Painting ---------------------------------------------------------------------

void ChartPaintReadout(DrawList* list) {
    const ViewRect& r = chartReadoutRect;
    if (r.left >= r.right) return;
    if (chartReadout[0] == '\0' || recordCount < 1) snprintf(chartReadout, ChartReadoutSize, " ");
    AddText(list, chartReadout, r.left + (r.right - r.left) / 2, r.bottom - 2,
            TEXT_CENTRE | TEXT_BOTTOM | TEXT_OPAQUE | TEXT_CLIPPED, r, ColourBlack, ColourWhite);
}

static void PaintAxes(DrawList* list, int32_t l, int32_t t, int32_t r, int32_t b) {
    // One path: the Y axis and the X axis two pixels thick, outside the graph.
    const int32_t path[7][2] = {{l - 1, b + 1}, {l - 1, t},     {l - 2, t},     {l - 2, b + 2},
                                {r, b + 2},     {r, b + 1},     {l - 1, b + 1}};
    for (int i = 1; i < 7; i++)
        AddLine(list, path[i - 1][0], path[i - 1][1], path[i][0], path[i][1], ColourBlack,
                PEN_SOLID);
}

static void Label(DrawList* list, const char* text, int32_t x, int32_t y, uint16_t anchor) {
    AddText(list, text, x, y, (uint16_t)(anchor | TEXT_CLIPPED), chartPaneRect, ColourBlack,
            ColourWhite);
}

static void PaintLabels(DrawList* list, int32_t l, int32_t t, int32_t r, int32_t b) {
    char low[DrawTextSize], high[DrawTextSize], hits[DrawTextSize];
    ChartEndLabels(low, high);
    snprintf(hits, sizeof hits, "%d", (int)chartMaxHits);
    Label(list, low, l, b + 4, TEXT_LEFT | TEXT_TOP);
    Label(list, high, r, b + 4, TEXT_RIGHT | TEXT_TOP);
    Label(list, "Reading", l + (r - l) / 2, b + 4 + chartFontHeight, TEXT_RIGHT | TEXT_TOP);
    Label(list, hits, l - 4, t, TEXT_RIGHT | TEXT_TOP);
    Label(list, "0", l - 4, b, TEXT_RIGHT | TEXT_BOTTOM);
    Label(list, "Hits", l - 4, t + (b - t) / 2, TEXT_RIGHT | TEXT_BOTTOM);
}

static void PaintCurve(DrawList* list) {
    const float* lookup = ChannelLookup[chartChannel];
    float lo = lookup[0];
    int32_t left = chartGraphRect.left;
    int32_t bottom = chartGraphRect.bottom;
    int32_t x = left;
    int32_t y = bottom - HitsOffset(chartHits[0]);
    for (int i = 1; i < ChartBins; i++) {
        int32_t nx = left + ReadingOffset(lookup[i], lo);
        int32_t ny = bottom - HitsOffset(chartHits[i]);
        AddLine(list, x, y, nx, ny, ChartCurveColour, PEN_SOLID);
        x = nx;
        y = ny;
    }
}

static void PaintLocationMark(DrawList* list) {
    if (chartLocationRecord < 0 || chartLocationRecord >= recordCount) return;
    const float* lookup = ChannelLookup[chartChannel];
    uint8_t raw = recordStore.rows[chartLocationRecord].ch[chartChannel];
    int32_t x = chartGraphRect.left + ReadingOffset(lookup[raw], lookup[0]);
    AddLine(list, x, chartGraphRect.top, x, chartGraphRect.bottom, ChartMarkColour, PEN_DOTTED);
}

void ChartPaint(DrawList* list) {
    AddBox(list, chartHeaderRect, ColourGrey);
    if (chartReadoutRect.left < chartReadoutRect.right) {
        AddSunkenFrame(list, chartReadoutRect, 1);
        ChartPaintReadout(list);
    }
    const ViewRect& g = chartGraphRect;
    if (recordCount < 1 || !ChannelShown()) {
        AddText(list, NO_DATA_TEXT, g.left + (g.right - g.left) / 2,
                g.top + (g.bottom - g.top) / 2, TEXT_CENTRE | TEXT_BOTTOM | TEXT_CLIPPED, g,
                ColourBlack, ColourWhite);
        return;
    }
    ChartCount();
    PaintAxes(list, g.left, g.top, g.right, g.bottom);
    ChartComputeScales();
    PaintLabels(list, g.left, g.top, g.right, g.bottom);
    PaintCurve(list);
    PaintLocationMark(list);
}

// ---- Pointer and buttons ----------------------------------------------------------

int ChartPointerMoved(int32_t x, int32_t y) {
    const ViewRect& g = chartGraphRect;
    if (x < g.left || x >= g.right || y < g.top || y >= g.bottom) return 0;
    if (!ChannelShown()) chartChannel = 0;
    if (recordCount < 1) return 0;
    // Written so that a scale that is not a number also stops here.
    if (!(chartReadingScale > 0.0f) || !(chartHitScale > 0.0f)) return 0;
    float across = (float)(x - g.left);
    float up = (float)(g.bottom - y);
    float reading = across / chartReadingScale + ChannelLookup[chartChannel][0];
    int32_t hits = ToPixels(up / chartHitScale + 0.5f);
    char text[128];
    switch (ScreenFormat.readingMode) {
    case READING_0:
        snprintf(text, sizeof text, "Reading = %d,  Hits = %d", (int)ToPixels(reading),
                 (int)hits);
        break;
    case READING_0_000:
        snprintf(text, sizeof text, "Reading = %.3f,  Hits = %d", (double)reading, (int)hits);
        break;
    default:
        snprintf(text, sizeof text, "Reading = %.1f,  Hits = %d", (double)reading, (int)hits);
        break;
    }
    char before[ChartReadoutSize];
    memcpy(before, chartReadout, sizeof before);
    SetReadout(text);
    return strcmp(before, chartReadout) != 0;
}

int ChartChooseChannel(int n) {
    if (recordCount < 1 || n < 0 || n > 3 || chartChannel == n) return 0;
    chartChannel = n;
    snprintf(chartReadout, ChartReadoutSize, " ");
    return 1;
}

int ChartButtonFace(int n, int held) {
    (void)held;  // a channel button's face follows chartChannel, not the press
    static const int Faces[4][3] = {
        {IDB_CH1_UP, IDB_CH1_DOWN, IDB_CH1_OFF},
        {IDB_CH2_UP, IDB_CH2_DOWN, IDB_CH2_OFF},
        {IDB_CH3_UP, IDB_CH3_DOWN, IDB_CH3_OFF},
        {IDB_CH4_UP, IDB_CH4_DOWN, IDB_CH4_OFF},
    };
    if (n < 0 || n > 3) return 0;
    if (recordCount < 1) return Faces[n][2];
    return Faces[n][chartChannel == n ? 1 : 0];
}

int ChartAreaRect(int area, ViewRect* out) {
    if (area != AREA_CHART_RECT) return 0;
    *out = chartPaneRect;
    return 1;
}
