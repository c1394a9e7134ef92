#include "storage/reconciliation.h"

#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"

namespace {

// A calibration file of two points, (0, 0.0) and (255, top).
std::string WriteCalibration(const char* name, float top) {
    std::string path = TempTestPath(name);
    WriteFileBytes(path, CalFileBytes(2, {{0, 0.0f}, {255, top}}));
    return path;
}

std::string Key(int channel) {
    char value[PathSize];
    ReadSettingWithDefault(KeyCalibrationFile[channel], "<absent>", value, PathSize);
    return value;
}

void SetKey(int channel, const std::string& value) {
    WriteSetting(KeyCalibrationFile[channel], value.c_str());
}

void SetStored(int channel, const std::string& value) {
    snprintf(recordingParams.calFileName[channel], PathSize, "%s", value.c_str());
}

const char* const UpdateQuestion = "\n\nDo you want to update the data file?";

class Reconciliation : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        ResetCalibration();
        statusFlags = STATUS_FULL_PATH;
    }
};

TEST_F(Reconciliation, BothSwitchesOffAskAndChangeNothing) {
    SetStored(1, "Other.cal");
    recordingParams.inputChannel = 3;
    ReconcileOnLoad();
    ReconcileOnSave();
    EXPECT_TRUE(fake.questions.empty());
    EXPECT_TRUE(fake.messageBoxes.empty());
    EXPECT_STREQ("Other.cal", recordingParams.calFileName[1]);
    EXPECT_EQ(3, recordingParams.inputChannel);
}

TEST_F(Reconciliation, LoadOffersTheSurveysCurves) {
    statusFlags |= STATUS_LOAD_STORED;
    std::string mast = WriteCalibration("mast.cal", 50.0f);
    std::string bogus = TempTestPath("bogus.cal");
    ASSERT_EQ(1, WriteFileBytes(bogus, "not a curve"));
    SetKey(0, mast);  // the same name: nothing to do
    SetStored(0, mast);
    SetStored(1, "");  // no key and an empty name: "Default.cal" differs, can't open
    SetKey(2, "Current.cal");
    SetStored(2, mast);
    SetKey(3, "Current.cal");
    SetStored(3, mast);
    fake.answers = {1, 0};
    ReconcileOnLoad();

    EXPECT_EQ(std::vector<std::string>{"Warning:\nOriginal calibration file \"\"\n"
                                       "for channel 2 does not exist"},
              fake.messageBoxes);
    EXPECT_EQ(std::vector<int>{ICON_EXCLAMATION}, fake.messageIcons);
    EXPECT_EQ(
        std::vector<std::string>(
            {"Do you want to load original calibration\nfile \"" + mast + "\" for channel 3?",
             "Do you want to load original calibration\nfile \"" + mast + "\" for channel 4?"}),
        fake.questions);
    // Yes: the key, the curve and the lookup follow the survey. No: nothing.
    EXPECT_EQ(mast, Key(2));
    EXPECT_EQ(2, CalTable[2].count);
    EXPECT_EQ(50.0f, ChannelLookup[2][255]);
    EXPECT_EQ("Current.cal", Key(3));
    EXPECT_EQ(0, CalTable[3].count);
    EXPECT_EQ("<absent>", Key(1));
    // The survey itself is not changed.
    EXPECT_STREQ(mast.c_str(), recordingParams.calFileName[3]);

    // Names are compared exactly: another case is another file. A file that
    // opens but is no calibration file: the reader's message, the old curve
    // stays, the key has the new name already.
    fake.questions.clear();
    fake.messageBoxes.clear();
    SetKey(0, mast + "X");
    SetStored(0, mast + "x");
    SetStored(1, "C:\\Surveys\\Missing.cal");
    SetStored(3, bogus);
    fake.answers = {1};
    statusFlags &= ~STATUS_FULL_PATH;
    ReconcileOnLoad();
    EXPECT_EQ(3u, fake.messageBoxes.size());
    EXPECT_EQ("Warning:\nOriginal calibration file \"Missing.cal\"\nfor channel 2 does not exist",
              fake.messageBoxes[1]);
    EXPECT_EQ(1u, fake.questions.size());
    EXPECT_EQ(bogus, Key(3));
    EXPECT_EQ(0, CalTable[3].count);
    remove(mast.c_str());
    remove(bogus.c_str());
}

TEST_F(Reconciliation, SaveBringsTheSurveyUpToDateOnYes) {
    statusFlags |= STATUS_CHECK_STORED;
    SetStored(0, "");               // no key: becomes "Default.cal" silently
    SetKey(1, "C:\\Cal\\New.cal");  // empty name: takes the key silently
    SetStored(1, "");
    SetKey(2, "A.cal");  // differs only in case: asked, Yes
    SetStored(2, "a.cal");
    SetKey(3, "Now.cal");  // asked, No
    SetStored(3, "Then.cal");
    currentInputChannel = 2;
    recordingParams.inputChannel = 0;
    fake.answers = {1, 0, 1};
    ReconcileOnSave();

    EXPECT_EQ(std::vector<std::string>(
                  {std::string("Current channel 3 calibration file\n'A.cal'\ndoes not match the "
                               "calibration filename\n'a.cal'\nstored in the data file") +
                       UpdateQuestion,
                   std::string("Current channel 4 calibration file\n'Now.cal'\ndoes not match "
                               "the calibration filename\n'Then.cal'\nstored in the data file") +
                       UpdateQuestion,
                   std::string("Current TZR4100 input channel [3]\ndoes not match the stored "
                               "channel [1]\n in the data file") +
                       UpdateQuestion}),
              fake.questions);
    EXPECT_STREQ("Default.cal", recordingParams.calFileName[0]);
    EXPECT_STREQ("C:\\Cal\\New.cal", recordingParams.calFileName[1]);
    EXPECT_STREQ("A.cal", recordingParams.calFileName[2]);
    EXPECT_STREQ("Then.cal", recordingParams.calFileName[3]);
    EXPECT_EQ(2, recordingParams.inputChannel);
    EXPECT_EQ("<absent>", Key(0));  // the settings are not written

    // Names are shown as the operator set them to be shown.
    statusFlags &= ~STATUS_FULL_PATH;
    SetStored(1, "C:\\Old\\Old.cal");
    fake.questions.clear();
    ReconcileOnSave();
    EXPECT_EQ(std::string("Current channel 2 calibration file\n'New.cal'\ndoes not match the "
                          "calibration filename\n'Old.cal'\nstored in the data file") +
                  UpdateQuestion,
              fake.questions[0]);
    EXPECT_EQ(2u, fake.questions.size());  // and channel 4's again
}

}  // namespace
