#include "views/listing_view.h"

#include <gtest/gtest.h>

#include <string.h>
#include <vector>

#include "fake_platform.h"
#include "resources/resource_ids.h"

namespace {

// Rows 10 pixels high in a client area 1005 by 64: header 0..12, strips
// 12..52 (four whole rows), live band 53..63.
struct ListingViewTest : ::testing::Test {
    DrawList list;
    void SetUp() override {
        ResetFakeWorld();
        listingCharHeight = 10;
        ListingLayout(1005, 64);
    }
    void Fill(int count) {
        recordCount = count;
        for (int i = 0; i < count; i++) recordStore.rows[i] = Record{};
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
        EXPECT_EQ(c.lastBottom, cells.back()->rect.bottom);
    }
}

// A differential flag without a fix still draws the position as no fix.
TEST_F(ListingViewTest, DifferentialWithoutAFixIsDrawnAsNoFix) {
    Fill(1);
    recordStore.rows[0].flags = RECORD_GPS_DIFF;
    std::vector<const DrawOp*> cells = PaintRows();
    ASSERT_EQ(7u, cells.size());
    EXPECT_TRUE(cells[1]->colour == ListingDarkRed && cells[2]->colour == ListingDarkRed);
    EXPECT_EQ(ColourGrey, cells[6]->colour);
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

TEST_F(ListingViewTest, RightClickRow) {
    struct { int y, top, row; } cases[] = {
        {12, 0, 0}, {21, 0, 0}, {22, 5, 6}, {5, 0, 0}, {1, 0, -1}, {1, 3, 2}, {51, 0, 3}};
    for (auto& c : cases) {
        listingTopIndex = c.top, ListingRightClick(c.y);
        EXPECT_EQ(c.row, listingPopupRow) << c.y << " " << c.top;
    }
    EXPECT_EQ(7, CountStatus("Listing popup menu"));
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
