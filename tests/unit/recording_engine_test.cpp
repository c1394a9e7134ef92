#include "shell/recording_commands.h"
#include "shell/tick.h"
#include "survey/recording_engine.h"

#include <gtest/gtest.h>
#include <string.h>

#include "fake_platform.h"
#include "link/frame_codec.h"
#include "resources/resource_ids.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"

namespace {

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
    autosaveMinutes = 5;
    StartRecording();
    Tick(1);
    EXPECT_EQ(std::vector<int>{IDM_FILE_SAVE}, fake.frameCommands);
    for (int i = 0; i < 299; i++) Tick(1);
    EXPECT_EQ(1u, fake.frameCommands.size());
    // Stop saves at once; idle ticks do not count.
    StopRecording();
    EXPECT_EQ(2u, fake.frameCommands.size());
    for (int i = 0; i < 50; i++) Tick(1);
    EXPECT_EQ(2u, fake.frameCommands.size());
    statusFlags |= STATUS_RECORDING;
    Tick(1);
    EXPECT_EQ(3u, fake.frameCommands.size());
    EXPECT_EQ(300, autosaveTicks);
}

}  // namespace
