#include "survey/cal_lookup.h"

#include <gtest/gtest.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "base/app_paths.h"
#include "storage/cal_file.h"
#include "storage/settings_file.h"
#include "views/display_format.h"

#ifdef _WIN32
#include <direct.h>
#endif

namespace {

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

// Entries first..last of a lookup: one value, or the line from entry `from`
// (value a) towards entry `to` (value b).
struct Span {
    int first, last, from;
    float a;
    int to;
    float b;
};
Span Flat(int first, int last, float value) {
    return {first, last, 0, value, 0, value};
}
Span Line(int first, int last, int from, float a, int to, float b) {
    return {first, last, from, a, to, b};
}

class CalLookup : public testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        ResetCalibration();
    }
};

// ---- BuildChannelLookup ----------------------------------------------------------

TEST_F(CalLookup, CurvesGiveTheirEntriesBitForBit) {
    const float odd = 1.23456788f;
    const struct {
        int channel;
        std::vector<std::pair<int, float>> points;
        std::vector<Span> spans;
        std::vector<std::pair<int, uint32_t>> bits;  // known values of some entries
    } cases[] = {
        {0,
         {{0, 0.0f}, {255, 100.0f}},
         {Line(0, 254, 0, 0.0f, 255, 100.0f), Flat(255, 255, 100.0f)},
         {{0, 0x00000000u}, {1, 0x3EC8C8CAu}, {127, 0x42473737u},
          {128, 0x4248C8CAu}, {254, 0x42C73737u}, {255, 0x42C80000u}}},
        {1,
         {{10, 5.0f}, {20, 15.0f}},
         {Flat(0, 10, 5.0f), Line(11, 19, 10, 5.0f, 20, 15.0f), Flat(20, 255, 15.0f)},
         {{11, 0x40C00000u}, {15, 0x41200000u}, {19, 0x41600000u}, {20, 0x41700000u}}},
        {2, {{100, 7.5f}}, {Flat(0, 255, 7.5f)}, {}},
        // A point's own entry holds its value, not the formula's.
        {0,
         {{3, 0.1f}, {77, odd}, {201, -1e-7f}},
         {Flat(0, 3, 0.1f), Line(4, 76, 3, 0.1f, 77, odd), Flat(77, 77, odd),
          Line(78, 200, 77, odd, 201, -1e-7f), Flat(201, 255, -1e-7f)},
         {{77, 0x3F9E0652u}}},
        {0, {{10, 1.25f}, {11, 9.5f}}, {Flat(0, 10, 1.25f), Flat(11, 255, 9.5f)}, {}},
        // First at 0 and last at 255: no flat ends; rising then falling, negative.
        {3,
         {{0, -20.0f}, {128, 0.0f}, {255, -90.0f}},
         {Line(0, 127, 0, -20.0f, 128, 0.0f), Flat(128, 128, 0.0f),
          Line(129, 254, 128, 0.0f, 255, -90.0f), Flat(255, 255, -90.0f)},
         {}},
        // Out of order: the point of power 5 goes into the next free entry.
        {0,
         {{10, 1.0f}, {5, 2.0f}, {20, 3.0f}},
         {Flat(0, 10, 1.0f), Flat(11, 11, 2.0f), Line(12, 19, 11, 2.0f, 20, 3.0f),
          Flat(20, 255, 3.0f)},
         {}},
        // A repeated power takes the next entry.
        {0, {{10, 1.0f}, {10, 2.0f}}, {Flat(0, 10, 1.0f), Flat(11, 255, 2.0f)}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << "first power " << c.points[0].first << ", channel " << c.channel);
        SetCurve(c.channel, c.points);
        BuildChannelLookup(c.channel);
        const float* e = ChannelLookup[c.channel];
        for (const Span& s : c.spans) {
            for (int i = s.first; i <= s.last; i++) {
                float v = s.from == s.to ? s.a : Interpolate(i, s.from, s.a, s.to, s.b);
                EXPECT_EQ(FloatBits(e[i]), FloatBits(v)) << "entry " << i;
            }
        }
        for (const auto& b : c.bits)
            EXPECT_EQ(FloatBits(e[b.first]), b.second) << "entry " << b.first;
    }
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalLookup, CountZeroIsTheIdentityAndFullTablesAreCopied) {
    // Something else first, so that the identity is really written.
    for (int i = 0; i < 256; i++) ChannelLookup[2][i] = -1.0f;
    CalTable[2].count = 0;
    BuildChannelLookup(2);
    for (int i = 0; i < 256; i++)
        EXPECT_EQ(FloatBits(ChannelLookup[2][i]), FloatBits((float)i)) << i;
    EXPECT_EQ(CalTable[2].count, 0);

    // 256 points at powers 0 to 255; a count above 256 is cut and stored back.
    CalTable[1].count = 1000;
    for (int i = 0; i < 256; i++) CalTable[1].points[i] = {(uint8_t)i, {}, 1000.0f - 3.25f * i};
    BuildChannelLookup(1);
    EXPECT_EQ(CalTable[1].count, 256);
    for (int i = 0; i < 256; i++)
        EXPECT_EQ(FloatBits(ChannelLookup[1][i]), FloatBits(CalTable[1].points[i].value)) << i;
}

// Powers that run backwards near the end carry the entry index past 255: the
// build stops at the end of the channel's entries and touches no other one.
TEST_F(CalLookup, BuildStopsAtTheEndOfTheChannelsEntries) {
    for (int c = 0; c < 4; c++) {
        for (int i = 0; i < 256; i++) ChannelLookup[c][i] = -12345.0f;
        CalTable[c].count = 256;
        CalTable[c].points[0] = {255, {}, 1.0f};  // fills 0..255 at once
        for (int n = 1; n < 256; n++) CalTable[c].points[n] = {(uint8_t)(255 - n), {}, 50.0f + n};
    }
    // Channel 3 is the last row of the array: a write past it would be caught
    // by AddressSanitizer, one past channel 1 would show in channel 2.
    BuildChannelLookup(1);
    BuildChannelLookup(3);
    const float expected[4] = {-12345.0f, 1.0f, -12345.0f, 1.0f};
    for (int c = 0; c < 4; c++)
        for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[c][i], expected[c]) << c << " " << i;

    // A last point at 255 followed by more points: the same stop.
    SetCurve(2, {{0, 0.0f}, {255, 100.0f}, {3, 7.0f}, {4, 8.0f}});
    BuildChannelLookup(2);
    EXPECT_EQ(ChannelLookup[2][255], 100.0f);
    EXPECT_EQ(ChannelLookup[3][0], 1.0f);

    // A channel outside 0 to 3 is ignored.
    ResetCalibration();
    BuildChannelLookup(-1);
    BuildChannelLookup(4);
    for (int c = 0; c < 4; c++)
        for (int i = 0; i < 256; i++) EXPECT_EQ(FloatBits(ChannelLookup[c][i]), 0u);
    EXPECT_EQ(fake.busy, 0);
}

// ---- LoadStartupCalibration ------------------------------------------------------

TEST_F(CalLookup, StartupReadsEachChannelsFileInTurnOrTheDefaultCurve) {
    std::string ch1 = TempTestPath("ch1.cal"), empty = TempTestPath("empty.cal");
    std::string bad = TempTestPath("bad.cal");
    ASSERT_EQ(1, WriteFileBytes(ch1, CalFileBytes(2, {{10, 5.0f}, {20, 15.0f}})));
    ASSERT_EQ(1, WriteFileBytes(empty, CalFileBytes(0, {})));
    std::string spoilt = CalFileBytes(1, {{1, 1.0f}});
    spoilt[1] = 'W';  // one letter of the magic off
    ASSERT_EQ(1, WriteFileBytes(bad, spoilt));
    snprintf(appDirectory, sizeof appDirectory, "%s", TempTestPath("no-such-folder").c_str());
    const std::string noDefault =
        std::string("Error opening calibration file\n'") + appDirectory + "\\Default.cal'";
    WriteSetting(KeyCalibrationFile[0], ch1.c_str());
    WriteSetting(KeyCalibrationFile[1], empty.c_str());
    WriteSetting(KeyCalibrationFile[2], bad.c_str());
    LoadStartupCalibration();  // channel 4 has no name: the missing Default.cal
    // Channel 1: the file's curve.
    EXPECT_EQ(CalTable[0].count, 2);
    EXPECT_EQ(ChannelLookup[0][15], 10.0f);
    EXPECT_EQ(ChannelLookup[0][255], 15.0f);
    // Channel 2: a sound file with no points is the identity, not the default.
    EXPECT_EQ(CalTable[1].count, 0);
    EXPECT_EQ(ChannelLookup[1][255], 255.0f);
    // Channels 3 and 4: the default curve, after one message each, in order.
    for (int c = 2; c < 4; c++) {
        EXPECT_EQ(FloatBits(ChannelLookup[c][1]), 0x3EC8C8CAu);
        EXPECT_EQ(ChannelLookup[c][255], 100.0f);
    }
    EXPECT_EQ(
        fake.messageBoxes,
        std::vector<std::string>({"Calibration file '" + bad + "'\nIncorrect format", noDefault}));
    EXPECT_EQ(ICON_EXCLAMATION, fake.messageIcons.back());
    // Each channel finished before the next: the status lines in channel order.
    std::vector<std::string> reads;
    for (const std::string& s : fake.statusLines)
        if (s.rfind("Read", 0) == 0) reads.push_back(s);
    std::vector<std::string> expected;
    for (const std::string& path : {ch1, empty, bad}) {
        std::string name = DisplayFileName(path.c_str());
        expected.push_back("Reading calibration file '" + name + "'");
        expected.push_back("Read calibration file '" + name + "'");
    }
    expected.pop_back();
    EXPECT_EQ(reads, expected);
    EXPECT_EQ(fake.busy, 0);
    for (const std::string& path : {ch1, empty, bad}) remove(path.c_str());
}

}  // namespace
