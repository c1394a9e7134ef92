#include "printing/print_listing.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <vector>

#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"

namespace {

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
    // clang-format off
    struct Case { int32_t latLong, sign, reading, index; int result; const char* text; };
    const Case cases[] = {
        {1, 1, 1, 0, 1, "31.9787369 S \t115.8575363 E \t45.1 \t12.0 \t0.0 \t3.9"},
        {2, 2, 0, 1, 1, "-31 58.72427 \t+115 51.45205 \t45 \t12 \t0 \t3 \t7"},
        {4, 2, -1, 1, 1, "-115123456 \t417087123 \t115 \t30 \t0 \t10 \t7"},
        {1, 1, 1, -1, 0, "No data"}, {1, 1, 1, 2, 0, "No data"},
    };
    // clang-format on
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
    // clang-format off
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
    // clang-format on
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
    // clang-format off
    struct Case { int32_t firstLine, linesPerPage, records; std::vector<int32_t> starts; };
    const Case cases[] = {
        {16, 70, 200, {0, 55, 123, 191}},  // 70 - 16 + 1 on page 1, 70 - 2 after
        {5, 70, 66, {0}}, {5, 70, 67, {0, 66}},  // 66 rows end exactly at the foot
        {16, 16, 3, {0, 1}}, {20, 16, 3, {0, 1}},  // the header reaches or passes the foot
        {16, 2, 3, {0, 1, 2}},             // later pages hold at least their row
    };
    // clang-format on
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
