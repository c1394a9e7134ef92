#include "shell/file_commands.h"

#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "views/plot_geometry.h"

namespace {

long FileSize(const std::string& path) {
    return (long)ReadFileBytes(path).size();
}

std::string Caption(const std::string& path) {
    return "VELDOR [ " + path + " ]";
}

const char* const SaveQuestion = "Current data has changed\nSave data ?";

class FileCommands : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        statusFlags = STATUS_FULL_PATH;
    }
};

TEST_F(FileCommands, SaveNeedsRecordsAndANameOtherwiseSaveAs) {
    FileSave();  // no records: nothing at all
    EXPECT_TRUE(fake.statusLines.empty() && fake.chooseModes.empty());

    // No name: Save As.
    recordCount = 1;
    statusFlags |= STATUS_CHANGED | STATUS_CHECK_STORED;
    std::string path = TempTestPath("save.dat");
    fake.chosenFiles = {path};
    FileSave();
    EXPECT_EQ(std::vector<int>{CHOOSE_SAVE_DATA}, fake.chooseModes);
    EXPECT_EQ(1223 + 18, FileSize(path));
    EXPECT_FALSE(statusFlags & STATUS_CHANGED);
    EXPECT_EQ(Caption(path), fake.caption);
    // The check ran before the write: the empty names were filled in.
    EXPECT_STREQ("Default.cal", recordingParams.calFileName[0]);

    // With a name, and again with the flag clear (the accelerator): the check
    // asks, the file is written without a chooser.
    snprintf(recordingParams.calFileName[1], PathSize, "Old.cal");
    recordCount = 2;
    fake.answers = {1};
    FileSave();
    EXPECT_EQ(1u, fake.chooseModes.size());
    EXPECT_EQ(1u, fake.questions.size());
    EXPECT_STREQ("Default.cal", recordingParams.calFileName[1]);
    EXPECT_EQ(1223 + 2 * 18, FileSize(path));

    // A save that fails keeps the name and the flag.
    std::string bad = TempTestPath("no-folder/x.dat");
    snprintf(dataFileName, PathSize, "%s", bad.c_str());
    statusFlags |= STATUS_CHANGED;
    FileSave();
    EXPECT_TRUE(statusFlags & STATUS_CHANGED);
    EXPECT_STREQ(bad.c_str(), dataFileName);
    EXPECT_EQ(std::vector<std::string>{"Error opening file, data not saved"}, fake.messageBoxes);
    remove(path.c_str());
}

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
    EXPECT_EQ(1223 + 5 * 18 + 55, FileSize(path));  // saved first
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
