// The survey in memory: calibration lookups, the record store and its filter,
// and recording.
#include <gtest/gtest.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "base/app_paths.h"
#include "base/busy.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "resources/resource_ids.h"
#include "shell/recording_commands.h"
#include "shell/tick.h"
#include "storage/cal_file.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/record_filter.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

namespace {

// Most tests start from a fresh fake world: no survey, no curves, no settings.
class FreshWorld : public ::testing::Test {
protected:
    void SetUp() override { ResetFakeWorld(); }
};

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

using CalLookup = FreshWorld;

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

using SurveyState = FreshWorld;

TEST_F(SurveyState, AveragingUsesTheHistoryAndEmptiesIt) {
    statusFlags = STATUS_RECORDING | STATUS_AVERAGING;
    liveState.liveLatitude = 777;
    liveState.liveLongitude = 888;
    // No position since the last record: the live position is stored.
    AddRecord(RECORD_KIND_LIVE);
    EXPECT_EQ(777, recordStore.rows[0].latitude);

    HandleControllerMessage("RP -3 10");
    HandleControllerMessage("RP 0 20");
    HandleControllerMessage("RA 10 20 30 40 0");
    AddRecord(RECORD_KIND_LIVE);
    EXPECT_EQ(-1, recordStore.rows[1].latitude);  // mean of -3 and 0 truncates toward 0
    EXPECT_EQ(15, recordStore.rows[1].longitude);
    EXPECT_EQ(10, recordStore.rows[1].ch[0]);  // one reading in the history
    EXPECT_EQ(0, averageHistory.positionHistoryCount);
    EXPECT_EQ(0, averageHistory.readingHistoryCount);

    // Counts 1, 2 and 3 and more: the newest, the mean of two, of three.
    HandleControllerMessage("RP 100 0");
    AddRecord(RECORD_KIND_LIVE);
    EXPECT_EQ(100, recordStore.rows[2].latitude);
    for (const char* p : {"RP 1 0", "RP 2 0", "RP 3 0", "RP 7 0"}) HandleControllerMessage(p);
    HandleControllerMessage("RA 9 9 9 9 0");  // four readings: the newest three count
    HandleControllerMessage("RA 1 255 0 0 0");
    HandleControllerMessage("RA 2 255 0 0 0");
    HandleControllerMessage("RA 4 254 0 0 0");
    AddRecord(RECORD_KIND_LIVE);
    EXPECT_EQ(4, recordStore.rows[3].latitude);  // (2 + 3 + 7) / 3
    EXPECT_EQ(2, recordStore.rows[3].ch[0]);     // (1 + 2 + 4) / 3 truncated
    EXPECT_EQ(254, recordStore.rows[3].ch[1]);   // no overflow of the byte sum

    HandleControllerMessage("RA 3 0 0 0 0");
    HandleControllerMessage("RA 6 0 0 0 0");
    EXPECT_EQ(4, AverageReading(0, 0));  // (3 + 6) >> 1
    EXPECT_EQ(4, AverageReading(0, 1));
    EXPECT_EQ(6, AverageReading(0, 0));  // count 0: the live value

    // Not recording: the history stays as it was.
    statusFlags = STATUS_AVERAGING;
    HandleControllerMessage("RP 9 9");
    EXPECT_EQ(0, averageHistory.positionHistoryCount);
}

TEST_F(SurveyState, FullStoreStoresTheLastRowAndRefusesLater) {
    statusFlags = STATUS_RECORDING;
    recordCount = MaxRecords - 1;
    liveState.liveLatitude = 42;
    EXPECT_EQ(0, AddRecord(RECORD_KIND_LIVE));
    EXPECT_EQ(MaxRecords, recordCount);
    EXPECT_EQ(42, recordStore.rows[MaxRecords - 1].latitude);
    EXPECT_EQ(1, CountStatus("Data buffer full\n"));
    EXPECT_EQ(std::vector<std::string>{"Data Buffer full"}, fake.messageBoxes);
    EXPECT_EQ(ICON_EXCLAMATION, fake.messageIcons[0]);
    EXPECT_EQ(std::vector<int>{IDM_RECORD_STOP}, fake.frameCommands);  // Record > Stop

    statusFlags &= ~(STATUS_CHANGED | STATUS_RECORDING);
    EXPECT_EQ(0, AddRecord(RECORD_KIND_LIVE));
    EXPECT_EQ(MaxRecords, recordCount);
    EXPECT_EQ(2, CountStatus("Data buffer full\n"));
    EXPECT_EQ(2u, fake.messageBoxes.size());
    EXPECT_FALSE(statusFlags & STATUS_CHANGED);
}

TEST_F(SurveyState, ListingFollowsTheEndAndRepaints) {
    for (int w : {WINDOW_LISTING, WINDOW_PLOT, WINDOW_CHART}) fake.windowExists[w] = true;
    listingRowCount = 10;
    listingTopIndex = -9;  // following an empty store
    AddRecord(RECORD_KIND_LIVE);
    EXPECT_EQ(-8, listingTopIndex);
    ASSERT_EQ(3u, fake.repaints.size());
    EXPECT_EQ(AREA_LISTING_COLUMNS, fake.repaints[0].area);
    EXPECT_EQ(AREA_WHOLE, fake.repaints[1].area);  // first row: whole Plot
    EXPECT_EQ(1, fake.repaints[1].erase);
    EXPECT_EQ(AREA_CHART_RECT, fake.repaints[2].area);
    for (int i = 0; i < 29; i++) AddRecord(RECORD_KIND_LIVE);
    EXPECT_EQ(21, listingTopIndex);
    EXPECT_EQ(21 * 100 / 21, fake.scrollPositions.back());
    EXPECT_EQ(AREA_PLOT_RECT, fake.repaints[fake.repaints.size() - 2].area);

    // Scrolled away from the end: the top stays and no column repaint.
    listingTopIndex = 0;
    fake.repaints.clear();
    AddRecord(RECORD_KIND_LIVE);
    EXPECT_EQ(0, listingTopIndex);
    EXPECT_EQ(AREA_PLOT_RECT, fake.repaints[0].area);
    EXPECT_EQ(0, fake.scrollPositions.back());
}

TEST_F(SurveyState, ClearRecords) {
    ClearRecords();
    EXPECT_EQ("Nothing to clear", fake.statusLines.back());
    AddRecord(RECORD_KIND_LIVE);
    tagCount = 2;
    statusFlags |= STATUS_RECORDING;
    ClearRecords();
    EXPECT_EQ("Can not clear while recording", fake.statusLines.back());
    EXPECT_EQ(1, recordCount);
    EXPECT_EQ(2, tagCount);

    statusFlags &= ~STATUS_RECORDING;
    recordingParams.startTime = 5;
    fake.answers.push_back(1);
    fake.windowExists[WINDOW_TAGS] = true;
    ClearRecords();
    EXPECT_EQ(std::vector<std::string>{"Current data has changed\nSave data ?"}, fake.questions);
    EXPECT_EQ(std::vector<int>{IDM_FILE_SAVE}, fake.frameCommands);
    EXPECT_EQ(0, recordCount);
    EXPECT_EQ(0, tagCount);
    EXPECT_EQ(0u, recordingParams.startTime);
    EXPECT_FALSE(statusFlags & STATUS_CHANGED);
    EXPECT_EQ("Data memory cleared", fake.statusLines.back());
    EXPECT_EQ(std::vector<int>{WINDOW_TAGS}, fake.notifications);

    // Unchanged data: no question.
    AddRecord(RECORD_KIND_LIVE);
    statusFlags &= ~STATUS_CHANGED;
    ClearRecords();
    EXPECT_EQ(1u, fake.questions.size());
}

class RecordFilter : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        UseDefaultCurves();
    }

    // Rows 0..n-1, tracked: latitude i - n/2, longitude -i, reading i, time 1000 + i.
    static void Fill(int n) {
        recordCount = n;
        for (int i = 0; i < n; i++) {
            uint8_t b = (uint8_t)i;
            recordStore.rows[i] = {RECORD_TRACKED_MASK, 0,  {b, b, b, b},
                                   i - n / 2,           -i, 1000u + (uint32_t)i};
        }
    }

    static void Tag(int32_t record, const char* text) {
        tagRecord[tagCount] = record;
        snprintf(tagText[tagCount++], TagTextSize, "%s", text);
    }

    // Survivors of a reading test over raw 0..255.
    static int Reading(uint8_t test, float limit, int channel, int calibrated) {
        Fill(256);
        FilterCriteria c = {};
        c.readingTest = test;
        c.readingLimit = limit;
        c.readingChannel = (uint8_t)channel;
        c.readingCalibrated = (uint8_t)calibrated;
        EXPECT_EQ(1, ApplyFilterCriteria(c));
        return recordCount;
    }
};

TEST_F(RecordFilter, DialogOkAndPositionTests) {
    Fill(10);  // latitudes -5..4
    Tag(2, "kept");
    Tag(7, "goes with its row");
    FilterFields f = DefaultFilterFields();
    strcpy(f.latitudeText, "-3");  // not read while its box is clear
    EXPECT_EQ(0, FilterDialogOk(f));
    EXPECT_EQ(std::vector<std::string>{"Nothing to do"}, fake.messageBoxes);
    EXPECT_EQ(ICON_STOP, fake.messageIcons[0]);
    EXPECT_EQ(10, recordCount);

    f.latitudeOn = 1;
    strcpy(f.latitudeText, "100");  // nothing to remove still counts as done
    EXPECT_EQ(1, FilterDialogOk(f));
    EXPECT_EQ(10, recordCount);
    strcpy(f.latitudeText, " 0 mSec");  // "greater than" 0 keeps 0 and the south
    EXPECT_EQ(1, FilterDialogOk(f));
    EXPECT_EQ(6, recordCount);
    EXPECT_EQ(0, recordStore.rows[5].latitude);
    ASSERT_EQ(1, tagCount);
    EXPECT_EQ(2, tagRecord[0]);
    EXPECT_EQ(1u, fake.messageBoxes.size());
    EXPECT_EQ(0, BusyCount());
    // Removing every row leaves no tags and no message.
    strcpy(f.latitudeText, "-100");
    EXPECT_EQ(1, FilterDialogOk(f));
    EXPECT_EQ(0, recordCount);
    EXPECT_EQ(0, tagCount);
    EXPECT_EQ(1u, fake.messageBoxes.size());

    // "less than" on both axes, signed: rows 2..6 stay, in order, and the
    // tags behind the removed rows move up.
    Fill(10);
    Tag(0, "goes with its row");
    Tag(4, "moves up");
    f = DefaultFilterFields();
    f.latitudeOn = f.longitudeOn = 1;
    f.latitudeSelection = f.longitudeSelection = 1;
    strcpy(f.latitudeText, "-3");
    strcpy(f.longitudeText, "-6");
    EXPECT_EQ(1, FilterDialogOk(f));
    ASSERT_EQ(5, recordCount);
    EXPECT_EQ(-2, recordStore.rows[0].longitude);
    EXPECT_EQ(1006u, recordStore.rows[4].time);
    ASSERT_EQ(1, tagCount);
    EXPECT_EQ(2, tagRecord[0]);
    EXPECT_STREQ("moves up", tagText[0]);
}

TEST_F(RecordFilter, ReadingTests) {
    EXPECT_EQ(13, Reading(FILTER_TEST_GREATER, 12.9f, 1, 0));   // 12.9 acts as 12
    EXPECT_EQ(244, Reading(FILTER_TEST_LESS, 12.0f, 1, 0));     // 12 itself stays
    EXPECT_EQ(256, Reading(FILTER_TEST_GREATER, -1.0f, 2, 0));  // -1 acts as 255
    EXPECT_EQ(1, Reading(FILTER_TEST_LESS, -1.0f, 2, 0));
    EXPECT_EQ(45, Reading(FILTER_TEST_GREATER, 300.0f, 4, 0));  // 300 acts as 44
    EXPECT_EQ(0, RawFilterLimit(1e20f));
    // Raw 128 is 50.19608 and stays under "greater than" 50.2; 129 goes.
    EXPECT_EQ(129, Reading(FILTER_TEST_GREATER, 50.2f, 1, 1));
    float v = ChannelLookup[0][100];  // equal to the limit stays, both ways
    EXPECT_EQ(101, Reading(FILTER_TEST_GREATER, v, 1, 1));
    EXPECT_EQ(156, Reading(FILTER_TEST_LESS, v, 1, 1));

    // Channel 3 looks at ch[2] only.
    Fill(4);
    recordStore.rows[1].ch[2] = 201;
    recordStore.rows[2].ch[2] = 200;
    recordStore.rows[3].ch[0] = 250;
    FilterFields f = DefaultFilterFields();
    f.readingOn = 1;
    f.channelSelection = 2;
    f.calibrated = 0;
    strcpy(f.readingText, "200");
    EXPECT_EQ(1, FilterDialogOk(f));
    ASSERT_EQ(3, recordCount);
    EXPECT_EQ(1002u, recordStore.rows[1].time);
}

TEST_F(RecordFilter, LimitTexts) {
    const struct {
        const char* text;
        int32_t position;
        float reading;
    } cases[] = {
        {"  -123abc", -123, -123.0f},
        {"- 5", 0, 0.0f},
        {"12.9", 12, 12.9f},
        {" 12.9xyz", 12, 12.9f},
        {"-99999999999", INT32_MIN, -99999999999.0f},
        {"                    1234", 123, 123.0f},  // 23 characters are read
        {"1e2", 1, 100.0f},
        {"-.5", 0, -0.5f},
        {"3e", 3, 3.0f},
        {"0x10", 0, 0.0f},
        {"nan", 0, 0.0f},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.position, ParseFilterPositionLimit(c.text)) << c.text;
        EXPECT_EQ(FloatBits(c.reading), FloatBits(ParseFilterReadingLimit(c.text))) << c.text;
    }
}

class RecordingEngine : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        fake.portOpen = true;
        liveState.dataValidTicks = 1000;  // keep "OP 1" off the wire
    }
    static std::vector<std::string> AccessoryFrames() {
        std::vector<std::string> out;
        for (const std::string& f : FramesSent())
            if (f.rfind("MC", 0) == 0 || f.rfind("MI", 0) == 0) out.push_back(f);
        return out;
    }
};

TEST_F(RecordingEngine, StoreGauge) {
    const std::pair<int, const char*> gauges[] = {
        {0, "0 %"}, {2000, "12.50 %"}, {1, "0.01 %"}, {16000, "100.00 %"}};
    for (const auto& g : gauges) {
        recordCount = g.first;
        Tick(1);
        EXPECT_EQ(g.second, fake.pane[2]);
    }
}

TEST_F(RecordingEngine, DistanceMode) {
    statusFlags |= STATUS_DISTANCE_INTERVAL;
    recordIntervalMeters = 500;
    EarthRadiusKm = 6371;
    liveState.liveLatitude = 123456789;
    StartRecording();
    EXPECT_EQ(1, CountStatus("Recording started"));
    Tick(1);  // empty store: the first record at once
    EXPECT_EQ(1, recordCount);
    Tick(1);
    EXPECT_EQ(1, recordCount);  // not moved

    liveState.liveLatitude += 60000;  // one minute of arc
    EXPECT_NEAR(1853.25, DistanceFromLastRecord(), 0.005);
    Tick(1);
    EXPECT_EQ(2, recordCount);

    // Longitude counts as much as latitude, at any latitude.
    liveState.liveLatitude = 300000000;
    liveState.liveLongitude = 0;
    recordStore.rows[1].latitude = 300000000;
    recordStore.rows[1].longitude = 16000;
    double alongLongitude = DistanceFromLastRecord();
    recordStore.rows[1].latitude = 300016000;
    recordStore.rows[1].longitude = 0;
    EXPECT_DOUBLE_EQ(alongLongitude, DistanceFromLastRecord());

    // An interval just below the distance stores a record; a larger one not.
    recordIntervalMeters = 10;
    double d = DistanceFromLastRecord();
    recordIntervalMeters = (int32_t)d;
    EXPECT_LT(recordIntervalMeters, d);
    Tick(1);
    EXPECT_EQ(3, recordCount);
    recordIntervalMeters = 100000;
    liveState.liveLatitude += 1;
    Tick(1);
    EXPECT_EQ(3, recordCount);

    // Extreme positions do not overflow.
    recordStore.rows[2].latitude = -2147483647 - 1;
    recordStore.rows[2].longitude = 2147483647;
    liveState.liveLatitude = 2147483647;
    liveState.liveLongitude = -2147483647 - 1;
    EXPECT_GT(DistanceFromLastRecord(), 0.0);
}

TEST_F(RecordingEngine, TzrChannelStepping) {
    statusFlags |= STATUS_TZR_MODE | STATUS_INCREMENT_CHANNEL;
    tzrChannelCount = 10;
    recordIntervalSeconds = 5;
    StartRecording();
    fake.wire.clear();
    liveState.liveAccessoryChannel = 10;
    for (int i = 0; i < 5; i++) Tick(1);
    liveState.liveAccessoryChannel = 0;
    for (int i = 0; i < 5; i++) Tick(1);
    liveState.liveAccessoryChannel = 4;
    for (int i = 0; i < 5; i++) Tick(1);
    EXPECT_EQ((std::vector<std::string>{"MC 1", "MC 1", "MC 5"}), AccessoryFrames());
    fake.wire.clear();
    recordIntervalSeconds = 2;  // the controller steps only below 2 seconds
    StopRecording();
    EXPECT_TRUE(AccessoryFrames().empty());

    // Increment off: "MI 0" at start and no stepping.
    WriteSetting(KeyTzrInitialChannel, "3");
    statusFlags &= ~STATUS_INCREMENT_CHANNEL;
    recordIntervalSeconds = 2;
    StartRecording();
    for (int i = 0; i < 6; i++) Tick(1);
    StopRecording();
    EXPECT_EQ((std::vector<std::string>{"MC 3", "MI 0"}), AccessoryFrames());
}

TEST_F(RecordingEngine, AutosaveCountsRecordingTicksOnly) {
    statusFlags |= STATUS_AUTOSAVE;
    strcpy(dataFileName, "C:\\survey.DAT");
    autosaveMinutes = 1;
    autosaveTicks = 100;  // left from an earlier recording
    StartRecording();
    Tick(1);
    EXPECT_EQ(std::vector<int>{IDM_FILE_SAVE}, fake.frameCommands);
    for (int i = 0; i < 59; i++) Tick(1);
    EXPECT_EQ(1u, fake.frameCommands.size());
    // Stop saves at once and lets a suspended Plot draw again; idle ticks do
    // not count.
    statusFlags |= STATUS_PLOT_SUSPENDED;
    StopRecording();
    EXPECT_EQ(2u, fake.frameCommands.size());
    EXPECT_FALSE(statusFlags & STATUS_PLOT_SUSPENDED);
    for (int i = 0; i < 50; i++) Tick(1);
    EXPECT_EQ(2u, fake.frameCommands.size());
    statusFlags |= STATUS_RECORDING;
    Tick(1);
    EXPECT_EQ(3u, fake.frameCommands.size());
    EXPECT_EQ(60, autosaveTicks);

    // No file name: Yes to the question, then a cancelled chooser turns
    // autosave off.
    StopRecording();
    dataFileName[0] = '\0';
    fake.answers = {1};
    StartRecording();
    EXPECT_EQ(std::vector<std::string>{"Autosave is enabled but no filename is defined\n\n"
                                       "Do you want to specify a filename?"},
              fake.questions);
    EXPECT_FALSE(statusFlags & STATUS_AUTOSAVE);
}

}  // namespace
