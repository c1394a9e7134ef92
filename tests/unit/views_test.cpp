// The views' portable halves: the plot's geometry and pixels, the chart and the listing.
#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "resources/resource_ids.h"
#include "storage/colours_file.h"
#include "survey/cal_lookup.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "views/chart_view.h"
#include "views/display_format.h"
#include "views/listing_view.h"
#include "views/plot_geometry.h"
#include "views/plot_view.h"

namespace {

// An 800 x 600 client area: plotArea 798 x 565 with its centre pixel at (400, 316).
struct PlotGeometry : ::testing::Test {
    void SetUp() override {
        ResetFakeWorld();
        PlotLayout(800, 600);
    }
    static void AddAt(int32_t latitude, int32_t longitude) {
        recordStore.rows[recordCount].latitude = latitude;
        recordStore.rows[recordCount].longitude = longitude;
        recordCount++;
    }
    static std::string Title() {
        char text[PlotTitleSize];
        PlotTitle(text, sizeof text);
        return text;
    }
    static std::vector<int32_t> Centre() { return {plotView.centreLatitude, plotView.centreLongitude}; }
};

TEST_F(PlotGeometry, LayoutAndWorldScale) {
    // The width decides, then the height; a window too narrow has an empty read-out.
    const struct { int32_t width, height, readoutRight, areaWidth, areaHeight, worldScale; } cases[] = {
        {800, 600, 780, 798, 565, 1624060},
        {1000, 300, 980, 998, 265, 2445283},
        {323, 100, 304, 321, 65, 9969230},
        {0, 0, 304, -2, -35, 1296000000},
    };
    for (const auto& c : cases) {
        PlotLayout(c.width, c.height);
        EXPECT_EQ(33, plotView.headerRect.bottom);
        EXPECT_EQ((std::vector<int32_t>{c.readoutRight, c.areaWidth, c.areaHeight, c.worldScale}),
                  (std::vector<int32_t>{plotView.readoutRect.right, PlotAreaWidth(), PlotAreaHeight(),
                                        PlotWorldScale()}));
    }
    PlotLayout(800, 600);
    PlotEnsureScale();
    EXPECT_EQ(1624060, plotView.scale);
    plotView.scale = 7;
    PlotEnsureScale();
    EXPECT_EQ(7, plotView.scale);
    // The centre pixel is (400, 316): one pixel is 7 to the east and north.
    const PlotPosition pos = PlotFromPixel(402, 315);
    EXPECT_EQ((std::vector<int32_t>{7, 14}), (std::vector<int32_t>{pos.latitude, pos.longitude}));
}

// From a centre of (1000, 2000) with both bars at 7: the last step out goes
// to the world scale (1624060 here), back to the centre and the bars to 50.
TEST_F(PlotGeometry, ZoomInAndOut) {
    const struct { int in; int32_t width, height, scale; int changed; int32_t after; int centred; } cases[] = {
        {1, 800, 600, 5, 1, 2, 0},
        {1, 800, 600, 3, 1, 1, 0},
        {1, 800, 600, 1, 0, 1, 0},
        {1, 800, 600, 0, 1, 1624060 / 2, 0},  // before the first repaint: from the world scale
        {0, 800, 600, 1624060 / 2 - 1, 1, 1624060 - 2, 0},
        {0, 800, 600, 1624060 / 2, 1, 1624060, 1},
        {0, 800, 600, 1624060 - 1, 1, 1624060, 1},
        {0, 800, 600, 1624060 + 5, 1, 1624060, 1},
        {0, 800, 600, 1624060, 0, 1624060, 0},
        {0, 1, 1, 700000000, 1, 1296000000, 1},  // an empty area neither divides by zero nor fails
    };
    for (const auto& c : cases) {
        SetUp();
        PlotLayout(c.width, c.height);
        plotView.centreLatitude = 1000;
        plotView.centreLongitude = 2000;
        plotView.verticalScrollPos = 7;
        plotView.horizontalScrollPos = 7;
        plotView.scale = c.scale;
        SCOPED_TRACE(testing::Message() << (c.in ? "in from " : "out from ") << c.scale);
        EXPECT_EQ(c.changed, c.in ? PlotZoomIn() : PlotZoomOut());
        EXPECT_EQ(c.after, plotView.scale);
        const std::vector<int32_t> centre = {c.centred ? 0 : 1000, c.centred ? 0 : 2000};
        EXPECT_EQ(centre, Centre());
        EXPECT_EQ(c.centred ? 50 : 7, plotView.verticalScrollPos);
        EXPECT_EQ(c.centred ? 50 : 7, plotView.horizontalScrollPos);
        EXPECT_EQ(c.changed, CountStatus(c.in ? "Plot zoom in" : "Plot zoom out"));
    }
}

// Auto zoom needs two records and an area, and spans beyond the legal ones
// take 33 bits; the Plot of the views scenario is drawn at its centre and scale.
TEST_F(PlotGeometry, AutoZoom) {
    plotView.scale = 77;
    AddAt(1000, 2000);
    EXPECT_EQ(ZoomNothingToDo, PlotZoomAuto());
    AddAt(3000, 2000);
    PlotLayout(0, 0);
    EXPECT_EQ(ZoomAreaInvalid, PlotZoomAuto());
    EXPECT_EQ(77, plotView.scale);
    recordStore.rows[0].latitude = INT32_MIN;
    recordStore.rows[1].latitude = INT32_MAX;
    PlotLayout(800, 36);  // H = 1
    EXPECT_EQ(ZoomChanged, PlotZoomAuto());
    EXPECT_EQ(INT32_MAX, plotView.scale);
    EXPECT_EQ(-1, plotView.centreLatitude);
}

// Both bars start at 33; a scroll that changes nothing leaves them alone. At
// 1000 a line is 28250 up and down, 39900 across, a page ten times that.
TEST_F(PlotGeometry, ScrollCodesMoveTheCentreAndSetTheBar) {
    const int V = 1;
    const int H = 0;
    const struct { int32_t width, height, scale; int vertical; int32_t from; int code; uint16_t thumb;
                   int changed; int32_t to, bar; } cases[] = {
        {800, 600, 1000, V, 400000000, PLOT_SCROLL_THUMB_TRACK, 50, 1, 0, 50},
        {800, 600, 1000, V, 0, PLOT_SCROLL_THUMB_POSITION, 0, 1, 324000000, 0},
        {800, 600, 1000, V, 0, PLOT_SCROLL_THUMB_POSITION, 65535, 1, -324000000, 100},  // clamped, not wrapped
        {800, 600, 1000, H, 5, PLOT_SCROLL_THUMB_TRACK, 50, 1, 0, 50},
        {800, 600, 1000, H, 0, PLOT_SCROLL_THUMB_TRACK, 0, 1, -648000000, 0},
        {800, 600, 1000, H, 0, PLOT_SCROLL_THUMB_POSITION, 100, 1, 648000000, 100},
        {800, 600, 1000, V, 0, PLOT_SCROLL_LINE_BACK, 0, 1, 28250, 50},
        {800, 600, 1000, V, 28250, PLOT_SCROLL_PAGE_ON, 0, 1, 28250 - 282500, 51},
        {800, 600, 1000, H, 0, PLOT_SCROLL_LINE_ON, 0, 1, 39900, 50},
        {800, 600, 1000, H, 39900, PLOT_SCROLL_PAGE_BACK, 0, 1, 39900 - 399000, 49},
        {800, 600, 1000, V, 0, PLOT_SCROLL_START, 0, 1, 324000000, 0},
        {800, 600, 1000, H, 0, PLOT_SCROLL_END, 0, 1, 648000000, 100},
        {800, 600, 1000, V, 324000000, PLOT_SCROLL_LINE_BACK, 0, 0, 324000000, 33},  // at a stop
        {800, 600, 1000, H, 648000000, PLOT_SCROLL_PAGE_ON, 0, 0, 648000000, 33},
        {800, 600, 1000, V, 324000000, 8, 0, 0, 324000000, 33},
        {800, 600, 1000, V, 400000000, 8, 0, 1, 324000000, 0},  // another code only clamps
        // Tall and narrow at the world scale: H * scale passes 32 bits.
        {3, 30000, 0, V, 0, PLOT_SCROLL_LINE_ON, 0, 1, -324000000, 100},
        {3, 30000, 0, V, -324000000, PLOT_SCROLL_LINE_BACK, 0, 1, 324000000, 0},
        {30000, 36, INT32_MAX, H, 0, PLOT_SCROLL_PAGE_BACK, 0, 1, -648000000, 0},
        // An empty area does not move backwards.
        {0, 0, 1000, H, 0, PLOT_SCROLL_LINE_BACK, 0, 0, 0, 33},
        {0, 0, 1000, V, 0, PLOT_SCROLL_PAGE_BACK, 0, 0, 0, 33},
    };
    for (const auto& c : cases) {
        SetUp();
        PlotLayout(c.width, c.height);
        plotView.scale = c.scale;
        plotView.verticalScrollPos = 33;
        plotView.horizontalScrollPos = 33;
        int32_t& centre = c.vertical ? plotView.centreLatitude : plotView.centreLongitude;
        centre = c.from;
        SCOPED_TRACE(testing::Message() << (c.vertical ? "vertical " : "horizontal ") << c.code << " from " << c.from);
        EXPECT_EQ(c.changed, c.vertical ? PlotScrollVertical(c.code, c.thumb) : PlotScrollHorizontal(c.code, c.thumb));
        EXPECT_EQ(c.to, centre);
        EXPECT_EQ(c.bar, c.vertical ? plotView.verticalScrollPos : plotView.horizontalScrollPos);
        EXPECT_EQ(33, c.vertical ? plotView.horizontalScrollPos : plotView.verticalScrollPos);
    }
}

TEST_F(PlotGeometry, ResetAndTitle) {
    plotView.centreLatitude = 1;
    plotView.centreLongitude = -700000000;
    plotView.horizontalScrollPos = 4;
    strcpy(plotTitle, "Plot   [1.0km x 1.0km]");
    ResetPlotView();
    EXPECT_EQ((std::vector<int32_t>{0, 0}), Centre());
    EXPECT_EQ(0, plotView.scale);
    EXPECT_EQ(50, plotView.horizontalScrollPos);
    EXPECT_STREQ("Plot", plotTitle);
    EXPECT_EQ(799, plotView.plotArea.right);
    plotView.scale = 1000;
    EXPECT_EQ("Plot", Title());
    AddAt(0, 0);
    const struct { int32_t scale, radius; const char* title; } cases[] = {
        {1000, 6371, "Plot   [24.6km x 17.5km]"},
        {100, 6371, "Plot   [2.5km x 1.7km]"},
        {50, 6371, "Plot   [1232.4m x 872.6m]"},  // the height alone below 1 km
        {5, 6371, "Plot   [123.241m x 87.257m]"},  // the height alone below 0.1 km
        {1000, 6000, "Plot   [23.2km x 16.4km]"},
    };
    for (const auto& c : cases) {
        plotView.scale = c.scale;
        EarthRadiusKm = c.radius;
        EXPECT_EQ(c.title, Title());
    }
    // Absurd sizes are cut to the buffer.
    PlotLayout(1 << 30, 1 << 30);
    EarthRadiusKm = INT32_MIN;
    plotView.scale = INT32_MAX;
    std::string huge = Title();
    EXPECT_EQ(63u, huge.size());
    EXPECT_EQ(0u, huge.find("Plot   [-"));
    char small[5];
    PlotTitle(small, sizeof small);
    EXPECT_STREQ("Plot", small);
}

DrawList list;  // large: kept out of the stack

// A 200 x 150 client area at one millisecond of arc per pixel, centred on
// 0, 0: plotArea is 1..198 by 34..148 (right and bottom exclusive: 199, 149) and its centre pixel (100, 91).
struct PlotViewTest : ::testing::Test {
    std::vector<uint32_t> pixels;
    void SetUp() override {
        ResetFakeWorld();
        for (int c = 0; c < 4; c++) BuildChannelLookup(c);  // identity: value = raw
        SetDefaultColours();
        PlotLayout(200, 150);
        plotView.scale = 1;
        plotChannel = 0;
        dotSize = 5;
        powerBreak[0] = 80.0f, powerBreak[1] = 60.0f, powerBreak[2] = 40.0f;
        plotLocationRecord = -1;
        pixels.assign(198 * 115, 0);
    }
    void AddAt(int x, int y, uint8_t a, uint8_t b = 0, uint8_t c = 0, uint8_t d = 0) {
        Record& r = recordStore.rows[recordCount++];
        r = Record{};
        r.longitude = x - 100;
        r.latitude = 91 - y;
        r.ch[0] = a, r.ch[1] = b, r.ch[2] = c, r.ch[3] = d;
    }
    uint32_t At(int x, int y) { return pixels[(y - 34) * 198 + (x - 1)]; }
    int Paint() { return PlotPaintPixels(PlotImage{pixels.data(), 198, 115}); }
};

// The image holds 0x00RRGGBB; the default band colours are blue, green, red, black.
constexpr uint32_t Blue = 0x0000FF, Green = 0x00FF00, Black = 0, White = 0xFFFFFF;

// A value on a break (80, 60, 40) falls in the band below it.
TEST_F(PlotViewTest, DotsSquaresBandsAndClampsAsDrawn) {
    struct Case { int channel, size, x, y; uint8_t ch[4]; int n; PlotSquare first; };
    const Case cases[] = {
        {0, 5, 100, 91, {80, 0, 0, 0}, 1, {98, 89, 103, 94, 0x0000FF00}},
        {4, 5, 100, 91, {60, 0, 0, 0}, 4, {95, 86, 100, 91, 0x000000FF}},     // All: ch1 up left
        {0, 1, 100, 91, {0, 0, 0, 0}, 1, {100, 91, 101, 92, 0}},              // size 1: the pixel
        {6, 5, 100, 91, {0, 0, 0, 0}, 0, {0, 0, 0, 0, 0}},
    };
    for (const Case& c : cases) {
        Record row{};
        for (int k = 0; k < 4; k++) row.ch[k] = c.ch[k];
        PlotSquare sq[4];
        ASSERT_EQ(c.n, PlotRowSquares(row, c.x, c.y, c.channel, c.size, sq)) << c.channel;
        if (c.n == 0) continue;
        // With All, ch4 lies down right and ends at x + d - 1.
        EXPECT_EQ((std::vector<int32_t>{c.first.left, c.first.top, c.first.right, c.first.bottom,
                                        (int32_t)c.first.colour, c.n == 4 ? 105 : sq[c.n - 1].right}),
                  (std::vector<int32_t>{sq[0].left, sq[0].top, sq[0].right, sq[0].bottom, (int32_t)sq[0].colour,
                                        sq[c.n - 1].right}))
            << c.channel;
    }

    // Pixels: a dot on the last column keeps only its left part, a record one
    // pixel right of the area is not drawn at all, later rows lie over earlier.
    AddAt(198, 60, 90);
    AddAt(199, 100, 90);
    AddAt(50, 91, 70);
    AddAt(51, 91, 40);
    EXPECT_EQ(3, Paint());
    EXPECT_EQ((std::vector<uint32_t>{Blue, Blue, White, Green, Black, Black, White}),
              (std::vector<uint32_t>{At(196, 60), At(198, 60), At(197, 100), At(48, 91), At(49, 91), At(53, 91),
                                     At(54, 91)}));

    // Suspended: white only.
    statusFlags |= STATUS_PLOT_SUSPENDED;
    EXPECT_EQ(0, Paint());
    EXPECT_EQ(White, At(48, 91));
}

// A read-out needs a record; the live position's marker lies under the dots.
// The cross hair of Show Location is checked on the screen by the views scenario.
TEST_F(PlotViewTest, ReadoutNeedsARecordAndTheMarkerLiesUnderTheDots) {
    EXPECT_EQ(0, PlotPointerMoved(100, 91));
    DrawListClear(&list);
    PlotPaintStrip(&list);  // "- No Data -", and not again once there is one record
    AddAt(100, 91, 0);
    EXPECT_EQ(1, PlotPointerMoved(100, 91));
    PlotPaintStrip(&list);
    int noData = 0;
    for (int i = 0; i < list.count; i++)
        noData += list.ops[i].kind == DRAW_TEXT && !strcmp(list.ops[i].text, "- No Data -");
    EXPECT_EQ(1, noData);
    statusFlags |= STATUS_PLOT_POSITION;
    liveState.dataValidTicks = 3;
    Paint();
    // The record's dot (band None) over the marker, 2 x dotSize wide.
    EXPECT_EQ((std::vector<uint32_t>{Black, 0x800080u, White}),
              (std::vector<uint32_t>{At(100, 91), At(95, 86), At(105, 96)}));
}

struct ChartTest : ::testing::Test {
    void SetUp() override {
        ResetFakeWorld();
        saved = ScreenFormat;
        chartChannel = 0;
        chartLocationRecord = -1;
        chartReadout[0] = '\0';
        chartFontHeight = 16;
        ChartLayout(600, 400, 40, 16);
    }
    void TearDown() override { ScreenFormat = saved; }
    DisplayFormat saved{};
};

// Channel 0's curve from (0, lo) to (255, hi); both 0 gives the identity.
void SetCurve(float lo, float hi) {
    CalTable[0].count = (lo == 0.0f && hi == 0.0f) ? 0 : 2;
    CalTable[0].points[0] = CalPoint{0, {0, 0, 0}, lo};
    CalTable[0].points[1] = CalPoint{255, {0, 0, 0}, hi};
    BuildChannelLookup(0);
}

void AddRows(uint8_t raw, int n) {
    for (int i = 0; i < n; i++) recordStore.rows[recordCount++].ch[0] = raw;
}

// The text of the label anchored at (x, y), "" for none.
std::string TextAt(int32_t x, int32_t y) {
    for (int i = 0; i < list.count; i++)
        if (list.ops[i].kind == DRAW_TEXT && list.ops[i].x == x && list.ops[i].y == y)
            return list.ops[i].text;
    return "";
}

// Lines of a colour, ending at (endX, endY) where these are not -1.
int CountLines(uint32_t colour, int32_t endX, int32_t endY) {
    int n = 0;
    for (int i = 0; i < list.count; i++) {
        const DrawOp& op = list.ops[i];
        n += op.kind == DRAW_LINE && op.colour == colour && (endX < 0 || op.rect.right == endX) &&
             (endY < 0 || op.rect.bottom == endY);
    }
    return n;
}

void Paint() { DrawListClear(&list); ChartPaint(&list); }

TEST_F(ChartTest, HitsLabelLocationMarkAndNoData) {
    struct Case { int rows; int32_t location; const char* topLabel; int marks; int curve; };
    const Case cases[] = {
        {0, -1, "", 0, 0},  // "- No Data -" only
        {1, -1, "1", 0, 255},
        {3, 3, "3", 0, 255},  // past the end of the store
    };
    SetCurve(0.0f, 100.0f);
    for (const Case& c : cases) {
        recordCount = 0;
        AddRows(200, c.rows);
        chartLocationRecord = c.location;
        Paint();
        EXPECT_EQ(c.topLabel, TextAt(41, 43)) << c.rows;
        EXPECT_EQ(c.marks, CountLines(ChartMarkColour, -1, 363)) << c.location;
        EXPECT_EQ(c.curve, CountLines(ChartCurveColour, -1, -1)) << c.rows;
        EXPECT_EQ(c.rows == 0 ? "- No Data -" : "", TextAt(317, 203));
    }
}

// The read-out and the end labels of the axis in each reading mode.
TEST_F(ChartTest, ReadoutFormsAndTheCasesWithoutOne) {
    struct Case { int mode; float lo, hi; int32_t x, y; int changed; const char *text, *labels; };
    const Case cases[] = {
        {-1, 0.0f, 100.0f, 318, 203, 1, "Reading = 50.1,  Hits = 500", "0 255"},
        {0, 0.0f, 100.0f, 318, 203, 1, "Reading = 50,  Hits = 500", "0 100"},
        // 32 characters do not fit: the hits go rather than a digit of them.
        {3, -120.0f, -20.0f, 45, 43, 1, "Reading = -120.000", "-120.000 -20.000"},
        {1, 50.0f, 50.0f, 318, 203, 0, " ", "50.0 50.0"},   // flat curve: no scale, no read-out
        {1, 100.0f, 0.0f, 318, 203, 0, " ", "100.0 0.0"},   // hi below lo
        {0, -120.7f, -20.5f, 318, 203, 1, "Reading = -70,  Hits = 500", "-120 -20"},
    };
    for (const Case& c : cases) {
        ScreenFormat.readingMode = c.mode;
        SetCurve(c.lo, c.hi);
        recordCount = 0;
        AddRows(0, 1000);
        chartReadout[0] = '\0';
        Paint();  // never divides by zero, never crashes
        EXPECT_EQ(c.changed, ChartPointerMoved(c.x, c.y)) << c.text;
        EXPECT_STREQ(c.text, chartReadout);
        char low[DrawTextSize], high[DrawTextSize];
        ChartEndLabels(low, high);
        EXPECT_EQ(c.labels, std::string(low) + " " + high);
    }
}

TEST_F(ChartTest, ChannelButtonsFormARadioGroupOnlyWithRecords) {
    snprintf(chartReadout, ChartReadoutSize, "x");
    EXPECT_EQ(0, ChartChooseChannel(2));  // no records
    EXPECT_EQ(IDB_CH3_OFF, ChartButtonFace(2, 1));
    AddRows(7, 1);
    EXPECT_EQ(0, ChartChooseChannel(0));  // already shown
    EXPECT_STREQ("x", chartReadout);
    EXPECT_EQ(1, ChartChooseChannel(2));
    EXPECT_STREQ(" ", chartReadout);
    EXPECT_EQ((std::vector<int>{IDB_CH1_UP, IDB_CH3_DOWN}),
              (std::vector<int>{ChartButtonFace(0, 1), ChartButtonFace(2, 0)}));
}

// Rows 10 pixels high in a client area 1005 by 64: header 0..12, strips
// 12..52 (four whole rows), live band 53..63.
struct ListingViewTest : ::testing::Test {
    DrawList list;
    void SetUp() override {
        ResetFakeWorld();
        listingCharHeight = 10;
        ListingLayout(1005, 64);
    }
    // Rows with a differential flag but no fix, which are drawn as no fix.
    void Fill(int count) {
        recordCount = count;
        for (int i = 0; i < count; i++) recordStore.rows[i] = Record{RECORD_GPS_DIFF, 0, {0, 0, 0, 0}, 0, 0, 0};
    }
    // Paints and returns the record cells drawn: the texts anchored at their top.
    std::vector<const DrawOp*> PaintRows() {
        DrawListClear(&list);
        ListingPaint(&list);
        std::vector<const DrawOp*> cells;
        for (int i = 0; i < list.count; i++) {
            const DrawOp& op = list.ops[i];
            if (op.kind == DRAW_TEXT && !(op.flags & (TEXT_IN_RECT | TEXT_BOTTOM)))
                cells.push_back(&op);
        }
        return cells;
    }
};

TEST_F(ListingViewTest, PaintClampsTheTopRowAndDrawsOneRowMoreThanFits) {
    // The last row's cells end at the next row or, for the extra row, at the strip's end.
    struct { int records, top, clamped, rows; const char* first; int lastBottom; } cases[] = {
        {10, 0, 0, 5, "1 - unknown", 52}, {10, 6, 6, 4, "7 - unknown", 50},
        {10, 7, 7, 3, "8 - unknown", 40}, {10, 9, 7, 3, "8 - unknown", 40},
        {3, 2, 0, 3, "1 - unknown", 40},  {0, 5, 0, 0, "", 0},
    };
    for (auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.records << " records from " << c.top);
        Fill(c.records);
        listingTopIndex = c.top;
        std::vector<const DrawOp*> cells = PaintRows();
        EXPECT_EQ(4, listingRowCount);
        EXPECT_EQ(c.clamped, listingTopIndex);
        ASSERT_EQ(7u * c.rows, cells.size());
        if (c.rows == 0) continue;
        EXPECT_STREQ(c.first, cells[0]->text);
        EXPECT_TRUE(cells[0]->y == 12 && cells[0]->rect.top == 13 && cells[0]->rect.bottom == 20);
        EXPECT_EQ((std::vector<uint32_t>{ListingDarkRed, ListingDarkRed, ColourGrey}),
                  (std::vector<uint32_t>{cells[1]->colour, cells[2]->colour, cells[6]->colour}));
        EXPECT_EQ(c.lastBottom, cells.back()->rect.bottom);
    }
}

TEST_F(ListingViewTest, ScrollRequests) {
    enum { N = LISTING_SCROLL_NONE, D = LISTING_SCROLL_BLOCK_DOWN, U = LISTING_SCROLL_BLOCK_UP,
           R = LISTING_SCROLL_REPAINT };
    // 20 rows fit; 100 records give a largest top row of 81.
    struct { int records, request, thumb, from, to, action, bar; } cases[] = {
        {100, LISTING_SCROLL_LINE_UP, 0, 10, 9, D, 11},  {100, LISTING_SCROLL_LINE_UP, 0, 0, 0, N, 0},
        {100, LISTING_SCROLL_LINE_DOWN, 0, 10, 11, U, 13},
        {100, LISTING_SCROLL_LINE_DOWN, 0, 81, 81, N, 100},
        {100, LISTING_SCROLL_PAGE_UP, 0, 3, 0, R, 0},  {100, LISTING_SCROLL_TOP, 0, 50, 0, R, 0},
        {100, LISTING_SCROLL_PAGE_DOWN, 0, 70, 81, R, 100},
        {100, LISTING_SCROLL_THUMB_POSITION, 100, 0, 81, R, 100},  // the same as bottom
        {100, LISTING_SCROLL_BOTTOM, 0, 0, 81, R, 100},
        {100, LISTING_SCROLL_THUMB_TRACK, 50, 39, 40, U, 49},  // a drag by one row: block move
        {100, LISTING_SCROLL_THUMB_TRACK, 50, 41, 40, D, 49},
        {21, LISTING_SCROLL_LINE_DOWN, 0, 0, 1, U, 0},  // all fit: the bar stays at 0
        {5, LISTING_SCROLL_BOTTOM, 0, 0, 0, N, 0},
    };
    for (auto& c : cases) {
        recordCount = c.records, listingRowCount = 20, listingTopIndex = c.from;
        SCOPED_TRACE(::testing::Message() << c.request << " from " << c.from);
        ListingScrollResult result = ListingScroll(c.request, c.thumb);
        EXPECT_EQ(c.to, listingTopIndex);
        EXPECT_EQ(c.action, result.action);
        EXPECT_EQ(c.bar, result.thumb);
        // A block move shifts the strips' inside (13..51) by a row and leaves that row to draw.
        if (c.action == D || c.action == U) {
            bool down = c.action == D;
            EXPECT_TRUE(result.dy == (down ? 10 : -10) && result.uncovered.top == (down ? 13 : 41) &&
                        result.uncovered.bottom == (down ? 23 : 51));
        }
    }
}

TEST_F(ListingViewTest, StatisticsText) {
    strcpy(dataFileName, "C:\\SURVEYS\\RUN1.DAT");
    recordingParams.startTime = 1700000000u;
    recordingParams.intervalSeconds = 5;
    strcpy(recordingParams.calFileName[0], "C:\\CAL\\DEFAULT.CAL");
    recordCount = 3;
    tagCount = 2;
    char text[ListingStatisticsSize];
    ListingStatisticsText(text);
    EXPECT_STREQ("Data Filename\t\tRUN1.DAT\n\n"
                 "Recording started\t\tTue Nov 14 22:13:20 2023\n\n"
                 "Recording interval\t\t5 Sec\n\n"
                 "Records\t\t\t3 out of 16000\n\n"
                 "Calibration files\tCh1\tDEFAULT.CAL\n"
                 "\t\tCh2\t\n\t\tCh3\t\n\t\tCh4\t\n\n"
                 "Text tags\t\t\t2\n\n",
                 text);
    EXPECT_EQ(LISTING_COMMAND_STATISTICS, ListingCommand(IDM_RECORD_STATISTICS));
    EXPECT_EQ(1, CountStatus("Show listing stats"));
}

}  // namespace
