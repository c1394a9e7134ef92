#include "views/plot_view.h"

#include <gtest/gtest.h>

#include <vector>

#include "fake_platform.h"
#include "resources/resource_ids.h"
#include "storage/colours_file.h"
#include "survey/cal_lookup.h"
#include "survey/recording_engine.h"
#include "views/plot_geometry.h"

namespace {

// A 200 x 150 client area at one millisecond of arc per pixel, centred on
// 0, 0: plotArea is 1..198 by 34..148 (right and bottom exclusive: 199, 149) and its centre pixel (100, 91).
struct PlotViewTest : ::testing::Test {
    std::vector<uint32_t> pixels;
    void SetUp() override {
        ResetFakeWorld();
        ResetCalibration();
        for (int c = 0; c < 4; c++) BuildChannelLookup(c);  // identity: value = raw
        SetDefaultColours();
        PlotLayout(200, 150);
        plotView.centreLatitude = plotView.centreLongitude = 0;
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
constexpr uint32_t Blue = 0x0000FF, Green = 0x00FF00, Red = 0xFF0000, Black = 0, White = 0xFFFFFF;

TEST_F(PlotViewTest, BandOfAValueUsesStrictBreaks) {
    struct { float value; int band; } cases[] = {
        {80.5f, 0}, {80.0f, 1}, {60.5f, 1}, {60.0f, 2}, {40.01f, 2}, {40.0f, 3}, {-5.0f, 3}};
    for (auto& c : cases) EXPECT_EQ(c.band, PlotBand(c.value)) << c.value;
}

TEST_F(PlotViewTest, DotsSquaresAndClampsAsDrawn) {
    struct Case { int channel, size, x, y; uint8_t ch[4]; int n; PlotSquare first; };
    const Case cases[] = {
        {0, 5, 100, 91, {90, 0, 0, 0}, 1, {98, 89, 103, 94, 0x00FF0000}},
        {4, 5, 100, 91, {70, 0, 0, 0}, 4, {95, 86, 100, 91, 0x0000FF00}},     // All: ch1 up left
        {0, 1, 100, 91, {0, 0, 0, 0}, 1, {100, 91, 101, 92, 0}},              // size 1: the pixel
        {6, 5, 100, 91, {0, 0, 0, 0}, 0, {0, 0, 0, 0, 0}},
    };
    for (const Case& c : cases) {
        Record row{};
        for (int k = 0; k < 4; k++) row.ch[k] = c.ch[k];
        PlotSquare sq[4];
        ASSERT_EQ(c.n, PlotRowSquares(row, c.x, c.y, c.channel, c.size, sq)) << c.channel;
        if (c.n == 0) continue;
        EXPECT_EQ(c.first.left, sq[0].left);
        EXPECT_EQ(c.first.top, sq[0].top);
        EXPECT_EQ(c.first.right, sq[0].right);
        EXPECT_EQ(c.first.bottom, sq[0].bottom);
        EXPECT_EQ(c.first.colour, sq[0].colour) << c.channel;
        if (c.n == 4) {
            EXPECT_EQ(104, sq[3].right - 1);  // ch4 down right ends at x + d - 1
        }
    }

    // Pixels: a dot on the last column keeps only its left part, a record one
    // pixel right of the area is not drawn at all, later rows lie over earlier.
    AddAt(198, 60, 90);
    AddAt(199, 100, 90);
    AddAt(50, 91, 70);
    AddAt(51, 91, 50);
    plotChannel = 0;
    EXPECT_EQ(3, Paint());
    EXPECT_EQ(Blue, At(196, 60));
    EXPECT_EQ(Blue, At(198, 60));
    EXPECT_EQ(White, At(197, 100));
    EXPECT_EQ(Green, At(48, 91));
    EXPECT_EQ(Red, At(49, 91));
    EXPECT_EQ(Red, At(53, 91));
    EXPECT_EQ(White, At(54, 91));

    // Suspended: white only.
    statusFlags |= STATUS_PLOT_SUSPENDED;
    EXPECT_EQ(0, Paint());
    EXPECT_EQ(White, At(48, 91));
}

TEST_F(PlotViewTest, MarkerLiesUnderTheDotsAndCrossHairHugsTheBorder) {
    statusFlags |= STATUS_PLOT_POSITION;
    liveState.dataValidTicks = 3;
    liveState.liveLongitude = 0;
    liveState.liveLatitude = 0;
    AddAt(100, 91, 0);
    Paint();
    EXPECT_EQ(Black, At(100, 91));       // the record's dot, band None
    EXPECT_EQ(0x800080u, At(95, 86));    // the marker, 2 x dotSize wide
    EXPECT_EQ(White, At(105, 96));

    AddAt(500, -400, 0);  // far out of view, up and right
    DrawList list;
    struct { int record; int lines; int x; int y; } cases[] = {{1, 2, 198, 34}, {0, 2, 100, 91},
                                                               {2, 0, 0, 0}, {-1, 0, 0, 0}};
    for (auto& c : cases) {
        plotLocationRecord = c.record;
        DrawListClear(&list);
        PlotPaintCrossHair(&list);
        ASSERT_EQ(c.lines, list.count) << c.record;
        if (c.lines == 0) continue;
        EXPECT_EQ(c.x, list.ops[0].rect.left);
        EXPECT_EQ(c.y, list.ops[1].rect.top);
        EXPECT_EQ(PEN_DOTTED, list.ops[0].pen);
    }
}

TEST_F(PlotViewTest, SuspendsOnlyWhenRecordingAndTooSlow) {
    struct { uint32_t flags; int32_t max; uint32_t elapsed; int suspends; } cases[] = {
        {STATUS_RECORDING, 1000, 1000, 0}, {STATUS_RECORDING, 1000, 1001, 1},
        {STATUS_RECORDING, 0, 90000, 0},   {0, 1000, 90000, 0}};
    for (auto& c : cases) {
        statusFlags = c.flags;
        maxPlotTime = c.max;
        EXPECT_EQ(c.suspends, PlotCheckSuspension(c.elapsed)) << c.elapsed;
        EXPECT_EQ(c.suspends != 0, (statusFlags & STATUS_PLOT_SUSPENDED) != 0);
    }
}

}  // namespace
