#include "survey/survey_state.h"

#include <gtest/gtest.h>
#include <string.h>

#include "fake_platform.h"
#include "link/controller_messages.h"
#include "resources/resource_ids.h"

namespace {

class SurveyState : public ::testing::Test {
protected:
    void SetUp() override { ResetFakeWorld(); }
};

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

}  // namespace
