#include "storage/cal_file.h"

#include <gtest/gtest.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "views/display_format.h"

#ifdef _WIN32
#include <direct.h>
#include <sys/utime.h>
#define utimbuf _utimbuf
#define utime _utime
#else
#include <utime.h>
#endif

namespace {

std::string DataFile(const char* name) {
    return TestDataPath(std::string("cal/") + name);
}

std::string Shown(const std::string& path) {
    return DisplayFileName(path.c_str());
}

// Points that a read must not disturb (or invent from).
void FillWithMarkers(int channel) {
    CalTable[channel].count = 5;
    for (int n = 0; n < CalMaxPoints; n++)
        CalTable[channel].points[n] = CalPoint{0xEE, {0xEE, 0xEE, 0xEE}, -999.0f};
}

class CalFile : public testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        ResetCalibration();
    }
};

// ---- ReadCalFile -----------------------------------------------------------------

TEST_F(CalFile, ReadsEachFileWithItsSpareBytesAndLeavesTheLookup) {
    const struct {
        const char* name;
        int channel;
        int count;
        std::vector<CalPoint> points;  // the first ones
    } cases[] = {
        {"good.cal",  // only the first byte of a point is the power
         2,
         3,
         {{10, {0x11, 0x22, 0x33}, 5.0f},
          {20, {0, 0, 0}, 15.0f},
          {200, {0xAA, 0xBB, 0xCC}, -2.5f}}},
        {"default_curve.cal", 1, 2, {{0, {0, 0, 0}, 0.0f}, {255, {0, 0, 0}, 100.0f}}},
        {"zero_points.cal", 0, 0, {}},
        {"negative_count.cal", 0, 0, {}},  // reads like 0
        // Short: only the whole points it holds.
        {"truncated.cal", 1, 2, {{1, {0, 0, 0}, 1.0f}, {2, {0, 0, 0}, 2.0f}}},
        {"truncated_no_count.cal", 1, 0, {}},
        // 300 points: storing stops at 256. Channel 3 is the last table: a
        // store past its end would be caught by AddressSanitizer.
        {"too_many_points.cal", 3, 256, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ResetFakeWorld();
        FillWithMarkers(c.channel);
        for (int i = 0; i < 256; i++) ChannelLookup[c.channel][i] = 42.0f;
        std::string path = DataFile(c.name);
        ASSERT_EQ(ReadCalFile(path.c_str(), c.channel), 1);
        const CalTableData& t = CalTable[c.channel];
        ASSERT_EQ(t.count, c.count);
        for (size_t n = 0; n < c.points.size(); n++) {
            EXPECT_EQ(t.points[n].power, c.points[n].power) << n;
            EXPECT_EQ(0, memcmp(t.points[n].spare, c.points[n].spare, 3)) << n;
            EXPECT_EQ(FloatBits(t.points[n].value), FloatBits(c.points[n].value)) << n;
        }
        for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[c.channel][i], 42.0f);
        EXPECT_EQ(fake.statusLines,
                  std::vector<std::string>({"Reading calibration file '" + Shown(path) + "'",
                                            "Read calibration file '" + Shown(path) + "'"}));
        EXPECT_TRUE(fake.messageBoxes.empty());
        EXPECT_EQ(fake.busy, 0);
    }
    for (int n = 0; n < 256; n++) {
        EXPECT_EQ(CalTable[3].points[n].power, n);
        EXPECT_EQ(CalTable[3].points[n].value, (float)n);
    }
}

TEST_F(CalFile, BadOrMissingFilesFailAndLeaveTheTable) {
    const std::string missing = TempTestPath("absent.cal");
    remove(missing.c_str());
    // The wrong magic, a data file offered as one, too short for the magic.
    for (const char* name :
         {"wrong_magic.cal", "wrong_magic_datafile.cal", "truncated_magic.cal", ""}) {
        SCOPED_TRACE(name);
        ResetFakeWorld();
        FillWithMarkers(2);
        std::string path = name[0] != '\0' ? DataFile(name) : missing;
        EXPECT_EQ(ReadCalFile(path.c_str(), 2), 0);
        EXPECT_EQ(fake.messageBoxes,
                  std::vector<std::string>{name[0] != '\0'
                                               ? "Calibration file '" + path + "'\nIncorrect format"
                                               : "Error opening calibration file\n'" + path + "'"});
        EXPECT_EQ(fake.messageIcons, std::vector<int>{ICON_EXCLAMATION});
        EXPECT_EQ(CalTable[2].count, 5);  // untouched
        EXPECT_EQ(CalTable[2].points[0].power, 0xEE);
        EXPECT_EQ(fake.statusLines.size(), name[0] != '\0' ? 1u : 0u);
        EXPECT_EQ(fake.busy, 0);
    }
}

// ---- WriteCalFile ----------------------------------------------------------------

TEST_F(CalFile, WriterLaysOutTheFormatAndReplacesTheFile) {
    CalTable[0].count = 2;
    CalTable[0].points[0] = CalPoint{7, {0, 0, 0}, 1.5f};
    CalTable[0].points[1] = CalPoint{250, {1, 2, 3}, -0.25f};
    std::string path = TempTestPath("layout.cal");
    ASSERT_EQ(WriteCalFile(path.c_str(), 0), 1);
    EXPECT_EQ(ReadFileBytes(path), std::string("[VELDOR - cal file v1.0]\0"
                                               "\x02\x00\x00\x00"
                                               "\x07\x00\x00\x00\x00\x00\xC0\x3F"
                                               "\xFA\x01\x02\x03\x00\x00\x80\xBE",
                                               25 + 4 + 16));
    // An old longer file is cut to the new one.
    ASSERT_EQ(ReadCalFile(DataFile("too_many_points.cal").c_str(), 0), 1);
    ASSERT_EQ(WriteCalFile(path.c_str(), 0), 1);
    EXPECT_EQ(ReadFileBytes(path).size(), 29u + 8u * 256u);
    // A count above 256 never writes past the table.
    CalTable[3].count = 300;
    for (int n = 0; n < 256; n++) CalTable[3].points[n] = CalPoint{(uint8_t)n, {0, 0, 0}, 1.0f};
    ASSERT_EQ(WriteCalFile(path.c_str(), 3), 1);
    std::string bytes = ReadFileBytes(path);
    ASSERT_EQ(bytes.size(), 29u + 8u * 256u);
    EXPECT_EQ(bytes.substr(25, 4), std::string("\x00\x01\x00\x00", 4));
    remove(path.c_str());

    fake.statusLines.clear();
    path = TempTestPath("no-such-folder/x.cal");
    EXPECT_EQ(WriteCalFile(path.c_str(), 0), 0);
    EXPECT_EQ(fake.messageBoxes, std::vector<std::string>{"Error opening file\n'" + path + "'"});
    EXPECT_EQ(fake.messageIcons[0], ICON_EXCLAMATION);
    EXPECT_TRUE(fake.statusLines.empty());
    EXPECT_EQ(fake.busy, 0);
}

// ---- CopyCalibrationToText -------------------------------------------------------

TEST_F(CalFile, TextCopyOfAnEmptyCurveWithNoFileName) {
    std::string path = TempTestPath("empty.txt");
    fake.chosenFiles.push_back(path);
    CalTable[0].count = 0;
    BuildChannelLookup(0);
    CopyCalibrationToText(0);
    EXPECT_EQ(fake.chooseModes, std::vector<int>{CHOOSE_SAVE_TEXT});
    EXPECT_EQ(fake.statusLines, std::vector<std::string>{"Calibration text file (Ch1)"});
    // fake.now is 1700000000, broken down by the fake as UTC.
    std::string expected =
        "VELDOR calibration data for channel 1\nCreated Tue Nov 14 22:13:20 2023\n\n"
        "Calibration file \nPower\tValue\n\nLookup table created: \n\nIndex\tValue\n";
    char line[32];
    for (int i = 0; i < 256; i++) {
        snprintf(line, sizeof line, "%03d\t%d.000\n", i, i);
        expected += line;
    }
    EXPECT_EQ(ReadFileBytes(path, "r"), expected);
    EXPECT_EQ(fake.busy, 0);
    remove(path.c_str());
}

TEST_F(CalFile, TextCopyMenuLinesCancelAndFailure) {
    const char* lines[4] = {"Calibration text file (Ch1)", "Calibration text file (Ch2)",
                            "Calibration text file(Ch3)", "Calibration text file (Ch4)"};
    for (int c = 0; c < 4; c++) {
        fake.statusLines.clear();
        CopyCalibrationToText(c);  // no file scripted: the chooser is cancelled
        EXPECT_EQ(fake.statusLines, (std::vector<std::string>{lines[c], "No file name selected"}));
    }
    EXPECT_EQ(fake.chooseModes.size(), 4u);
    fake.statusLines.clear();
    fake.chosenFiles.push_back(TempTestPath("no-such-folder/x.txt"));
    CopyCalibrationToText(1);
    EXPECT_EQ(fake.statusLines,
              (std::vector<std::string>{"Calibration text file (Ch2)", "Error opening file"}));
    EXPECT_TRUE(fake.messageBoxes.empty());
    EXPECT_EQ(fake.busy, 0);
}

}  // namespace
