// The survey in memory: calibration lookups, the record store and its filter,
// and recording.
#include <gtest/gtest.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "base/busy.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "resources/resource_ids.h"
#include "shell/recording_commands.h"
#include "shell/tick.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/record_filter.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

namespace {

// Most tests start from a fresh fake world: no survey, no curves, no settings.
struct FreshWorld : ::testing::Test {
    void SetUp() override { ResetFakeWorld(); }
};

void SetCurve(int channel, const std::vector<std::pair<int, float>>& points) {
    CalTable[channel].count = (int32_t)points.size();
    for (size_t n = 0; n < points.size(); n++) {
        CalTable[channel].points[n].power = (uint8_t)points[n].first;
        CalTable[channel].points[n].value = points[n].second;
    }
}

using CalLookup = FreshWorld;

// Entries of the lookup worked out in single precision: flat before
// the first point and after the last, the line between points, and a point's
// own entry holding its value rather than the formula's.
TEST_F(CalLookup, CurvesGiveTheirEntriesBitForBit) {
    const float odd = 1.23456788f;
    const struct {
        int channel;
        std::vector<std::pair<int, float>> points;
        std::vector<std::pair<int, float>> entries;
    } cases[] = {
        {1,
         {{10, 5.0f}, {20, 15.0f}},
         {{0, 5.0f}, {10, 5.0f}, {11, 6.0f}, {15, 10.0f}, {19, 14.0f}, {20, 15.0f}, {255, 15.0f}}},
        {2, {{100, 7.5f}}, {{0, 7.5f}, {100, 7.5f}, {255, 7.5f}}},
        {0,
         {{3, 0.1f}, {77, odd}, {201, -1e-7f}},
         {{0, 0.1f}, {3, 0.1f}, {4, 0.115332f}, {76, 1.2192359f}, {77, odd}, {78, 1.22461164f},
          {200, 0.00995612144f}, {201, -1e-7f}, {255, -1e-7f}}},
        // Out of order: the point of power 5 goes into the next free entry.
        {0,
         {{10, 1.0f}, {5, 2.0f}, {20, 3.0f}},
         {{10, 1.0f}, {11, 2.0f}, {12, 2.11111116f}, {19, 2.88888884f}, {20, 3.0f}}},
        // A repeated power takes the next entry.
        {0, {{10, 1.0f}, {10, 2.0f}}, {{0, 1.0f}, {10, 1.0f}, {11, 2.0f}, {255, 2.0f}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.points.size() << " points, channel " << c.channel);
        for (int i = 0; i < 256; i++) ChannelLookup[c.channel][i] = -1.0f;
        SetCurve(c.channel, c.points);
        BuildChannelLookup(c.channel);
        for (const auto& e : c.entries)
            EXPECT_EQ(FloatBits(ChannelLookup[c.channel][e.first]), FloatBits(e.second))
                << "entry " << e.first;
    }
    EXPECT_EQ(fake.busy, 0);
}

// Powers that run backwards carry the entry index past 255: the build stops
// at the end of the channel's entries (a write past channel 1 shows in
// channel 2, one past channel 0's identity in channel 1). A count past the
// store is cut and stored back; a channel outside 0 to 3 is ignored
// (AddressSanitizer sees a write outside).
TEST_F(CalLookup, BuildStopsAtTheEndOfTheChannelsEntries) {
    SetCurve(1, {{255, 1.0f}, {3, 7.0f}, {4, 8.0f}});
    CalTable[1].count = 1000;
    BuildChannelLookup(1);
    BuildChannelLookup(0);
    BuildChannelLookup(-1);
    BuildChannelLookup(4);
    EXPECT_EQ(CalTable[1].count, 256);
    EXPECT_EQ(ChannelLookup[1][0], 1.0f);
    EXPECT_EQ(ChannelLookup[1][255], 1.0f);
    EXPECT_EQ(ChannelLookup[2][0], 0.0f);
    EXPECT_EQ(fake.busy, 0);
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
    EXPECT_EQ(std::vector<std::string>{"Data Buffer full"}, fake.messageBoxes);
    EXPECT_EQ(std::vector<int>{IDM_RECORD_STOP}, fake.frameCommands);  // Record > Stop

    statusFlags &= ~(STATUS_CHANGED | STATUS_RECORDING);
    EXPECT_EQ(0, AddRecord(RECORD_KIND_LIVE));
    EXPECT_EQ(MaxRecords, recordCount);
    EXPECT_EQ(2, CountStatus("Data buffer full\n"));
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

struct RecordFilter : ::testing::Test {
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

    // "less than" on both axes, signed: rows 2..6 stay, in order, and the
    // tags behind the removed rows move up.
    Fill(10);
    tagCount = 0;
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
    EXPECT_EQ(45, Reading(FILTER_TEST_GREATER, 300.0f, 5, 0));  // 300 acts as 44; channel 4
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

struct RecordingEngine : ::testing::Test {
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
    for (int i = 0; i < 60; i++) Tick(1);  // the first tick saves
    EXPECT_EQ(std::vector<int>{IDM_FILE_SAVE}, fake.frameCommands);
    StopRecording();                       // saves at once
    for (int i = 0; i < 50; i++) Tick(1);  // idle ticks do not count
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
