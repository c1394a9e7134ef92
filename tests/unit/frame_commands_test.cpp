#include "shell/frame_commands.h"

#include <gtest/gtest.h>
#include <string.h>

#include <set>
#include <string>

#include "fake_platform.h"
#include "resources/resource_ids.h"
#include "base/app_paths.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"

namespace {

class FrameCommands : public ::testing::Test {
protected:
    void SetUp() override { ResetFakeWorld(); }
};

TEST_F(FrameCommands, MenuItemsFollowTheStoreTheFileAndRecording) {
    struct { int records; const char* file; uint32_t flags; std::vector<int> on, off; int ready; } cases[] = {
        {0, "", STATUS_CHANGED,  // changed, but neither records nor a file
         {IDM_FILE_OPEN, IDM_FILE_SAVE_AS, IDM_RECORD_START, IDM_RECORD_TAKE_READING,
          IDM_RECORD_SETTINGS, IDM_RECORD_CALIBRATION, IDM_CONFIG_PORT, IDM_CONFIG_GPS,
          IDM_CONFIG_GPS_DIFF, IDM_CONFIG_AR3000A, IDM_CONFIG_TZR4100, IDM_CONFIG_RESET_CONTROLLER,
          IDM_RECORD_MANUAL_READING, IDM_RECORD_ADD_TAG, IDM_FILE_EXIT, IDM_WINDOW_SHOW_PLOT,
          IDM_HELP_ABOUT},
         {IDM_FILE_SAVE, IDM_FILE_CLOSE, IDM_FILE_MAKE_LISTING, IDM_FILE_PRINT_LISTING,
          IDM_FILE_PRINT_PLOT, IDM_RECORD_STOP, IDM_RECORD_CLEAR, IDM_RECORD_FILTER,
          IDM_RECORD_STATISTICS}, 0},
        {3, "", STATUS_CHANGED,  // Save needs a file name
         {IDM_FILE_MAKE_LISTING, IDM_FILE_PRINT_LISTING, IDM_FILE_PRINT_PLOT, IDM_RECORD_CLEAR,
          IDM_RECORD_FILTER, IDM_RECORD_STATISTICS}, {IDM_FILE_SAVE, IDM_FILE_CLOSE}, 1},
        {0, "C:\\survey.DAT", 0, {IDM_FILE_CLOSE}, {IDM_FILE_SAVE}, 0},  // nothing changed
        {0, "C:\\survey.DAT", STATUS_CHANGED, {IDM_FILE_CLOSE}, {IDM_FILE_SAVE}, 0},  // empty store
        // Recording greys what changes the survey, but not Save or Close.
        {20, "C:\\survey.DAT", STATUS_CHANGED | STATUS_RECORDING,
         {IDM_FILE_SAVE, IDM_FILE_CLOSE, IDM_RECORD_STOP, IDM_RECORD_MANUAL_READING,
          IDM_RECORD_ADD_TAG, IDM_RECORD_CALTEXT_1, IDM_CONFIG_DISPLAY, IDM_FILE_PREFERENCES,
          IDM_WINDOW_CASCADE, IDM_HELP_HELP},
         {IDM_FILE_OPEN, IDM_FILE_SAVE_AS, IDM_FILE_MAKE_LISTING, IDM_FILE_PRINT_LISTING,
          IDM_FILE_PRINT_PLOT, IDM_RECORD_START, IDM_RECORD_TAKE_READING, IDM_RECORD_CLEAR,
          IDM_RECORD_FILTER, IDM_RECORD_STATISTICS, IDM_RECORD_SETTINGS, IDM_RECORD_CALIBRATION,
          IDM_CONFIG_PORT, IDM_CONFIG_GPS, IDM_CONFIG_GPS_DIFF, IDM_CONFIG_AR3000A,
          IDM_CONFIG_TZR4100, IDM_CONFIG_RESET_CONTROLLER}, 0},
    };
    for (auto& c : cases) {
        recordCount = c.records, statusFlags = c.flags;
        snprintf(dataFileName, sizeof dataFileName, "%s", c.file);
        for (int id : c.on) EXPECT_EQ(1, MenuItemEnabled(id)) << c.records << " " << id;
        for (int id : c.off) EXPECT_EQ(0, MenuItemEnabled(id)) << c.records << " " << id;
        EXPECT_EQ(c.ready, RecordsReadyForOutput()) << c.records;
    }
}

TEST_F(FrameCommands, AccessoryModesAreChecked) {
    EXPECT_EQ(0, MenuItemChecked(IDM_CONFIG_GPS_DIFF));
    statusFlags = STATUS_AR3000A_MODE;
    EXPECT_EQ(0, MenuItemChecked(IDM_CONFIG_GPS_DIFF));
    EXPECT_EQ(1, MenuItemChecked(IDM_CONFIG_AR3000A));
    EXPECT_EQ(0, MenuItemChecked(IDM_CONFIG_TZR4100));
    statusFlags = STATUS_TZR_MODE | STATUS_GPS_DIFF_MODE;
    EXPECT_EQ(1, MenuItemChecked(IDM_CONFIG_GPS_DIFF));
    EXPECT_EQ(0, MenuItemChecked(IDM_CONFIG_AR3000A));
    EXPECT_EQ(1, MenuItemChecked(IDM_CONFIG_TZR4100));
    EXPECT_EQ(0, MenuItemChecked(IDM_RECORD_START));
}

TEST_F(FrameCommands, MenuListHoldsEveryFrameCommandOnce) {
    std::set<int> seen;
    for (int i = 0; i < FrameMenuIdCount; i++) {
        int id = FrameMenuIds[i];
        EXPECT_TRUE(seen.insert(id).second) << id;
        EXPECT_GE(id, FirstFrameCommand);
        EXPECT_LE(id, LastFrameCommand);
    }
    EXPECT_EQ(42u, seen.size());
}

TEST_F(FrameCommands, ResetControllerAnsweredNoChangesNothing) {
    fake.portOpen = true;
    statusFlags = STATUS_TZR_MODE;
    fake.answers = {0};
    ResetController();
    EXPECT_EQ(1u, fake.questions.size());
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_TRUE(statusFlags & STATUS_TZR_MODE);
    EXPECT_EQ("<absent>", StoredSetting("TZR4100", "Enable TZR4100 mode"));
}

TEST_F(FrameCommands, ResetControllerOnYesSendsFrAndForgetsTheModes) {
    fake.portOpen = true;
    statusFlags = STATUS_TZR_MODE | STATUS_AR3000A_MODE | STATUS_GPS_DIFF_MODE | STATUS_CHANGED;
    liveState.liveAccessoryChannel = 4;
    WriteSetting(KeyTzrNumberOfChannels, "6");
    fake.answers = {1};
    ResetController();
    EXPECT_EQ(
        "Resetting the controller will set all parameters to their factory default.\n\n"
        "Do you want to continue?",
        fake.questions[0]);
    ASSERT_EQ(1u, FramesSent().size());
    EXPECT_EQ("FR", FramesSent()[0]);
    EXPECT_EQ(1, CountStatus("Reset sent to controller"));
    EXPECT_EQ(STATUS_CHANGED, statusFlags);
    EXPECT_EQ(0, liveState.liveAccessoryChannel);
    EXPECT_EQ("0", StoredSetting("TZR4100", "Enable TZR4100 mode"));
    EXPECT_EQ("1", StoredSetting("TZR4100", "Inital channel"));
    EXPECT_EQ("10", StoredSetting("TZR4100", "Number of channels"));
    EXPECT_EQ("0", StoredSetting("AR3000A", "Enable AR3000A mode"));
    EXPECT_EQ("0", StoredSetting("GPS Diff", "Enable GPS Diff mode"));
    EXPECT_EQ("4800", StoredSetting("GPS Diff", "Baud Rate"));
}

TEST_F(FrameCommands, CoreCommandsRunAndOthersAreLeftToTheFrame) {
    EXPECT_EQ(1, RunCoreFrameCommand(IDM_RECORD_CLEAR));
    EXPECT_EQ("Nothing to clear", fake.statusLines.back());
    size_t lines = fake.statusLines.size();
    EXPECT_EQ(0, RunCoreFrameCommand(IDM_WINDOW_CASCADE));
    EXPECT_EQ(0, RunCoreFrameCommand(IDM_FILE_OPEN));
    EXPECT_EQ(lines, fake.statusLines.size());
}

TEST_F(FrameCommands, AboutAndWebsiteTexts) {
    char text[512];
    FormatAboutText(text, sizeof text);
    const char* head = "VELDOR\nRF Survey Software\n\nVersion 2.3.3\n\n";
    EXPECT_EQ(0, strncmp(text, head, strlen(head)));
    EXPECT_NE(nullptr, strstr(text, MAKER_NAME));
    FormatWebsiteError(text, sizeof text);
    EXPECT_STREQ(
        "Failed to open browser.\n\nPlease manually open a browser and visit "
        "\"https://www.trevan-instruments.example/\".",
        text);
}

}  // namespace
