#include "dialogs/tag_dialogs.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>

#include "fake_platform.h"
#include "views/chart_view.h"
#include "views/listing_view.h"
#include "views/plot_view.h"
#include "views/tags_view.h"

namespace {

struct TagDialogs : ::testing::Test {
    void SetUp() override { ResetFakeWorld(); }
    // Tags on the given records, with texts "a", "b", ... in that order.
    void Tags(std::initializer_list<int> records) {
        tagCount = 0;
        for (int r : records) {
            tagRecord[tagCount] = r;
            snprintf(tagText[tagCount], TagTextSize, "%c", 'a' + tagCount);
            tagCount++;
        }
    }
    std::string Table() {
        std::string out;
        for (int i = 0; i < tagCount; i++) out += std::to_string(tagRecord[i]) + tagText[i] + " ";
        return out;
    }
};

TEST_F(TagDialogs, OpeningRefusesOrOffersTheTagOrTheLastRecord) {
    struct { int records, tags, number, result; const char *index, *text, *message; } cases[] = {
        {0, 2, 0, TagDialogRefused, "", "", "No records to tag"},
        {5, 1000, -1, TagDialogRefused, "", "", "Maximum number of text tags reached"},
        {5, 1000, 999, 999, "4", "z", nullptr},  // an edit still opens at 1000 tags
        {5, 2, 2, -1, "5", "", nullptr},  // no such tag: a new one on the last record
        {5, 999, -1, -1, "5", "", nullptr},
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        recordCount = c.records;
        tagCount = (int16_t)c.tags;
        if (c.tags > 0) tagRecord[c.tags - 1] = 3, strcpy(tagText[c.tags - 1], "z");
        TagDialogValues v;
        strcpy(v.index, ""), strcpy(v.text, "");
        EXPECT_EQ(c.result, TagDialogOpen(c.number, &v)) << c.records << " " << c.number;
        EXPECT_STREQ(c.index, v.index) << c.number;
        EXPECT_STREQ(c.text, v.text) << c.number;
        ASSERT_EQ(c.message ? 1u : 0u, fake.messageBoxes.size()) << c.number;
        if (!c.message) continue;
        EXPECT_EQ(c.message, fake.messageBoxes[0]);
        EXPECT_EQ(ICON_STOP, fake.messageIcons[0]);
    }
}

TEST_F(TagDialogs, OkStoresOnlyARecordOfTheStoreWithText) {
    struct { int inHand; const char *index, *text; int result; const char* table; } cases[] = {
        {-1, "6", "new", 0, "1a 3b "},
        {-1, "abc", "new", 0, "1a 3b "},
        {-1, "5", "", 0, "1a 3b "},
        {-1, "1x", "new", 1, "1a 3b 0new "},  // atoi
        {1, "0", "bad", 0, "1a 3b "},
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        recordCount = 5;
        Tags({1, 3});
        TagDialogValues v;
        strcpy(v.index, c.index), strcpy(v.text, c.text);
        EXPECT_EQ(c.result, TagDialogStore(c.inHand, &v)) << c.index << " " << c.text;
        EXPECT_EQ(c.table, Table()) << c.index << " " << c.text;
    }
}

TEST_F(TagDialogs, SortKeepsTagsOfOneRecordInOrderAndDeleteMovesLaterTagsDown) {
    recordCount = 10;
    Tags({7, 3, 7, 0, 3});
    SortTags();
    EXPECT_EQ("0d 3b 3e 7a 7c ", Table());
    char line[64];
    TagLineText(2, line, sizeof line);
    EXPECT_STREQ("4 - e", line);

    fake.windowExists[WINDOW_TAGS] = true;
    DeleteTag(1);
    EXPECT_EQ("0d 3e 7a 7c ", Table());
    EXPECT_TRUE(statusFlags & STATUS_CHANGED);
    EXPECT_EQ(std::vector<int>{WINDOW_TAGS}, fake.notifications);
    fake.windowExists[WINDOW_LISTING] = true;
    DeleteTag(4);  // no such tag
    DeleteTag(3);
    EXPECT_EQ("0d 3e 7a ", Table());
    ASSERT_EQ(1u, fake.repaints.size());
    EXPECT_TRUE(fake.repaints[0].area == AREA_LISTING_INDEX && fake.repaints[0].erase == 1);
}

TEST_F(TagDialogs, ManualReadingOpensWithLiveOrAveragedValuesAndOkCutsReadings) {
    struct { uint32_t flags; int count; const char *lat, *ch1, *ch4; int countAfter; } cases[] = {
        {0, 2, "500", "7", "8", 2},
        {STATUS_AVERAGING, 0, "500", "7", "8", 0},
        {STATUS_AVERAGING, 1, "-7", "30", "31", 0},
        {STATUS_AVERAGING, 2, "-3", "20", "21", 0},  // (-7 + 1) / 2
        {STATUS_AVERAGING, 3, "-1", "20", "20", 0},  // (-7 + 1 + 2) / 3 toward zero
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        statusFlags = c.flags;
        liveState.liveLatitude = 500, liveState.liveReadings[0] = 7, liveState.liveReadings[3] = 8;
        int32_t history[3] = {-7, 1, 2};
        memcpy(averageHistory.latitudeHistory, history, sizeof history);
        averageHistory.positionHistoryCount = c.count;
        averageHistory.readingHistoryCount = c.count;
        uint8_t readings[3] = {30, 10, 20};
        memcpy(averageHistory.readingHistory[0], readings, 3);
        readings[0] = 31, readings[1] = 11;
        memcpy(averageHistory.readingHistory[3], readings, 3);
        ManualReadingValues v;
        ManualReadingOpen(&v);
        EXPECT_STREQ(c.lat, v.latitude) << c.count;
        EXPECT_STREQ(c.ch1, v.readings[0]) << c.count;
        EXPECT_STREQ(c.ch4, v.readings[3]) << c.count;
        EXPECT_TRUE(averageHistory.positionHistoryCount == c.countAfter &&
                    averageHistory.readingHistoryCount == c.countAfter) << c.count;
    }
    ManualReadingValues typed = {"-400000000", "12x", {"300", "-1", "255", "abc"}};
    ManualReadingStore(&typed);
    EXPECT_TRUE(manualReading.latitude == -400000000 && manualReading.longitude == 12);
    const uint8_t want[4] = {44, 255, 255, 0};
    EXPECT_EQ(0, memcmp(want, manualReading.readings, 4));
}

}  // namespace
