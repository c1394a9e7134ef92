#include "survey/record_filter.h"

#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "base/busy.h"
#include "fake_platform.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"

namespace {

class RecordFilter : public ::testing::Test {
protected:
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
    // Removing every row leaves no tags and no message.
    strcpy(f.latitudeText, "-100");
    EXPECT_EQ(1, FilterDialogOk(f));
    EXPECT_EQ(0, recordCount);
    EXPECT_EQ(0, tagCount);
    EXPECT_EQ(1u, fake.messageBoxes.size());

    // "less than" on both axes, signed: rows 2..6 stay, in order, and the
    // tags behind the removed rows move up.
    Fill(10);
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
    EXPECT_EQ(1, Reading(FILTER_TEST_LESS, -1.0f, 2, 0));
    EXPECT_EQ(45, Reading(FILTER_TEST_GREATER, 300.0f, 4, 0));  // 300 acts as 44
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
        {"12.9", 12, 12.9f},
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

}  // namespace
