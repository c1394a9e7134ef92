#include "shell/startup.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>

#include "fake_platform.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "base/app_paths.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "views/chart_view.h"
#include "views/display_format.h"
#include "views/plot_view.h"

namespace {

class Startup : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        // No Default.cal there: every channel takes the two-point curve.
        snprintf(appDirectory, sizeof appDirectory, "%s", "no-such-folder-for-veldor");
    }
};

TEST_F(Startup, EmptySettingsGiveTheDefaults) {
    recordCount = 7;
    statusFlags = 0xFFFF;
    snprintf(dataFileName, sizeof dataFileName, "%s", "C:\\old.DAT");
    snprintf(channelLabels[0], ChannelLabelSize, "%s", "old");
    commsWatchdogTicks = 0;
    keepAliveTicks = 0;
    liveState.dataValidTicks = 9;
    liveState.gpsStatus = 0x30;

    SetInitialValues();
    EXPECT_EQ(1, fake.busy);
    ReadStartupSettings();

    EXPECT_EQ(0, recordCount);
    EXPECT_STREQ("", dataFileName);
    EXPECT_STREQ("Ch 1", channelLabels[0]);
    EXPECT_EQ(STATUS_LOAD_STORED | STATUS_CHECK_STORED | STATUS_INCREMENT_CHANNEL, statusFlags);
    // Link timers and live state; formats; intervals; plot; input channel.
    EXPECT_EQ(
        std::vector<int>({12, 5, 0, 0, 2, 1, 1, 500, 5, 500, 5, 1000, 6371, 5, 0, 0}),
        std::vector<int>({commsWatchdogTicks, keepAliveTicks, liveState.dataValidTicks,
                          liveState.gpsStatus, ScreenFormat.latLongMode, ScreenFormat.signMode,
                          ScreenFormat.readingMode, recordIntervalMeters,
                          recordingParams.intervalSeconds, recordingParams.intervalMeters,
                          autosaveMinutes, maxPlotTime, EarthRadiusKm, dotSize,
                          currentInputChannel, recordingParams.inputChannel}));
    // Reading writes nothing: the settings file is still absent.
    EXPECT_EQ("<missing>", ReadFileBytes(settingsPath));
}

TEST_F(Startup, StoredKeysAreTaken) {
    WriteSetting(KeyListingLatLong, "4");
    WriteSetting(KeyChartChannel, "3");
    WriteSetting(KeyPlotChannel, "4");
    WriteSetting(KeyRecordIntervalSeconds, "1");
    WriteSetting(KeyTzrNumberOfChannels, "6");
    WriteSetting(KeyRecordIntervalInMeters, "1");
    WriteSetting(KeyAveraging, "7");
    WriteSetting(KeyLoadStoredData, "0");
    WriteSetting(KeyTzrEnable, "1");
    WriteSetting(KeyAr3000aEnable, "-1");
    WriteSetting(KeyPlotPowerBreak1, "81.5");
    WriteSetting(KeyPlotPowerBreak2, "55.5");
    WriteSetting(KeyPlotDotSize, "7");
    WriteSetting(KeyTzrInputChannel, "4");

    SetInitialValues();
    ReadStartupSettings();

    EXPECT_EQ(
        std::vector<int>({4, 2, 3, 1, 1, 6, 7, 3, 3}),
        std::vector<int>({ScreenFormat.latLongMode, chartChannel, plotChannel,
                          recordIntervalSeconds, recordingParams.intervalSeconds, tzrChannelCount,
                          dotSize, currentInputChannel, recordingParams.inputChannel}));
    EXPECT_FLOAT_EQ(81.5f, powerBreak[0]);
    EXPECT_FLOAT_EQ(55.5f, powerBreak[1]);
    // Any value but 0 sets a flag.
    EXPECT_EQ(STATUS_DISTANCE_INTERVAL | STATUS_AVERAGING | STATUS_TZR_MODE | STATUS_AR3000A_MODE,
              statusFlags & (STATUS_DISTANCE_INTERVAL | STATUS_AVERAGING | STATUS_LOAD_STORED |
                             STATUS_TZR_MODE | STATUS_AR3000A_MODE));

    // The first-run layout is taken once: "Status" 1 becomes 2.
    WriteSetting(KeySetupStatus, "1");
    EXPECT_EQ(1, TakeFirstRunLayout());
    EXPECT_EQ("2", StoredSetting("Setup", "Status"));
    EXPECT_EQ(0, TakeFirstRunLayout());
}

// Nothing stored: the origin is pulled to 0 and the size left to the system.
TEST_F(Startup, FrameIsKeptOnTheScreen) {
    const int none = SettingNotStored;
    const FramePlace cases[][2] = {
        {{-100, -5, 400, 300}, {0, 0, 400, 300}},
        {{900, 600, 300, 200}, {724, 568, 300, 200}},
        {{10, 20, 300, 200}, {10, 20, 300, 200}},
        {{none, none, none, none}, {0, 0, none, none}},
    };
    for (const auto& c : cases) {
        FramePlace p = PlaceFrame(c[0], 1024, 768);
        EXPECT_EQ((std::vector<int>{c[1].x, c[1].y, c[1].width, c[1].height}),
                  (std::vector<int>{p.x, p.y, p.width, p.height}));
    }
}

TEST_F(Startup, ExitWritesWindowStateByFrameState) {
    fake.windowExists[WINDOW_LISTING] = true;
    fake.windowExists[WINDOW_TAGS] = true;
    chartChannel = 2;
    plotChannel = 0;
    WriteSetting(KeyMainOriginX, "33");
    auto place = [] {
        std::vector<std::string> values;
        for (const char* key : {"Maximised", "Origin X", "Origin Y", "Width", "Height"})
            values.push_back(StoredSetting("Main window", key));
        return values;
    };
    using Texts = std::vector<std::string>;
    WriteExitSettings(FrameExitState{0, 1, {1, 2, 3, 4}});
    Texts shown;
    for (const char* key : {"Show listing", "Show plot", "Show chart", "Show tags"})
        shown.push_back(StoredSetting("Main window", key));
    shown.push_back(StoredSetting("Chart", "Channel"));
    shown.push_back(StoredSetting("Plot", "Channel"));
    EXPECT_EQ(Texts({"1", "0", "0", "1", "3", "1"}), shown);
    // Maximised: the place is kept; minimised: untouched.
    EXPECT_EQ(Texts({"1", "33", "<absent>", "<absent>", "<absent>"}), place());
    WriteExitSettings(FrameExitState{1, 0, {1, 2, 3, 4}});
    EXPECT_EQ(Texts({"1", "33", "<absent>", "<absent>", "<absent>"}), place());
    WriteExitSettings(FrameExitState{0, 0, {-4, 12, 640, 480}});
    EXPECT_EQ(Texts({"0", "-4", "12", "640", "480"}), place());
}

}  // namespace
