#include "views/chart_view.h"

#include <gtest/gtest.h>

#include <stdio.h>
#include <string>
#include <vector>

#include "fake_platform.h"
#include "resources/resource_ids.h"
#include "survey/cal_lookup.h"
#include "views/display_format.h"

namespace {

DrawList list;  // large: kept out of the stack

class ChartTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        saved = ScreenFormat;
        chartChannel = 0;
        chartLocationRecord = -1;
        chartReadout[0] = '\0';
        chartHitScale = chartReadingScale = 0.0f;
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

TEST_F(ChartTest, LayoutScalesCurveAndReadoutOfTheWorkedExample) {
    const ViewRect& g = chartGraphRect;
    EXPECT_EQ((std::vector<int32_t>{45, 43, 590, 363}),
              (std::vector<int32_t>{g.left, g.top, g.right, g.bottom}));
    SetCurve(0.0f, 100.0f);
    AddRows(10, 100);
    AddRows(128, 50);
    Paint();
    EXPECT_EQ((std::vector<uint32_t>{FloatBits(3.2f), FloatBits(5.45f)}),
              (std::vector<uint32_t>{FloatBits(chartHitScale), FloatBits(chartReadingScale)}));
    EXPECT_EQ(255, CountLines(ChartCurveColour, -1, -1));
    EXPECT_EQ(1, CountLines(ChartCurveColour, 318, 203));  // the bin of 50 at raw 128
    EXPECT_EQ(1, ChartPointerMoved(318, 203));
    EXPECT_STREQ("Reading = 50.1,  Hits = 50", chartReadout);
    EXPECT_EQ(0, ChartPointerMoved(318, 203));  // same text: nothing to draw
    EXPECT_EQ(0, ChartPointerMoved(590, 203));  // right of the graph
}

TEST_F(ChartTest, EndLabelsFollowTheReadingMode) {
    struct Case { int mode; float lo, hi; const char* low; const char* high; };
    const Case cases[] = {
        {-1, 0.0f, 0.0f, "0", "255"},           {0, 0.0f, 0.0f, "0", "255"},
        {-1, 0.0f, 100.0f, "0", "255"},         {1, 0.0f, 100.0f, "0.0", "100.0"},
        {3, 0.0f, 100.0f, "0.000", "100.000"},  {0, -120.7f, -20.5f, "-120", "-20"},
    };
    for (const Case& c : cases) {
        ScreenFormat.readingMode = c.mode;
        SetCurve(c.lo, c.hi);
        char low[DrawTextSize], high[DrawTextSize];
        ChartEndLabels(low, high);
        EXPECT_EQ(std::string(c.low) + " " + c.high, std::string(low) + " " + high) << c.mode;
    }
}

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

TEST_F(ChartTest, ReadoutFormsAndTheCasesWithoutOne) {
    struct Case { int mode; float lo, hi; int32_t x, y; int changed; const char* text; };
    const Case cases[] = {
        {-1, 0.0f, 100.0f, 318, 203, 1, "Reading = 50.1,  Hits = 500"},
        {0, 0.0f, 100.0f, 318, 203, 1, "Reading = 50,  Hits = 500"},
        // 32 characters do not fit: the hits go rather than a digit of them.
        {3, -120.0f, -20.0f, 45, 43, 1, "Reading = -120.000"},
        {1, 50.0f, 50.0f, 318, 203, 0, " "},   // flat curve: no scale, no read-out
        {1, 100.0f, 0.0f, 318, 203, 0, " "},   // hi below lo
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

}  // namespace
