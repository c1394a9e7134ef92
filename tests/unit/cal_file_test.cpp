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

#ifdef _WIN32
#include <direct.h>
#include <process.h>
#include <sys/utime.h>
#define getpid _getpid
#else
#include <unistd.h>
#include <utime.h>
#endif

namespace {

uint32_t Bits(float value) { return FloatBits(value); }

// The name that status lines show without STATUS_FULL_PATH: what follows the
// last "\" (temporary paths have some under Windows).
std::string Shown(const std::string& path) {
    size_t slash = path.rfind('\\');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// tests/data/cal/, found from this source file's own path.
std::string DataFile(const char* name) {
    std::string here = __FILE__;
    size_t cut = here.find_last_of("/\\");
    std::string unitDir = here.substr(0, cut);                              // .../tests/unit
    std::string testsDir = unitDir.substr(0, unitDir.find_last_of("/\\"));  // .../tests
    return testsDir + "/data/cal/" + name;
}

std::string ReadBytes(const std::string& path, const char* mode = "rb") {
    std::string bytes;
    FILE* f = fopen(path.c_str(), mode);
    if (f == nullptr) return "<missing>";
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
    fclose(f);
    return bytes;
}

std::string TempPath(const char* name) { return TempTestPath(name); }

// Points that a read must not disturb (or invent from).
void FillWithMarkers(int channel) {
    CalTable[channel].count = 5;
    for (int n = 0; n < CalMaxPoints; n++) {
        CalTable[channel].points[n].power = 0xEE;
        CalTable[channel].points[n].spare[0] = 0xEE;
        CalTable[channel].points[n].spare[1] = 0xEE;
        CalTable[channel].points[n].spare[2] = 0xEE;
        CalTable[channel].points[n].value = -999.0f;
    }
}

class CalFile : public testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        ResetCalibration();
    }
};

// ---- ReadCalFile -----------------------------------------------------------------

TEST_F(CalFile, ReadsAGoodFileWithItsSpareBytes) {
    std::string path = DataFile("good.cal");
    ASSERT_EQ(ReadCalFile(path.c_str(), 2), 1);
    const CalTableData& t = CalTable[2];
    ASSERT_EQ(t.count, 3);
    EXPECT_EQ(t.points[0].power, 10);
    EXPECT_EQ(Bits(t.points[0].value), Bits(5.0f));
    EXPECT_EQ(t.points[0].spare[0], 0x11);
    EXPECT_EQ(t.points[0].spare[1], 0x22);
    EXPECT_EQ(t.points[0].spare[2], 0x33);
    EXPECT_EQ(t.points[1].power, 20);  // only the first byte is the power
    EXPECT_EQ(Bits(t.points[1].value), Bits(15.0f));
    EXPECT_EQ(t.points[2].power, 200);
    EXPECT_EQ(Bits(t.points[2].value), Bits(-2.5f));
    EXPECT_EQ(t.points[2].spare[0], 0xAA);
    EXPECT_EQ(t.points[2].spare[2], 0xCC);
    ASSERT_EQ(fake.statusLines.size(), 2u);
    EXPECT_EQ(fake.statusLines[0], "Reading calibration file '" + Shown(path) + "'");
    EXPECT_EQ(fake.statusLines[1], "Read calibration file '" + Shown(path) + "'");
    EXPECT_TRUE(fake.messageBoxes.empty());
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalFile, ReadDoesNotTouchTheLookup) {
    for (int i = 0; i < 256; i++) ChannelLookup[0][i] = 42.0f;
    ASSERT_EQ(ReadCalFile(DataFile("good.cal").c_str(), 0), 1);
    for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[0][i], 42.0f);
}

TEST_F(CalFile, DefaultCurveFileBuildsTheDefaultLookup) {
    ASSERT_EQ(ReadCalFile(DataFile("default_curve.cal").c_str(), 1), 1);
    ASSERT_EQ(CalTable[1].count, 2);
    BuildChannelLookup(1);
    EXPECT_EQ(Bits(ChannelLookup[1][1]), 0x3EC8C8CAu);
    EXPECT_EQ(Bits(ChannelLookup[1][127]), 0x42473737u);
    EXPECT_EQ(Bits(ChannelLookup[1][128]), 0x4248C8CAu);
    EXPECT_EQ(Bits(ChannelLookup[1][254]), 0x42C73737u);
    EXPECT_EQ(ChannelLookup[1][255], 100.0f);
}

TEST_F(CalFile, ZeroPointsReadsAsAnEmptyTableAndTheIdentity) {
    FillWithMarkers(0);
    ASSERT_EQ(ReadCalFile(DataFile("zero_points.cal").c_str(), 0), 1);
    EXPECT_EQ(CalTable[0].count, 0);
    BuildChannelLookup(0);
    EXPECT_EQ(ChannelLookup[0][255], 255.0f);
    EXPECT_EQ(ChannelLookup[0][0], 0.0f);
}

TEST_F(CalFile, NegativeCountReadsLikeZero) {
    FillWithMarkers(0);
    ASSERT_EQ(ReadCalFile(DataFile("negative_count.cal").c_str(), 0), 1);
    EXPECT_EQ(CalTable[0].count, 0);
}

TEST_F(CalFile, ShortFileGivesOnlyTheWholePointsItHolds) {
    FillWithMarkers(1);
    ASSERT_EQ(ReadCalFile(DataFile("truncated.cal").c_str(), 1), 1);
    ASSERT_EQ(CalTable[1].count, 2);
    EXPECT_EQ(CalTable[1].points[0].power, 1);
    EXPECT_EQ(CalTable[1].points[0].value, 1.0f);
    EXPECT_EQ(CalTable[1].points[1].power, 2);
    EXPECT_EQ(CalTable[1].points[1].value, 2.0f);
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalFile, FileEndingAfterTheMagicHasNoPoints) {
    FillWithMarkers(1);
    ASSERT_EQ(ReadCalFile(DataFile("truncated_no_count.cal").c_str(), 1), 1);
    EXPECT_EQ(CalTable[1].count, 0);
}

TEST_F(CalFile, StoringStopsAt256Points) {
    // Channel 3, the last table: a store past the end would be caught by
    // AddressSanitizer.
    ASSERT_EQ(ReadCalFile(DataFile("too_many_points.cal").c_str(), 3), 1);
    ASSERT_EQ(CalTable[3].count, 256);
    for (int n = 0; n < 256; n++) {
        EXPECT_EQ(CalTable[3].points[n].power, n);
        EXPECT_EQ(CalTable[3].points[n].value, (float)n);
    }
    BuildChannelLookup(3);
    EXPECT_EQ(ChannelLookup[3][200], 200.0f);
}

void ExpectIncorrectFormat(const char* name) {
    FillWithMarkers(2);
    std::string path = DataFile(name);
    EXPECT_EQ(ReadCalFile(path.c_str(), 2), 0) << name;
    ASSERT_EQ(fake.messageBoxes.size(), 1u) << name;
    EXPECT_EQ(fake.messageBoxes[0], "Calibration file '" + path + "'\nIncorrect format");
    EXPECT_EQ(fake.messageIcons[0], ICON_EXCLAMATION);
    EXPECT_EQ(CalTable[2].count, 5) << name;  // untouched
    EXPECT_EQ(CalTable[2].points[0].power, 0xEE) << name;
    ASSERT_EQ(fake.statusLines.size(), 1u);
    EXPECT_EQ(fake.statusLines[0], "Reading calibration file '" + Shown(path) + "'");
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalFile, WrongMagicFails) {
    ExpectIncorrectFormat("wrong_magic.cal");
}

TEST_F(CalFile, DataFileOfferedAsCalFails) {
    ExpectIncorrectFormat("wrong_magic_datafile.cal");
}

TEST_F(CalFile, FileTooShortForTheMagicFails) {
    ExpectIncorrectFormat("truncated_magic.cal");
}

TEST_F(CalFile, MissingFileFailsAndLeavesTheTable) {
    FillWithMarkers(0);
    std::string path = TempPath("absent.cal");
    remove(path.c_str());
    EXPECT_EQ(ReadCalFile(path.c_str(), 0), 0);
    ASSERT_EQ(fake.messageBoxes.size(), 1u);
    EXPECT_EQ(fake.messageBoxes[0], "Error opening calibration file\n'" + path + "'");
    EXPECT_EQ(fake.messageIcons[0], ICON_EXCLAMATION);
    EXPECT_TRUE(fake.statusLines.empty());
    EXPECT_EQ(CalTable[0].count, 5);
    EXPECT_EQ(fake.busy, 0);
}

// The status lines show the name after the last "\" unless STATUS_FULL_PATH
// is set; message boxes always show the whole path.
TEST_F(CalFile, StatusLinesShowTheDisplayName) {
    char folder[260];
    snprintf(folder, sizeof folder, "%sveldor-calfolder-%d", testing::TempDir().c_str(),
             (int)getpid());
#ifdef _WIN32
    _mkdir(folder);
#endif
    std::string path = std::string(folder) + "\\Survey A.CAL";
    FillWithMarkers(0);
    ASSERT_EQ(WriteCalFile(path.c_str(), 0), 1);
    EXPECT_EQ(fake.statusLines[0], "Writing calibration file 'Survey A.CAL'");
    EXPECT_EQ(fake.statusLines[1], "Written calibration file 'Survey A.CAL'");
    ASSERT_EQ(ReadCalFile(path.c_str(), 1), 1);
    EXPECT_EQ(fake.statusLines[2], "Reading calibration file 'Survey A.CAL'");
    EXPECT_EQ(fake.statusLines[3], "Read calibration file 'Survey A.CAL'");
    statusFlags |= STATUS_FULL_PATH;
    ASSERT_EQ(ReadCalFile(path.c_str(), 1), 1);
    EXPECT_EQ(fake.statusLines[4], "Reading calibration file '" + path + "'");
    remove(path.c_str());
#ifdef _WIN32
    _rmdir(folder);
#endif
}

// ---- WriteCalFile ----------------------------------------------------------------

TEST_F(CalFile, RoundTripKeepsEveryByteAndTheSpareBytes) {
    for (const char* name : {"good.cal", "default_curve.cal", "zero_points.cal"}) {
        ResetFakeWorld();
        std::string source = DataFile(name);
        ASSERT_EQ(ReadCalFile(source.c_str(), 1), 1) << name;
        std::string copy = TempPath("copy.cal");
        ASSERT_EQ(WriteCalFile(copy.c_str(), 1), 1) << name;
        EXPECT_EQ(ReadBytes(copy), ReadBytes(source)) << name;
        ASSERT_EQ(fake.statusLines.size(), 4u);
        EXPECT_EQ(fake.statusLines[2], "Writing calibration file '" + Shown(copy) + "'");
        EXPECT_EQ(fake.statusLines[3], "Written calibration file '" + Shown(copy) + "'");
        EXPECT_EQ(fake.busy, 0);
        remove(copy.c_str());
    }
}

TEST_F(CalFile, WriterLaysOutTheFormatFieldByField) {
    CalTable[0].count = 2;
    CalTable[0].points[0] = CalPoint{7, {0, 0, 0}, 1.5f};
    CalTable[0].points[1] = CalPoint{250, {1, 2, 3}, -0.25f};
    std::string path = TempPath("layout.cal");
    ASSERT_EQ(WriteCalFile(path.c_str(), 0), 1);
    std::string expected("[VELDOR - cal file v1.0]\0", 25);
    expected += std::string("\x02\x00\x00\x00", 4);
    expected += std::string("\x07\x00\x00\x00\x00\x00\xC0\x3F", 8);
    expected += std::string("\xFA\x01\x02\x03\x00\x00\x80\xBE", 8);
    EXPECT_EQ(ReadBytes(path), expected);
    EXPECT_EQ(ReadBytes(path).size(), 29u + 8u * 2u);
    remove(path.c_str());
}

TEST_F(CalFile, WriterTruncatesAnOldLongerFile) {
    std::string path = TempPath("shrink.cal");
    ASSERT_EQ(ReadCalFile(DataFile("too_many_points.cal").c_str(), 0), 1);
    ASSERT_EQ(WriteCalFile(path.c_str(), 0), 1);
    EXPECT_EQ(ReadBytes(path).size(), 29u + 8u * 256u);
    CalTable[0].count = 0;
    ASSERT_EQ(WriteCalFile(path.c_str(), 0), 1);
    EXPECT_EQ(ReadBytes(path), ReadBytes(DataFile("zero_points.cal")));
    remove(path.c_str());
}

TEST_F(CalFile, WriterNeverStoresPast256Points) {
    CalTable[3].count = 300;
    for (int n = 0; n < 256; n++) CalTable[3].points[n] = CalPoint{(uint8_t)n, {0, 0, 0}, 1.0f};
    std::string path = TempPath("cut.cal");
    ASSERT_EQ(WriteCalFile(path.c_str(), 3), 1);
    std::string bytes = ReadBytes(path);
    ASSERT_EQ(bytes.size(), 29u + 8u * 256u);
    EXPECT_EQ(bytes.substr(25, 4), std::string("\x00\x01\x00\x00", 4));
    remove(path.c_str());
}

TEST_F(CalFile, WriteFailsWhenTheFileCannotBeOpened) {
    std::string path = TempPath("no-such-folder/x.cal");
    EXPECT_EQ(WriteCalFile(path.c_str(), 0), 0);
    ASSERT_EQ(fake.messageBoxes.size(), 1u);
    EXPECT_EQ(fake.messageBoxes[0], "Error opening file\n'" + path + "'");
    EXPECT_EQ(fake.messageIcons[0], ICON_EXCLAMATION);
    EXPECT_TRUE(fake.statusLines.empty());
    EXPECT_EQ(fake.busy, 0);
}

// ---- CopyCalibrationToText -------------------------------------------------------

std::string IdentityBlock() {
    std::string text = "Index\tValue\n";
    char line[32];
    for (int i = 0; i < 256; i++) {
        snprintf(line, sizeof line, "%03d\t%d.000\n", i, i);
        text += line;
    }
    return text;
}

TEST_F(CalFile, TextCopyOfAnEmptyCurveWithNoFileName) {
    std::string path = TempPath("empty.txt");
    fake.chosenFiles.push_back(path);
    CalTable[0].count = 0;
    BuildChannelLookup(0);
    CopyCalibrationToText(0);
    ASSERT_EQ(fake.chooseModes.size(), 1u);
    EXPECT_EQ(fake.chooseModes[0], CHOOSE_SAVE_TEXT);
    ASSERT_EQ(fake.statusLines.size(), 1u);
    EXPECT_EQ(fake.statusLines[0], "Calibration text file (Ch1)");
    // fake.now is 1700000000, broken down by the fake as UTC.
    std::string expected =
        "VELDOR calibration data for channel 1\n"
        "Created Tue Nov 14 22:13:20 2023\n"
        "\n"
        "Calibration file \n"
        "Power\tValue\n"
        "\n"
        "Lookup table created: \n"
        "\n" +
        IdentityBlock();
    EXPECT_EQ(ReadBytes(path, "r"), expected);
    EXPECT_NE(ReadBytes(path, "r").find("\n007\t7.000\n"), std::string::npos);
    EXPECT_EQ(fake.busy, 0);
    remove(path.c_str());
}

TEST_F(CalFile, TextCopyWithAFileShowsItsLastEditedTime) {
    std::string cal = TempPath("edited.cal");
    {
        std::string bytes = ReadBytes(DataFile("good.cal"));
        FILE* f = fopen(cal.c_str(), "wb");
        ASSERT_NE(f, nullptr);
        fwrite(bytes.data(), 1, bytes.size(), f);
        fclose(f);
    }
#ifdef _WIN32
    struct _utimbuf times = {1614675907, 1614675907};
    ASSERT_EQ(_utime(cal.c_str(), &times), 0);
#else
    struct utimbuf times = {1614675907, 1614675907};
    ASSERT_EQ(utime(cal.c_str(), &times), 0);
#endif
    WriteSetting(KeyCalibrationFile[2], cal.c_str());
    ASSERT_EQ(ReadCalFile(cal.c_str(), 2), 1);
    BuildChannelLookup(2);
    fake.now = 1614675907u + 86400u;
    fake.statusLines.clear();
    std::string path = TempPath("edited.txt");
    fake.chosenFiles.push_back(path);
    CopyCalibrationToText(2);
    EXPECT_EQ(fake.statusLines, std::vector<std::string>{"Calibration text file(Ch3)"});
    std::string text = ReadBytes(path, "r");
    std::string head =
        "VELDOR calibration data for channel 3\n"
        "Created Wed Mar 03 09:05:07 2021\n"
        "\n"
        "Calibration file " +
        cal +
        "\n"
        "Last edited Tue Mar 02 09:05:07 2021\n"
        "\n"
        "Power\tValue\n"
        "010\t5.000\n"
        "020\t15.000\n"
        "200\t-2.500\n"
        "\n"
        "Lookup table created: Tue Mar 02 09:05:07 2021\n"
        "\n"
        "\n"
        "Index\tValue\n"
        "000\t5.000\n";
    EXPECT_EQ(text.substr(0, head.size()), head);
    EXPECT_NE(text.find("\n011\t6.000\n"), std::string::npos);
    EXPECT_NE(text.find("\n019\t14.000\n"), std::string::npos);
    EXPECT_NE(text.find("\n100\t7.222\n"), std::string::npos);  // 15 + 80/180 x -17.5
    size_t last = text.rfind("255\t-2.500\n");
    ASSERT_NE(last, std::string::npos);
    EXPECT_EQ(last + strlen("255\t-2.500\n"), text.size());
    // 256 index lines.
    size_t lines = 0;
    for (char ch : text.substr(text.find("Index\tValue\n")))
        if (ch == '\n') lines++;
    EXPECT_EQ(lines, 257u);
    remove(path.c_str());
    remove(cal.c_str());
}

TEST_F(CalFile, TextCopyNamesAMissingFileWithoutLastEdited) {
    std::string cal = TempPath("gone.cal");
    remove(cal.c_str());
    WriteSetting(KeyCalibrationFile[3], cal.c_str());
    std::string path = TempPath("gone.txt");
    fake.chosenFiles.push_back(path);
    CopyCalibrationToText(3);
    std::string text = ReadBytes(path, "r");
    EXPECT_EQ(fake.statusLines, std::vector<std::string>{"Calibration text file (Ch4)"});
    std::string head =
        "VELDOR calibration data for channel 4\n"
        "Created Tue Nov 14 22:13:20 2023\n"
        "\n"
        "Calibration file " +
        cal +
        "\n"
        "Power\tValue\n"
        "\n"
        "Lookup table created: " +
        cal +
        "\n"
        "\n"
        "Index\tValue\n";
    EXPECT_EQ(text.substr(0, head.size()), head);
    remove(path.c_str());
}

TEST_F(CalFile, TextCopyMenuLinesAndCancel) {
    const char* lines[4] = {"Calibration text file (Ch1)", "Calibration text file (Ch2)",
                            "Calibration text file(Ch3)", "Calibration text file (Ch4)"};
    for (int c = 0; c < 4; c++) {
        fake.statusLines.clear();
        CopyCalibrationToText(c);  // no file scripted: the chooser is cancelled
        EXPECT_EQ(fake.statusLines, (std::vector<std::string>{lines[c], "No file name selected"}));
    }
    EXPECT_EQ(fake.chooseModes.size(), 4u);
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalFile, TextCopyThatCannotBeOpened) {
    fake.chosenFiles.push_back(TempPath("no-such-folder/x.txt"));
    CopyCalibrationToText(1);
    EXPECT_EQ(fake.statusLines,
              (std::vector<std::string>{"Calibration text file (Ch2)", "Error opening file"}));
    EXPECT_TRUE(fake.messageBoxes.empty());
    EXPECT_EQ(fake.busy, 0);
}

}  // namespace
