#include "storage/listing_file.h"

#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>

#include <string>

#include "base/busy.h"
#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"

namespace {

class ListingFile : public ::testing::Test {
protected:
    std::string path;

    void SetUp() override {
        ResetFakeWorld();
        UseDefaultCurves();
        ChannelLookup[1][30] = 12.0f;
        path = fake.settingsFile + ".txt";
        remove(path.c_str());
        fake.now = 1614675907u;  // Tue 2 March 2021 09:05:07; the fake's local time is UTC
        recordCount = 3;
        for (int i = 0; i < 3; i++)  // readings 45.1 12.0 0.0 3.9
            recordStore.rows[i] = {0, 0, {115, 30, 0, 10}, -115123456, 417096000, 0};
        recordStore.rows[0].time = 1614675907u;
        recordStore.rows[1].flags = RECORD_HAS_CHANNEL;
        recordStore.rows[1].accessoryChannel = 7;
        recordStore.rows[2] = {RECORD_GPS_FIX, 9, {115, 30, 0, 10}, 0, -1, 1640476741u};
        const char* tags[3] = {"first", "gate, north side", "second"};
        const int32_t records[3] = {1, 2, 1};
        for (int t = 0; t < 3; t++) {
            tagRecord[t] = records[t];
            snprintf(tagText[t], TagTextSize, "%s", tags[t]);
        }
        tagCount = 3;
    }

    void TearDown() override { remove(path.c_str()); }

    std::string Contents(const char* mode = "r") const { return ReadFileBytes(path, mode); }
};

TEST_F(ListingFile, Lines) {
    snprintf(dataFileName, PathSize, "C:\\Surveys\\route.DAT");
    EXPECT_EQ(1, WriteListingFile(path.c_str()));
    EXPECT_EQ(
        "VELDOR -Listing text file\n\nCreated from route.DAT\n"
        "Written Tue Mar 02 09:05:07 2021\n\n"
        "2/3/2021 09:05:07 31.9787369 S 115.8600006 E 45.1 12.0 0.0 3.9\n"
        "31.9787369 S 115.8600006 E 45.1 12.0 0.0 3.9 7 first\n"
        "25/12/2021 23:59:01 0.0000000 N 0.0000003 W 45.1 12.0 0.0 3.9 gate, north side\n",
        Contents());
#ifdef _WIN32
    EXPECT_EQ(0u, Contents("rb").find("VELDOR -Listing text file\r\n\r\nCreated"));
#endif
    std::string name = DisplayFileName(path.c_str());
    ASSERT_EQ(2u, fake.statusLines.size());
    EXPECT_EQ("Opening file '" + name + "'", fake.statusLines[0]);
    EXPECT_EQ("Data written to file '" + name + "'", fake.statusLines[1]);
    EXPECT_EQ(0, BusyCount());

    dataFileName[0] = '\0';
    remove(path.c_str());
    WriteListingFileSettings({{LATLONG_MILLISECONDS, SIGN_PLUS_MINUS, READING_RAW}, 3});
    EXPECT_EQ(1, WriteListingFile(path.c_str()));
    EXPECT_EQ(
        "VELDOR -Listing text file\n\nWritten Tue Mar 02 09:05:07 2021\n\n"
        "2/3/2021,09:05:07,-115123456,417096000,115,30,0,10\n"
        "-115123456,417096000,115,30,0,10,7,first\n"
        "25/12/2021,23:59:01,0,-1,115,30,0,10,gate, north side\n",
        Contents());

    char line[ListingLineSize];
    DisplayFormat f = {LATLONG_DEG_MIN, SIGN_NORTH_SOUTH, 2};
    EXPECT_STREQ("31 58.72427 S 115 51.60000 E 45 12 0 3 7 first\n",
                 FormatListingLine(1, f, ListingSeparatorChar(9), line));
}

TEST_F(ListingFile, NoDataNoNameAndAMissingFolderAreRefused) {
    recordCount = 0;
    EXPECT_EQ(0, WriteListingFile(path.c_str()));
    EXPECT_EQ("No data to save", fake.messageBoxes.back());
    EXPECT_EQ(ICON_STOP, fake.messageIcons.back());
    EXPECT_EQ("<missing>", Contents());

    recordCount = 1;
    EXPECT_EQ(0, MakeFileOk("", {{LATLONG_DEG, SIGN_PLUS_MINUS, READING_RAW}, 2}));
    EXPECT_EQ(ICON_STOP, fake.messageIcons.back());  // "No filename specified"
    std::string bad = fake.settingsFile + ".missing-folder/listing.txt";
    EXPECT_EQ(0, WriteListingFile(bad.c_str()));
    EXPECT_EQ("Error opening file,\nData not saved", fake.messageBoxes.back());
    EXPECT_EQ(ICON_EXCLAMATION, fake.messageIcons.back());
    EXPECT_EQ(0, BusyCount());
}

}  // namespace
