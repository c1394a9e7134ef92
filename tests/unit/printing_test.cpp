// Printing's portable half: the plot's area, scale and squares on paper, and
// the listing's lines, header, page breaks and progress.
#include <gtest/gtest.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "printing/print_boxes.h"
#include "printing/print_listing.h"
#include "printing/print_plot.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"
#include "views/display_format.h"
#include "views/plot_geometry.h"

namespace {

TEST(PrintPlotTest, ValidatesEachModeWithItsMessages) {
    const int SHOWN = PRINT_FIT_DISPLAYED, TYPED = PRINT_SPECIFY, ALL = PRINT_FIT_ENTIRE;
    const char* const invalid = "Co-ordinates are invalid";
    const char* const nothing = "There is nothing to print";
    const char* const misfit = "The defined print area does not fit on the page";
    const struct {
        int mode, records, rows[3][2]; const char* fields[8];
        int confirm, answer, result; const char* message; int any; const char* question;
    } cases[] = {
        {SHOWN, 0, {}, {}, 0, 0, 0, "Plot window is not currently displayed", 0, 0},
        {TYPED, 0, {}, {"1 S", "1 E", "1 N", "2 E", "0", "0", "10", "10"}, 1, 1, 0, invalid, 0, 0},
        {TYPED, 0, {}, {"1 N", "2 E", "0", "2 E", "0", "0", "10", "10"}, 1, 1, 0, invalid, 0, 0},
        {TYPED, 0, {}, {"1 N", "1 E", "0", "2 E", "10", "0", "10", "10"}, 1, 1, 0, invalid, 0, 0},
        {TYPED, 0, {}, {"1 N", "1 E", "0", "2 E", "0", "10", "10", "10"}, 1, 1, 0, invalid, 0, 0},
        {TYPED, 0, {}, {"1 N", "1 E", "0", "2 E", "0", "0", "201", "10"}, 1, 1, 0, misfit, 0, 0},
        {TYPED, 0, {}, {"1 N", "1 E", "0", "2 E", "-1", "0", "10", "10"}, 1, 1, 0, misfit, 0, 0},
        {TYPED, 1, {{1, 1}}, {"1 N", "0", "0", "1 E", "0", "0", "9", "9"}, 1, 0, 0, 0, 1, 0},
        // The confirmation shows the map in the screen's format and the page in mm.
        {TYPED, 0, {}, {"31 30 15 S", "115 45 E", "31 40 S", "116 E", "10", "20", "190", "270"},
         1, 1, 1, 0, 0, "Map area:\n\t31 30 15.000 S, 115 45 0.000 E\n\t31 40 0.000 S, 116 0 "
                        "0.000 E\nPage area:\n\t10 x 20 mm\n\t190 x 270 mm\n\nIs this correct?"},
        {ALL, 1, {{5, 5}}, {}, 1, 1, 0, nothing, 0, 0},
        {ALL, 2, {{5, 7}, {9, 7}}, {}, 1, 1, 0, nothing, 0, 0},
        {ALL, 2, {{5, 7}, {9, 8}}, {}, 1, 1, 1, 0, 0, 0},
        {ALL, 3, {{5, 7}, {9, 9}, {5, 8}}, {}, 0, 0, 1, 0, 0, 0},
        {ALL, 3, {{5, 7}, {9, 9}, {6, 8}}, {}, 0, 0, 1, 0, 1, 0},
    };
    for (const auto& c : cases) {
        ResetFakeWorld();
        ScreenFormat = DisplayFormat{LATLONG_DEG_MIN_SEC, SIGN_NORTH_SOUTH, READING_0_0};
        fake.answers.push_back(c.answer);
        for (recordCount = 0; recordCount < c.records; recordCount++) {
            recordStore.rows[recordCount].latitude = c.rows[recordCount][0];
            recordStore.rows[recordCount].longitude = c.rows[recordCount][1];
        }
        for (int k = 0; k < 8; k++)
            snprintf(k < 4 ? printPlotBoxFields.map[k] : printPlotBoxFields.page[k - 4],
                     k < 4 ? PrintCoordinateTextSize : PrintPageTextSize, "%s",
                     c.fields[k] ? c.fields[k] : "");
        printArea = PrintArea{};
        printArea.printableWidth = 200, printArea.printableHeight = 280;
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        EXPECT_EQ(ValidatePrintArea(c.mode, c.confirm), c.result);
        EXPECT_EQ(fake.questions.size(), (c.confirm && !c.message) ? 1u : 0u);
        EXPECT_TRUE(!c.question || fake.questions == std::vector<std::string>{c.question});
        EXPECT_EQ(fake.messageBoxes.size(), c.message ? 1u : 0u);
        if (c.message) {
            EXPECT_EQ(fake.messageBoxes[0], c.message);
            EXPECT_EQ(fake.messageIcons[0], ICON_STOP);
            continue;
        }
        EXPECT_EQ(AnyRecordInPrintArea(), c.any);
        const PrintArea& a = printArea;  // the fit modes fill the printable area
        EXPECT_TRUE(c.mode == TYPED || (a.pageLeft == 0 && a.pageTop == 0 && a.pageRight == 200 &&
                                        a.pageBottom == 280));
    }

    // The displayed area is what plotArea (198 x 115 pixels) shows, held within the world.
    ResetFakeWorld();
    fake.windowExists[WINDOW_PLOT] = true;
    PlotLayout(200, 150);
    plotView.centreLatitude = 323990000, plotView.centreLongitude = -647950000;
    plotView.scale = 1000;
    EXPECT_EQ(ValidatePrintArea(PRINT_FIT_DISPLAYED, 0), 1);
    EXPECT_EQ(printArea.mapTopLatitude, PlotLatitudeLimit);
    EXPECT_EQ(printArea.mapBottomLatitude, 323990000 - 57500);
    EXPECT_EQ(printArea.mapLeftLongitude, -PlotLongitudeLimit);
    EXPECT_EQ(printArea.mapRightLongitude, -647950000 + 99000);
}

TEST(PrintPlotTest, PlacesRecordsOnPaperInTenthsOfAMillimetre) {
    // A 200 x 280 mm page and the area -115100000..-115000000 by 417500000..417800000, fitted
    // to the page, or specified as 10, 20 to 110, 220 mm on a printer offset by 5, 7.
    const struct {
        int keepAspect, typed, channel, latitude, longitude;
        int32_t latScale, lonScale, pageLeft, pageBottom, pageRight, pageTop;
        int squares; int32_t x, y;
    } cases[] = {
        {1, 0, 0, -115050000, 417650000, 150, 150, 0, 1067, 2000, 2800, 1, 1000, -1400},
        {0, 0, 0, -115050000, 417650000, 35, 150, 0, -28, 2000, 2800, 1, 1000, -1400},
        {0, 0, 0, -115000000, 417650000, 35, 150, 0, -28, 2000, 2800, 0, 0, 0},  // off the page
        {1, 1, 0, -115100000, 417500000, 300, 300, 95, 607, 1095, 2607, 1, 95, -2193},
        {1, 1, PLOT_ALL, -115000000, 417800000, 300, 300, 95, 607, 1095, 2607, 4, 1095, -1860},
        {1, 1, 0, -114999999, 417500000, 300, 300, 95, 607, 1095, 2607, 0, 0, 0},  // off the map
    };
    for (const auto& c : cases) {
        ResetFakeWorld();
        const int32_t pages[2][4] = {{0, 0, 200, 280}, {10, 20, 110, 220}}, *p = pages[c.typed];
        printArea = {-115000000, -115100000, 417500000, 417800000, p[0], p[1], p[2], p[3],
                     200, 280, 10, c.keepAspect, !c.typed};
        plotChannel = c.channel;
        const Record row = {0, 0, {0, 0, 0, 0}, c.latitude, c.longitude, 0};
        PrintScale scale = PlacePrintArea(c.typed ? 5 : 0, c.typed ? 7 : 0, 200, 280);
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        const PrintArea& a = printArea;
        EXPECT_EQ((std::vector<int32_t>{scale.latScale, scale.lonScale, a.pageLeft, a.pageBottom,
                                        a.pageRight, a.pageTop}),
                  (std::vector<int32_t>{c.latScale, c.lonScale, c.pageLeft, c.pageBottom,
                                        c.pageRight, c.pageTop}));
        PlotSquare squares[4];
        ASSERT_EQ(PrintRowSquares(row, scale, squares), c.squares);
        if (c.squares == 0) continue;
        // A dot of 10 is 1 mm square; All puts channel 1 below and left of the point.
        const PlotSquare& q = squares[0];
        const int32_t h = c.squares == 1 ? 5 : 10;
        EXPECT_EQ((std::vector<int32_t>{q.left + h, q.top + h, q.right, q.bottom}),
                  (std::vector<int32_t>{c.x, c.y, q.left + 10, q.top + 10}));
    }
}

class PrintListing : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();  // also every lookup entry 0.0
        ChannelLookup[0][115] = 45.1f;
        ChannelLookup[1][30] = 12.0f;
        ChannelLookup[3][10] = 3.9f;
        recordCount = 2;
        recordStore.rows[0] = {0, 0, {115, 30, 0, 10}, -115123456, 417087123, 0};
        recordStore.rows[1] = {RECORD_HAS_CHANNEL, 7, {115, 30, 0, 10}, -115123456, 417087123, 0};
    }
};

TEST_F(PrintListing, Lines) {
    struct Case { int32_t latLong, sign, reading, index; int result; const char* text; };
    const Case cases[] = {
        {1, 1, 1, 0, 1, "31.9787369 S \t115.8575363 E \t45.1 \t12.0 \t0.0 \t3.9"},
        {2, 2, 0, 1, 1, "-31 58.72427 \t+115 51.45205 \t45 \t12 \t0 \t3 \t7"},
        {4, 2, -1, 1, 1, "-115123456 \t417087123 \t115 \t30 \t0 \t10 \t7"},
        {1, 1, 1, -1, 0, "No data"}, {1, 1, 1, 2, 0, "No data"},
    };
    for (const Case& c : cases) {
        WriteSettingInt(KeyPrintListingLatLong, c.latLong);
        WriteSettingInt(KeyPrintListingSign, c.sign);
        WriteSettingInt(KeyPrintListingDecimalPlaces, c.reading);
        char out[PrintLineSize];
        EXPECT_EQ(c.result, FormatPrintLine(c.index, out)) << c.text;
        EXPECT_STREQ(c.text, out);
    }
}

TEST_F(PrintListing, Header) {
    fake.now = 1614675907u;  // Tue 2 March 2021 09:05:07; the fake's local time is UTC
    snprintf(dataFileName, PathSize, "C:\\Surveys\\route.DAT");
    snprintf(recordingParams.calFileName[2], PathSize, "C:\\Cal\\horn.CAL");
    const char* full[] = {"VELDOR Listing", "Recording started: Thu Jan 01 00:00:00 1970",
                          "Printed: Tue Mar 02 09:05:07 2021", "Data filename: route.DAT",
                          "Ch1 cal. filename: ", "Ch2 cal. filename: ",
                          "Ch3 cal. filename: horn.CAL", "Ch4 cal. filename: ", "Records taken: 2"};
    struct Case { int date, files, stats; std::vector<int> lines; int32_t first; const char* t1; };
    const Case cases[] = {
        {-1, 1, 1, {3, 5, 6, 8, 9, 10, 11, 12, 14}, 16, full[1]},  // -1: the defaults, all on
        {0, 0, 0, {3}, 5, nullptr},
        {0, 1, 1, {3, 5, 6, 7, 8, 9, 11}, 13, "No data filename"},
        {1, 0, 1, {3, 5, 6, 8}, 10, full[1]},
    };
    for (const Case& c : cases) {
        if (c.date >= 0) {
            dataFileName[0] = '\0';
            WriteSettingInt(KeyPrintListingDate, c.date);
            WriteSettingInt(KeyPrintListingFiles, c.files);
            WriteSettingInt(KeyPrintListingStats, c.stats);
        }
        PrintListingJob job = StartPrintListingJob(MeasurePrintLines(40, 2, 3000), 2400);
        PrintText texts[PrintHeaderMaxTexts];
        int count = BuildPrintHeader(&job, fake.now, texts, PrintHeaderMaxTexts);
        ASSERT_EQ((int)c.lines.size(), count);
        for (int i = 0; i < count; i++) {
            EXPECT_EQ(c.lines[i], texts[i].line) << i;
            EXPECT_EQ(i == 0 ? 1200 : 10, texts[i].x);
            EXPECT_EQ(i == 0, texts[i].centred);
            if (c.date < 0) {
                EXPECT_STREQ(full[i], texts[i].text);
            }
        }
        EXPECT_STREQ(c.t1, count > 1 ? texts[1].text : nullptr);
        EXPECT_EQ(c.first, job.line);
        EXPECT_EQ(c.date != 0 ? fake.now : 0u, job.lastUpdate);
    }
}

TEST_F(PrintListing, PageBreaks) {
    struct Case { int32_t firstLine, linesPerPage, records; std::vector<int32_t> starts; };
    const Case cases[] = {
        {16, 70, 200, {0, 55, 123, 191}},  // 70 - 16 + 1 on page 1, 70 - 2 after
        {5, 70, 66, {0}}, {5, 70, 67, {0, 66}},  // 66 rows end exactly at the foot
        {16, 16, 3, {0, 1}}, {20, 16, 3, {0, 1}},  // the header reaches or passes the foot
        {16, 2, 3, {0, 1, 2}},             // later pages hold at least their row
    };
    for (const Case& c : cases) {
        int32_t starts[8];
        int pages = PrintPageStarts(c.firstLine, c.linesPerPage, c.records, starts, 8);
        EXPECT_EQ(c.starts, std::vector<int32_t>(starts, starts + pages)) << c.firstLine;
    }
    PrintListingJob job = {42, 70, 2400, 70, 1, 0};  // a row on the foot: no final EndPage
    EXPECT_EQ(1, EndPrintRow(&job));
    EXPECT_EQ(0, PrintPageHoldsRows(job));
    EXPECT_EQ(1, PrintRowOpensPage(job));
}

TEST_F(PrintListing, Progress) {
    PrintListingJob job = StartPrintListingJob(MeasurePrintLines(40, 2, 3000), 2400);
    job.pageNumber = 12;
    char page[AbortBoxTextSize] = "", status[AbortBoxTextSize] = "";
    EXPECT_EQ(1, UpdatePrintProgress(&job, 0, 3, 100, page, status));
    EXPECT_STREQ("12", page);
    EXPECT_STREQ("  0% done", status);
    EXPECT_EQ(0, UpdatePrintProgress(&job, 1, 3, 100, page, status));  // the same second
    EXPECT_EQ(1, UpdatePrintProgress(&job, 2, 3, 101, page, status));
    EXPECT_STREQ(" 66% done", status);
    EXPECT_STREQ(" 99% done", FormatPrintProgressText(15999, 16000, status));  // never 100
}

}  // namespace
