#include "survey/cal_lookup.h"

#include <gtest/gtest.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "shell/app_paths.h"
#include "storage/settings_file.h"

#ifdef _WIN32
#include <direct.h>
#include <process.h>
#define getpid _getpid
#else
#include <unistd.h>
#endif

namespace {

uint32_t Bits(float value) { return FloatBits(value); }

float FromBits(uint32_t bits) {
    float value;
    memcpy(&value, &bits, sizeof value);
    return value;
}

// The name that status lines show without STATUS_FULL_PATH: what follows the
// last "\" (temporary paths have some under Windows).
std::string Shown(const std::string& path) {
    size_t slash = path.rfind('\\');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

void SetCurve(int channel, const std::vector<std::pair<int, float>>& points) {
    CalTable[channel].count = (int32_t)points.size();
    for (size_t n = 0; n < points.size(); n++) {
        CalTable[channel].points[n].power = (uint8_t)points[n].first;
        CalTable[channel].points[n].value = points[n].second;
    }
}

// The lookup interpolation for one entry, with every intermediate forced
// through a float in memory: an independent witness of the single-precision
// rounding that BuildChannelLookup must give.
float Interpolate(int i, int prevIndex, float prevValue, int p, float v) {
    volatile float fi = (float)i;
    volatile float fprev = (float)prevIndex;
    volatile float fp = (float)p;
    volatile float di = fi - fprev;
    volatile float dp = fp - fprev;
    volatile float ratio = di / dp;
    volatile float dv = v - prevValue;
    volatile float product = ratio * dv;
    volatile float sum = product + prevValue;
    return sum;
}

class CalLookup : public testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        ResetCalibration();
    }
};

// ---- BuildChannelLookup ----------------------------------------------------------

TEST_F(CalLookup, DefaultCurveHasTheBitsOfTheSpec) {
    SetCurve(0, {{0, 0.0f}, {255, 100.0f}});
    BuildChannelLookup(0);
    const float* e = ChannelLookup[0];
    EXPECT_EQ(Bits(e[0]), 0x00000000u);
    EXPECT_EQ(Bits(e[1]), 0x3EC8C8CAu);
    EXPECT_EQ(Bits(e[127]), 0x42473737u);
    EXPECT_EQ(Bits(e[128]), 0x4248C8CAu);
    EXPECT_EQ(Bits(e[254]), 0x42C73737u);
    EXPECT_EQ(Bits(e[255]), Bits(100.0f));
    EXPECT_EQ(Bits(e[255]), 0x42C80000u);
    for (int i = 1; i < 255; i++)
        EXPECT_EQ(Bits(e[i]), Bits(Interpolate(i, 0, 0.0f, 255, 100.0f))) << "entry " << i;
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalLookup, TwoPointCurveIsFlatOutsideAndLinearBetween) {
    SetCurve(1, {{10, 5.0f}, {20, 15.0f}});
    BuildChannelLookup(1);
    const float* e = ChannelLookup[1];
    for (int i = 0; i <= 10; i++) EXPECT_EQ(Bits(e[i]), Bits(5.0f)) << "entry " << i;
    EXPECT_EQ(Bits(e[11]), Bits(6.0f));
    EXPECT_EQ(Bits(e[11]), 0x40C00000u);
    EXPECT_EQ(Bits(e[15]), Bits(10.0f));
    EXPECT_EQ(Bits(e[15]), 0x41200000u);
    EXPECT_EQ(Bits(e[19]), Bits(14.0f));
    EXPECT_EQ(Bits(e[19]), 0x41600000u);
    for (int i = 11; i < 20; i++)
        EXPECT_EQ(Bits(e[i]), Bits(Interpolate(i, 10, 5.0f, 20, 15.0f))) << "entry " << i;
    for (int i = 20; i <= 255; i++) EXPECT_EQ(Bits(e[i]), 0x41700000u) << "entry " << i;
}

TEST_F(CalLookup, CountZeroIsTheIdentity) {
    // Something else first, so that the identity is really written.
    for (int i = 0; i < 256; i++) ChannelLookup[2][i] = -1.0f;
    CalTable[2].count = 0;
    BuildChannelLookup(2);
    for (int i = 0; i < 256; i++) EXPECT_EQ(Bits(ChannelLookup[2][i]), Bits((float)i)) << i;
    EXPECT_EQ(ChannelLookup[2][255], 255.0f);  // not 100.0
    EXPECT_EQ(ChannelLookup[2][7], 7.0f);
    EXPECT_EQ(CalTable[2].count, 0);
}

TEST_F(CalLookup, OnePointFillsEveryEntry) {
    SetCurve(0, {{100, 7.5f}});
    BuildChannelLookup(0);
    for (int i = 0; i < 256; i++) EXPECT_EQ(Bits(ChannelLookup[0][i]), Bits(7.5f)) << i;
}

TEST_F(CalLookup, APointsOwnEntryHoldsItsValueBitForBit) {
    const float odd = FromBits(0x3F9E0652u);  // 1.2345679...
    SetCurve(0, {{3, 0.1f}, {77, odd}, {201, -1e-7f}});
    BuildChannelLookup(0);
    EXPECT_EQ(Bits(ChannelLookup[0][3]), Bits(0.1f));
    EXPECT_EQ(Bits(ChannelLookup[0][77]), 0x3F9E0652u);
    EXPECT_EQ(Bits(ChannelLookup[0][201]), Bits(-1e-7f));
    for (int i = 0; i < 3; i++) EXPECT_EQ(Bits(ChannelLookup[0][i]), Bits(0.1f));
    for (int i = 202; i < 256; i++) EXPECT_EQ(Bits(ChannelLookup[0][i]), Bits(-1e-7f));
    for (int i = 4; i < 77; i++)
        EXPECT_EQ(Bits(ChannelLookup[0][i]), Bits(Interpolate(i, 3, 0.1f, 77, odd))) << i;
    for (int i = 78; i < 201; i++)
        EXPECT_EQ(Bits(ChannelLookup[0][i]), Bits(Interpolate(i, 77, odd, 201, -1e-7f))) << i;
}

TEST_F(CalLookup, NeighbouringPowersHaveNothingBetweenThem) {
    SetCurve(0, {{10, 1.25f}, {11, 9.5f}});
    BuildChannelLookup(0);
    EXPECT_EQ(ChannelLookup[0][9], 1.25f);
    EXPECT_EQ(ChannelLookup[0][10], 1.25f);
    EXPECT_EQ(ChannelLookup[0][11], 9.5f);
    EXPECT_EQ(ChannelLookup[0][12], 9.5f);
}

TEST_F(CalLookup, FirstAtZeroAndLastAt255HaveNoFlatEnds) {
    SetCurve(3, {{0, -20.0f}, {128, 0.0f}, {255, -90.0f}});
    BuildChannelLookup(3);
    EXPECT_EQ(ChannelLookup[3][0], -20.0f);
    EXPECT_EQ(ChannelLookup[3][128], 0.0f);
    EXPECT_EQ(ChannelLookup[3][255], -90.0f);
    // Rising then falling, through negative values.
    EXPECT_EQ(Bits(ChannelLookup[3][64]), Bits(Interpolate(64, 0, -20.0f, 128, 0.0f)));
    EXPECT_EQ(Bits(ChannelLookup[3][200]), Bits(Interpolate(200, 128, 0.0f, 255, -90.0f)));
    EXPECT_LT(ChannelLookup[3][200], ChannelLookup[3][199]);
}

TEST_F(CalLookup, FallingCurveInterpolatesLikeAnyOther) {
    SetCurve(0, {{50, 30.0f}, {150, -70.0f}});
    BuildChannelLookup(0);
    for (int i = 51; i < 150; i++) {
        EXPECT_EQ(Bits(ChannelLookup[0][i]), Bits(Interpolate(i, 50, 30.0f, 150, -70.0f))) << i;
        EXPECT_LT(ChannelLookup[0][i], ChannelLookup[0][i - 1]) << i;
    }
    EXPECT_EQ(ChannelLookup[0][100], -20.0f);
}

TEST_F(CalLookup, EqualValuesGiveThatValueExactlyBetween) {
    SetCurve(0, {{20, 3.3f}, {220, 3.3f}});
    BuildChannelLookup(0);
    for (int i = 0; i < 256; i++) EXPECT_EQ(Bits(ChannelLookup[0][i]), Bits(3.3f)) << i;
}

TEST_F(CalLookup, FullTableOf256PointsIsCopiedAsItIs) {
    CalTable[1].count = 256;
    for (int i = 0; i < 256; i++) {
        CalTable[1].points[i].power = (uint8_t)i;
        CalTable[1].points[i].value = 1000.0f - 3.25f * (float)i;
    }
    BuildChannelLookup(1);
    for (int i = 0; i < 256; i++)
        EXPECT_EQ(Bits(ChannelLookup[1][i]), Bits(CalTable[1].points[i].value)) << i;
}

TEST_F(CalLookup, TableOutOfOrderGivesAShiftedCurve) {
    SetCurve(0, {{10, 1.0f}, {5, 2.0f}, {20, 3.0f}});
    BuildChannelLookup(0);
    const float* e = ChannelLookup[0];
    for (int i = 0; i <= 10; i++) EXPECT_EQ(e[i], 1.0f) << i;
    EXPECT_EQ(e[11], 2.0f);  // the point of power 5 goes into the next free entry
    for (int i = 12; i < 20; i++)
        EXPECT_EQ(Bits(e[i]), Bits(Interpolate(i, 11, 2.0f, 20, 3.0f))) << i;
    for (int i = 20; i < 256; i++) EXPECT_EQ(e[i], 3.0f) << i;
}

TEST_F(CalLookup, RepeatedPowerTakesTheNextEntry) {
    SetCurve(0, {{10, 1.0f}, {10, 2.0f}});
    BuildChannelLookup(0);
    EXPECT_EQ(ChannelLookup[0][10], 1.0f);
    EXPECT_EQ(ChannelLookup[0][11], 2.0f);
    EXPECT_EQ(ChannelLookup[0][255], 2.0f);
}

TEST_F(CalLookup, CountAbove256IsCutAndStoredBack) {
    CalTable[0].count = 1000;
    for (int i = 0; i < 256; i++) {
        CalTable[0].points[i].power = (uint8_t)i;
        CalTable[0].points[i].value = (float)(2 * i);
    }
    BuildChannelLookup(0);
    EXPECT_EQ(CalTable[0].count, 256);
    EXPECT_EQ(ChannelLookup[0][255], 510.0f);
}

// Powers that run backwards near the end carry the entry index past 255: the
// build stops at the end of the channel's entries and touches no other one.
TEST_F(CalLookup, BuildStopsAtTheEndOfTheChannelsEntries) {
    for (int c = 0; c < 4; c++)
        for (int i = 0; i < 256; i++) ChannelLookup[c][i] = -12345.0f;
    for (int c = 0; c < 4; c++) {
        CalTable[c].count = 256;
        CalTable[c].points[0].power = 255;  // fills 0..255 at once
        CalTable[c].points[0].value = 1.0f;
        for (int n = 1; n < 256; n++) {
            CalTable[c].points[n].power = (uint8_t)(255 - n);
            CalTable[c].points[n].value = 50.0f + (float)n;
        }
    }
    // Channel 3 is the last row of the array: a write past it would be caught
    // by AddressSanitizer, one past channel 1 would show in channel 2.
    BuildChannelLookup(1);
    for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[1][i], 1.0f) << i;
    for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[2][i], -12345.0f) << i;
    for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[0][i], -12345.0f) << i;
    BuildChannelLookup(3);
    for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[3][i], 1.0f) << i;

    // A last point at 255 followed by more points: the same stop.
    SetCurve(2, {{0, 0.0f}, {255, 100.0f}, {3, 7.0f}, {4, 8.0f}});
    BuildChannelLookup(2);
    EXPECT_EQ(ChannelLookup[2][255], 100.0f);
    EXPECT_EQ(ChannelLookup[3][0], 1.0f);
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalLookup, ChannelOutsideZeroToThreeIsIgnored) {
    BuildChannelLookup(-1);
    BuildChannelLookup(4);
    for (int c = 0; c < 4; c++)
        for (int i = 0; i < 256; i++) EXPECT_EQ(Bits(ChannelLookup[c][i]), 0u);
}

// ---- LoadStartupCalibration ------------------------------------------------------

// A calibration file written byte by byte in the temporary folder.
struct TempCal {
    std::string path;
    TempCal(const std::string& name, int count, const std::vector<std::pair<int, float>>& points) {
        char buffer[512];
        snprintf(buffer, sizeof buffer, "%sveldor-cal-%d-%s", testing::TempDir().c_str(),
                 (int)getpid(), name.c_str());
        path = buffer;
        std::string bytes("[VELDOR - cal file v1.0]", 24);
        bytes.push_back('\0');
        for (int k = 0; k < 4; k++) bytes.push_back((char)((uint32_t)count >> (8 * k)));
        for (const auto& p : points) {
            bytes.push_back((char)p.first);
            bytes.append(3, '\0');
            uint32_t b = Bits(p.second);
            for (int k = 0; k < 4; k++) bytes.push_back((char)(b >> (8 * k)));
        }
        FILE* f = fopen(path.c_str(), "wb");
        if (f != nullptr) {
            fwrite(bytes.data(), 1, bytes.size(), f);
            fclose(f);
        }
    }
    ~TempCal() { remove(path.c_str()); }
};

void ExpectDefaultCurve(int channel) {
    EXPECT_EQ(CalTable[channel].count, 2);
    EXPECT_EQ(CalTable[channel].points[0].power, 0);
    EXPECT_EQ(CalTable[channel].points[0].value, 0.0f);
    EXPECT_EQ(CalTable[channel].points[1].power, 255);
    EXPECT_EQ(CalTable[channel].points[1].value, 100.0f);
    EXPECT_EQ(Bits(ChannelLookup[channel][0]), 0u);
    EXPECT_EQ(Bits(ChannelLookup[channel][1]), 0x3EC8C8CAu);
    EXPECT_EQ(Bits(ChannelLookup[channel][127]), 0x42473737u);
    EXPECT_EQ(Bits(ChannelLookup[channel][128]), 0x4248C8CAu);
    EXPECT_EQ(Bits(ChannelLookup[channel][254]), 0x42C73737u);
    EXPECT_EQ(ChannelLookup[channel][255], 100.0f);
}

TEST_F(CalLookup, MissingDefaultCalGivesFourMessagesAndTheDefaultCurve) {
    snprintf(appDirectory, sizeof appDirectory, "%sveldor-no-such-folder-%d",
             testing::TempDir().c_str(), (int)getpid());
    // Something in the tables first: the default curve replaces it.
    for (int c = 0; c < 4; c++) SetCurve(c, {{1, 1.0f}, {2, 2.0f}, {3, 3.0f}});
    LoadStartupCalibration();
    std::string expected =
        std::string("Error opening calibration file\n'") + appDirectory + "\\Default.cal'";
    ASSERT_EQ(fake.messageBoxes.size(), 4u);
    for (int c = 0; c < 4; c++) {
        EXPECT_EQ(fake.messageBoxes[c], expected);
        EXPECT_EQ(fake.messageIcons[c], ICON_EXCLAMATION);
        ExpectDefaultCurve(c);
    }
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalLookup, StartupReadsEachChannelsFileInTurn) {
    TempCal ch1("ch1.cal", 2, {{10, 5.0f}, {20, 15.0f}});
    TempCal empty("empty.cal", 0, {});
    TempCal bad("bad.cal", 1, {{1, 1.0f}});
    {
        // Spoil the magic of "bad": one letter off.
        FILE* f = fopen(bad.path.c_str(), "r+b");
        ASSERT_NE(f, nullptr);
        fseek(f, 1, SEEK_SET);
        fputc('W', f);
        fclose(f);
    }
    snprintf(appDirectory, sizeof appDirectory, "%sveldor-no-such-folder-%d",
             testing::TempDir().c_str(), (int)getpid());
    WriteSetting(KeyCalibrationFile[0], ch1.path.c_str());
    WriteSetting(KeyCalibrationFile[1], empty.path.c_str());
    WriteSetting(KeyCalibrationFile[2], bad.path.c_str());
    // Channel 4 has no name: the missing Default.cal.
    LoadStartupCalibration();

    // Channel 1: the file's curve.
    EXPECT_EQ(CalTable[0].count, 2);
    EXPECT_EQ(Bits(ChannelLookup[0][11]), 0x40C00000u);
    EXPECT_EQ(Bits(ChannelLookup[0][15]), 0x41200000u);
    EXPECT_EQ(Bits(ChannelLookup[0][19]), 0x41600000u);
    EXPECT_EQ(ChannelLookup[0][255], 15.0f);
    // Channel 2: a sound file with no points is the identity, not the default.
    EXPECT_EQ(CalTable[1].count, 0);
    EXPECT_EQ(ChannelLookup[1][255], 255.0f);
    EXPECT_EQ(ChannelLookup[1][7], 7.0f);
    // Channels 3 and 4: the default curve, after one message each, in order.
    ExpectDefaultCurve(2);
    ExpectDefaultCurve(3);
    ASSERT_EQ(fake.messageBoxes.size(), 2u);
    EXPECT_EQ(fake.messageBoxes[0], "Calibration file '" + bad.path + "'\nIncorrect format");
    EXPECT_EQ(fake.messageBoxes[1],
              std::string("Error opening calibration file\n'") + appDirectory + "\\Default.cal'");
    // Each channel finished before the next: the status lines in channel order.
    std::vector<std::string> reads;
    for (const std::string& s : fake.statusLines)
        if (s.rfind("Read", 0) == 0) reads.push_back(s);
    ASSERT_EQ(reads.size(), 5u);
    EXPECT_EQ(reads[0], "Reading calibration file '" + Shown(ch1.path) + "'");
    EXPECT_EQ(reads[1], "Read calibration file '" + Shown(ch1.path) + "'");
    EXPECT_EQ(reads[2], "Reading calibration file '" + Shown(empty.path) + "'");
    EXPECT_EQ(reads[3], "Read calibration file '" + Shown(empty.path) + "'");
    EXPECT_EQ(reads[4], "Reading calibration file '" + Shown(bad.path) + "'");
    EXPECT_EQ(fake.busy, 0);
}

// With no name in the settings the path is "<appDirectory>\Default.cal" and
// serves every such channel. Natively that backslash is part of a file name,
// so the test makes exactly that name; under Windows it is a folder.
TEST_F(CalLookup, DefaultCalInAppDirectoryServesEveryChannelWithoutAName) {
    char folder[260];
    snprintf(folder, sizeof folder, "%sveldor-app-%d", testing::TempDir().c_str(), (int)getpid());
#ifdef _WIN32
    _mkdir(folder);
#endif
    snprintf(appDirectory, sizeof appDirectory, "%s", folder);
    std::string path = std::string(folder) + "\\Default.cal";
    {
        FILE* f = fopen(path.c_str(), "wb");
        ASSERT_NE(f, nullptr);
        const unsigned char bytes[] = {'[', 'V', 'E', 'L', 'D', 'O',  'R', ' ', '-', ' ',
                                       'c', 'a', 'l', ' ', 'f', 'i',  'l', 'e', ' ', 'v',
                                       '1', '.', '0', ']', 0,   1,    0,   0,   0,   100,
                                       0,   0,   0,   0,   0,   0xF0, 0x40};  // (100, 7.5)
        fwrite(bytes, 1, sizeof bytes, f);
        fclose(f);
    }
    TempCal own("own.cal", 2, {{10, 5.0f}, {20, 15.0f}});
    WriteSetting(KeyCalibrationFile[2], own.path.c_str());
    LoadStartupCalibration();
    EXPECT_TRUE(fake.messageBoxes.empty());
    for (int c : {0, 1, 3}) {
        EXPECT_EQ(CalTable[c].count, 1) << c;
        for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[c][i], 7.5f) << c << " " << i;
    }
    EXPECT_EQ(ChannelLookup[2][15], 10.0f);
    EXPECT_EQ(CountStatus("Read calibration file 'Default.cal'"), 3);
    remove(path.c_str());
#ifdef _WIN32
    _rmdir(folder);
#endif
}

}  // namespace
