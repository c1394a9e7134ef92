#include "shell/startup.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>

#include "fake_platform.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "resources/resource_ids.h"
#include "shell/app_paths.h"
#include "storage/colours_file.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
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
    static std::string Setting(const char* section, const char* key) {
        char text[64];
        ProfileGetString(section, key, "<absent>", text, sizeof text, settingsPath);
        return text;
    }
};

TEST_F(Startup, EmptySettingsGiveTheDefaults) {
    recordCount = 7;
    statusFlags = 0xFFFF;
    snprintf(dataFileName, sizeof dataFileName, "%s", "C:\\old.DAT");
    commsWatchdogTicks = 0;
    keepAliveTicks = 0;
    liveState.dataValidTicks = 9;
    liveState.gpsStatus = 0x30;

    SetInitialValues();
    EXPECT_EQ(1, fake.busy);
    ReadStartupSettings();

    EXPECT_EQ(0, recordCount);
    EXPECT_STREQ("", dataFileName);
    EXPECT_EQ(12, commsWatchdogTicks);
    EXPECT_EQ(5, keepAliveTicks);
    EXPECT_EQ(0, liveState.dataValidTicks);
    EXPECT_EQ(0, liveState.gpsStatus);
    EXPECT_EQ(STATUS_LOAD_STORED | STATUS_CHECK_STORED | STATUS_INCREMENT_CHANNEL, statusFlags);

    EXPECT_EQ(2, ScreenFormat.latLongMode);
    EXPECT_EQ(1, ScreenFormat.signMode);
    EXPECT_EQ(1, ScreenFormat.readingMode);
    EXPECT_EQ(0, chartChannel);
    EXPECT_EQ(0, plotChannel);
    EXPECT_EQ(5, recordIntervalSeconds);
    EXPECT_EQ(500, recordIntervalMeters);
    EXPECT_EQ(5, recordingParams.intervalSeconds);
    EXPECT_EQ(500, recordingParams.intervalMeters);
    EXPECT_EQ(5, autosaveMinutes);
    EXPECT_EQ(1000, maxPlotTime);
    EXPECT_EQ(10, tzrChannelCount);
    EXPECT_EQ(6371, EarthRadiusKm);
    EXPECT_FLOAT_EQ(80.0f, powerBreak[0]);
    EXPECT_FLOAT_EQ(60.0f, powerBreak[1]);
    EXPECT_FLOAT_EQ(40.0f, powerBreak[2]);
    EXPECT_EQ(5, dotSize);
    EXPECT_EQ(MakeColour(0, 0, 255), PlotColourHigh);
    EXPECT_EQ(MakeColour(0, 0, 0), PlotColourNone);
    EXPECT_EQ(0, currentInputChannel);
    EXPECT_EQ(0, recordingParams.inputChannel);
    EXPECT_STREQ("Ch 1", channelLabels[0]);
    EXPECT_STREQ("Ch 4", channelLabels[3]);

    // Four unreadable Default.cal files: four reports and the two-point curve.
    EXPECT_EQ(4u, fake.messageBoxes.size());
    for (int c = 0; c < 4; c++) {
        EXPECT_EQ(2, CalTable[c].count);
        EXPECT_FLOAT_EQ(0.0f, ChannelLookup[c][0]);
        EXPECT_FLOAT_EQ(100.0f, ChannelLookup[c][255]);
    }
    // Reading writes nothing: the settings file is still absent.
    FILE* file = fopen(settingsPath, "r");
    EXPECT_EQ(nullptr, file);
    if (file) fclose(file);
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
    WriteSetting(KeyPlotPowerBreak2, "55.5");
    WriteSetting(KeyPlotDotSize, "7");
    WriteSetting(KeyTzrInputChannel, "4");

    SetInitialValues();
    ReadStartupSettings();

    EXPECT_EQ(4, ScreenFormat.latLongMode);
    EXPECT_EQ(2, chartChannel);
    EXPECT_EQ(3, plotChannel);
    EXPECT_EQ(1, recordIntervalSeconds);
    EXPECT_EQ(1, recordingParams.intervalSeconds);
    EXPECT_EQ(6, tzrChannelCount);
    EXPECT_TRUE(statusFlags & STATUS_DISTANCE_INTERVAL);
    EXPECT_TRUE(statusFlags & STATUS_AVERAGING);  // any value but 0 sets a flag
    EXPECT_FALSE(statusFlags & STATUS_LOAD_STORED);
    EXPECT_TRUE(statusFlags & STATUS_TZR_MODE);
    EXPECT_FALSE(statusFlags & STATUS_AR3000A_MODE);
    EXPECT_FLOAT_EQ(55.5f, powerBreak[1]);
    EXPECT_EQ(7, dotSize);
    EXPECT_EQ(3, currentInputChannel);
    EXPECT_EQ(3, recordingParams.inputChannel);
}

TEST_F(Startup, FirstRunLayoutHappensOnceOnlyWhenAskedFor) {
    EXPECT_EQ(0, TakeFirstRunLayout());
    EXPECT_EQ("<absent>", Setting("Setup", "Status"));
    WriteSetting(KeySetupStatus, "1");
    EXPECT_EQ(1, TakeFirstRunLayout());
    EXPECT_EQ("2", Setting("Setup", "Status"));
    EXPECT_EQ(0, TakeFirstRunLayout());
}

TEST_F(Startup, FrameIsKeptOnTheScreen) {
    FramePlace p = PlaceFrame({-100, -5, 400, 300}, 1024, 768);
    EXPECT_EQ(0, p.x);
    EXPECT_EQ(0, p.y);
    EXPECT_EQ(400, p.width);
    p = PlaceFrame({900, 600, 300, 200}, 1024, 768);
    EXPECT_EQ(724, p.x);
    EXPECT_EQ(568, p.y);
    p = PlaceFrame({10, 20, 300, 200}, 1024, 768);
    EXPECT_EQ(10, p.x);
    EXPECT_EQ(20, p.y);
    // Nothing stored: the origin is pulled to 0 and the size left to the system.
    p = PlaceFrame({SettingNotStored, SettingNotStored, SettingNotStored, SettingNotStored},
                   1024, 768);
    EXPECT_EQ(0, p.x);
    EXPECT_EQ(0, p.y);
    EXPECT_EQ(SettingNotStored, p.width);
}

TEST_F(Startup, ExitWritesWindowStateByFrameState) {
    fake.windowExists[WINDOW_LISTING] = true;
    fake.windowExists[WINDOW_TAGS] = true;
    chartChannel = 2;
    plotChannel = 0;
    WriteSetting(KeyMainOriginX, "33");

    FrameExitState state{0, 1, {1, 2, 3, 4}};
    WriteExitSettings(state);
    EXPECT_EQ("1", Setting("Main window", "Show listing"));
    EXPECT_EQ("0", Setting("Main window", "Show plot"));
    EXPECT_EQ("0", Setting("Main window", "Show chart"));
    EXPECT_EQ("1", Setting("Main window", "Show tags"));
    EXPECT_EQ("3", Setting("Chart", "Channel"));
    EXPECT_EQ("1", Setting("Plot", "Channel"));
    EXPECT_EQ("1", Setting("Main window", "Maximised"));
    EXPECT_EQ("33", Setting("Main window", "Origin X"));  // kept while maximised
    EXPECT_EQ("<absent>", Setting("Main window", "Width"));

    state = FrameExitState{1, 0, {1, 2, 3, 4}};
    WriteExitSettings(state);
    EXPECT_EQ("1", Setting("Main window", "Maximised"));  // minimised: untouched
    EXPECT_EQ("33", Setting("Main window", "Origin X"));

    state = FrameExitState{0, 0, {-4, 12, 640, 480}};
    WriteExitSettings(state);
    EXPECT_EQ("0", Setting("Main window", "Maximised"));
    EXPECT_EQ("-4", Setting("Main window", "Origin X"));
    EXPECT_EQ("12", Setting("Main window", "Origin Y"));
    EXPECT_EQ("640", Setting("Main window", "Width"));
    EXPECT_EQ("480", Setting("Main window", "Height"));
}

TEST_F(Startup, AskToSaveOnlyWhenChangedAndSavesOnYes) {
    AskToSave();
    EXPECT_TRUE(fake.questions.empty());
    statusFlags |= STATUS_CHANGED;
    fake.answers = {0, 1};
    AskToSave();
    EXPECT_TRUE(fake.frameCommands.empty());
    AskToSave();
    ASSERT_EQ(2u, fake.questions.size());
    EXPECT_EQ("Current data has changed\nSave data ?", fake.questions[1]);
    ASSERT_EQ(1u, fake.frameCommands.size());
    EXPECT_EQ(IDM_FILE_SAVE, fake.frameCommands[0]);
}

}  // namespace
