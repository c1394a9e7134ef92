// The frame's commands: which menu items are on, the controller reset, and
// Save and Close of the data file.
#include <gtest/gtest.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "resources/resource_ids.h"
#include "shell/file_commands.h"
#include "shell/frame_commands.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"
#include "views/plot_geometry.h"

namespace {

struct FrameCommands : ::testing::Test {
    void SetUp() override {
        ResetFakeWorld();
        fake.portOpen = true;
    }
};

// One item of each rule: Open while idle, Stop while recording, Save with
// changed records and a name, Close with a name, Print plot with records
// ready for output, About always.
TEST_F(FrameCommands, MenuItemsFollowTheStoreTheFileAndRecording) {
    const int items[] = {IDM_FILE_OPEN, IDM_RECORD_STOP, IDM_FILE_SAVE, IDM_FILE_CLOSE, IDM_FILE_PRINT_PLOT,
                         IDM_HELP_ABOUT};
    const struct { int records; const char* file; uint32_t flags; std::vector<int> enabled; int ready; } cases[] = {
        {0, "", STATUS_CHANGED, {1, 0, 0, 0, 0, 1}, 0},
        {3, "", STATUS_CHANGED, {1, 0, 0, 0, 1, 1}, 1},  // Save needs a file name
        {3, "C:\\survey.DAT", 0, {1, 0, 0, 1, 1, 1}, 1},  // nothing changed
        {0, "C:\\survey.DAT", STATUS_CHANGED, {1, 0, 0, 1, 0, 1}, 0},  // empty store
        {3, "C:\\survey.DAT", STATUS_CHANGED, {1, 0, 1, 1, 1, 1}, 1},
        // Recording greys what changes the survey, but not Save or Close.
        {20, "C:\\survey.DAT", STATUS_CHANGED | STATUS_RECORDING, {0, 1, 1, 1, 0, 1}, 0},
    };
    for (auto& c : cases) {
        recordCount = c.records;
        statusFlags = c.flags;
        snprintf(dataFileName, sizeof dataFileName, "%s", c.file);
        std::vector<int> enabled;
        for (int id : items) enabled.push_back(MenuItemEnabled(id));
        EXPECT_EQ(c.enabled, enabled) << c.records << " " << c.flags;
        EXPECT_EQ(c.ready, RecordsReadyForOutput()) << c.records;
    }
}

TEST_F(FrameCommands, ResetControllerOnYesSendsFrAndForgetsTheModes) {
    statusFlags = STATUS_TZR_MODE | STATUS_AR3000A_MODE | STATUS_GPS_DIFF_MODE | STATUS_CHANGED;
    liveState.liveAccessoryChannel = 4;
    WriteSetting(KeyTzrNumberOfChannels, "6");
    fake.answers = {0, 1};
    ResetController();  // No changes nothing
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(STATUS_TZR_MODE | STATUS_AR3000A_MODE | STATUS_GPS_DIFF_MODE | STATUS_CHANGED, statusFlags);
    EXPECT_EQ("<absent>", StoredSetting("TZR4100", "Enable TZR4100 mode"));
    EXPECT_TRUE(MenuItemChecked(IDM_CONFIG_GPS_DIFF) && MenuItemChecked(IDM_CONFIG_AR3000A) &&
                MenuItemChecked(IDM_CONFIG_TZR4100) && !MenuItemChecked(IDM_RECORD_START));
    ResetController();
    const char* question =
        "Resetting the controller will set all parameters to their factory default.\n\n"
        "Do you want to continue?";
    EXPECT_EQ((std::vector<std::string>{question, question}), fake.questions);
    EXPECT_EQ(std::vector<std::string>{"FR"}, FramesSent());
    EXPECT_EQ(1, CountStatus("Reset sent to controller"));
    EXPECT_EQ(STATUS_CHANGED, statusFlags);
    EXPECT_FALSE(MenuItemChecked(IDM_CONFIG_GPS_DIFF));
    EXPECT_EQ(0, liveState.liveAccessoryChannel);
    const char* stored[][3] = {
        {"TZR4100", "Enable TZR4100 mode", "0"}, {"TZR4100", "Inital channel", "1"},
        {"TZR4100", "Number of channels", "10"}, {"AR3000A", "Enable AR3000A mode", "0"},
        {"GPS Diff", "Enable GPS Diff mode", "0"}, {"GPS Diff", "Baud Rate", "4800"},
    };
    for (const auto& key : stored) EXPECT_EQ(key[2], StoredSetting(key[0], key[1])) << key[1];
}

std::string Caption(const std::string& path) {
    return "VELDOR [ " + path + " ]";
}

struct FileCommands : ::testing::Test {
    void SetUp() override {
        ResetFakeWorld();
        statusFlags = STATUS_FULL_PATH;
    }
};

TEST_F(FileCommands, CloseEmptiesEverythingOnlyWithAName) {
    recordCount = 5;
    tagCount = 1;
    FileClose();  // no name: nothing, even with data
    EXPECT_EQ(5, recordCount);
    EXPECT_TRUE(fake.statusLines.empty());

    std::string path = TempTestPath("close.dat");
    snprintf(dataFileName, PathSize, "%s", path.c_str());
    statusFlags |= STATUS_CHANGED;
    listingTopIndex = 3;
    plotView.centreLongitude = 99;
    plotView.scale = 4;
    snprintf(plotTitle, PlotTitleSize, "Plot 2 km");
    for (int w : {WINDOW_LISTING, WINDOW_PLOT, WINDOW_CHART, WINDOW_TAGS})
        fake.windowExists[w] = true;
    fake.caption = Caption(path);
    fake.answers = {1};
    FileClose();
    EXPECT_EQ(1223u + 5 * 18 + 55, ReadFileBytes(path).size());  // saved first
    EXPECT_STREQ("", dataFileName);
    EXPECT_FALSE(statusFlags & STATUS_CHANGED);
    EXPECT_EQ(0, listingTopIndex);
    EXPECT_EQ(0, fake.scrollPositions.back());
    EXPECT_EQ(0, plotView.centreLongitude);
    EXPECT_EQ(0, plotView.scale);
    EXPECT_STREQ("Plot", plotTitle);
    int whole = 0;
    for (const RepaintRequest& r : fake.repaints)
        if (r.area == AREA_WHOLE && r.erase == 1) whole++;
    EXPECT_EQ(3, whole);
    EXPECT_EQ(std::vector<int>{WINDOW_TAGS}, fake.notifications);
    remove(path.c_str());
}

}  // namespace
