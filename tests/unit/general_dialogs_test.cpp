#include "dialogs/general_dialogs.h"

#include <gtest/gtest.h>
#include <string.h>

#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "views/display_format.h"
#include "views/plot_view.h"

namespace {

struct GeneralDialogs : ::testing::Test {
    void SetUp() override { ResetFakeWorld(); }
};

TEST_F(GeneralDialogs, DisplayBoxShowsUnknownModesAsTheFirstButtonAndStoresRawAsMinusOne) {
    struct {
        int32_t latLong, sign, reading;
        DisplayBoxValues shown;
        const char* stored;
    } cases[] = {
        {2, 1, 1, {1, 0, 1}, "2 1 1"},
        {3, 2, 3, {2, 1, 2}, "3 2 3"},
        {0, 7, 2, {0, 0, 0}, "1 1 0"},  // no button of their own: Deg, North/South, "0"
        {5, -1, 9, {0, 0, 0}, "1 1 0"},
    };
    for (auto& c : cases) {
        ScreenFormat = {c.latLong, c.sign, c.reading};
        DisplayBoxValues v = {-5, -5, -5};
        DisplayBoxOpen(&v);
        EXPECT_EQ(c.shown.latLong, v.latLong) << c.stored;
        EXPECT_EQ(c.shown.sign, v.sign) << c.stored;
        EXPECT_EQ(c.shown.reading, v.reading) << c.stored;
        DisplayBoxStore(&v);
        char got[64];
        snprintf(got, sizeof got, "%d %d %d", ReadSetting(KeyListingLatLong),
                 ReadSetting(KeyListingSign), ReadSetting(KeyListingDecimalPlaces));
        EXPECT_STREQ(c.stored, got);
        EXPECT_EQ(ReadSetting(KeyListingDecimalPlaces), ScreenFormat.readingMode);
    }
}

TEST_F(GeneralDialogs, ColoursBoxSpinsKeepTheBreaksFallingAndTheDotSizeInRange) {
    struct {
        const char *b1, *b2, *b3, *dot;
        int control, delta;
        const char* after;
    } cases[] = {
        {"80", "40", "39", "5", 2, 1, "39.000"},   // 40 reaches the second: one below it
        {"61", "60", "40", "5", 0, -1, "61.000"},  // 60 reaches the second: one above it
        {"80", "60", "40", "5", 0, -1, "79.000"},
        {"80", "79.5", "40", "5", 1, 1, "79.000"}, {"80", "60", "59.5", "5", 1, -1, "60.500"},
        {"80", "60", "40", "5", 2, -1, "39.000"},  {"80", "60", "x", "5", 2, 1, "1.000"},
        {"80", "60", "40", "50", 3, 1, "50"},      {"80", "60", "40", "60", 3, -1, "59"},
        {"80", "60", "40", "49", 3, 1, "50"},      {"80", "60", "40", "1", 3, -1, "1"},
        {"80", "60", "40", "2", 3, -1, "1"},
    };
    for (auto& c : cases) {
        ColoursBoxValues v;
        strcpy(v.breaks[0], c.b1), strcpy(v.breaks[1], c.b2), strcpy(v.breaks[2], c.b3);
        strcpy(v.dotSize, c.dot);
        ColoursBoxSpin(&v, c.control, c.delta);
        const char* moved = c.control == COLOURS_DOT_SIZE ? v.dotSize : v.breaks[c.control];
        EXPECT_STREQ(c.after, moved) << c.control << " " << c.delta;
    }
}

TEST_F(GeneralDialogs, ColoursBoxOkTestsTheOrderBeforeTheDotSize) {
    struct {
        const char *b1, *b2, *b3, *dot, *message;
    } cases[] = {
        {"3", "2", "1", "1", nullptr},
        {"80.5", "80.25", "-1", "50", nullptr},
        {"80", "80", "40", "5", "Error in number sequance"},
        {"40", "60", "80", "0", "Error in number sequance"},
        {"80", "60", "40", "0", "Invalid dot size\n(Range 1 - 50)"},
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        powerBreak[0] = 1, powerBreak[1] = 2, powerBreak[2] = 3, dotSize = 9;
        ColoursBoxValues v;
        strcpy(v.breaks[0], c.b1), strcpy(v.breaks[1], c.b2), strcpy(v.breaks[2], c.b3);
        strcpy(v.dotSize, c.dot);
        EXPECT_EQ(c.message ? 0 : 1, ColoursBoxStore(&v)) << c.b1 << " " << c.dot;
        ASSERT_EQ(c.message ? 1u : 0u, fake.messageBoxes.size()) << c.b1;
        if (c.message) {
            EXPECT_EQ(c.message, fake.messageBoxes[0]);
            EXPECT_EQ(ICON_EXCLAMATION, fake.messageIcons[0]);
            EXPECT_EQ(9, dotSize);
            EXPECT_EQ(1.0f, powerBreak[0]);
            EXPECT_EQ(5, ReadSettingNumber(KeyPlotDotSize));  // nothing written
            continue;
        }
        EXPECT_FLOAT_EQ((float)atof(c.b2), powerBreak[1]);
        EXPECT_EQ(atoi(c.dot), dotSize);
        char text[32];
        ReadSetting(KeyPlotPowerBreak2, text, sizeof text);
        EXPECT_DOUBLE_EQ(atof(c.b2), atof(text));
        EXPECT_NE(nullptr, strchr(text, '.'));
    }
}

TEST_F(GeneralDialogs, RecSettingsTakesNumbersBelowOneAsOneAndRefusesDistanceInTzrMode) {
    struct {
        uint32_t flags;
        int distance;
        const char* seconds;
        int result, storedSeconds;
    } cases[] = {
        {0, 1, "7", 1, 7},
        {0, 0, "-4", 1, 1},
        {0, 0, "abc", 1, 1},
        {STATUS_TZR_MODE, 1, "9", 0, 5},  // refused: nothing at all changes
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        statusFlags = c.flags;
        recordIntervalSeconds = 5, autosaveMinutes = 5;
        strcpy(channelLabels[2], "old");
        RecSettingsValues v = {};
        v.distance = c.distance, v.autosave = 1, v.averaging = 1;
        strcpy(v.seconds, c.seconds), strcpy(v.meters, "x"), strcpy(v.minutes, "12");
        strcpy(v.labels[2], "new");
        EXPECT_EQ(c.result, RecSettingsStore(&v)) << c.seconds;
        EXPECT_EQ(c.storedSeconds, recordIntervalSeconds) << c.seconds;
        EXPECT_EQ(c.result, (int)fake.messageBoxes.empty()) << c.seconds;
        EXPECT_EQ(c.result ? 12 : 5, autosaveMinutes);
        EXPECT_STREQ(c.result ? "new" : "old", channelLabels[2]);
        EXPECT_EQ(c.result != 0, (statusFlags & STATUS_AVERAGING) != 0);
        EXPECT_EQ(c.result && c.distance, (statusFlags & STATUS_DISTANCE_INTERVAL) != 0);
        EXPECT_EQ(c.result ? c.storedSeconds : 5, ReadSetting(KeyRecordIntervalSeconds));
        EXPECT_EQ(c.result ? 1 : 500, ReadSetting(KeyRecordIntervalMeters));
    }
}

TEST_F(GeneralDialogs, PrefBoxSizeSpinStaysWithinOneToAHundred) {
    struct {
        const char* text;
        int delta;
        const char* after;
    } cases[] = {
        {"12", -1, "11"}, {"100", 1, "100"}, {"1", -1, "1"},     {"2", -1, "1"},
        {"150", 1, "150"}, {"abc", 1, "1"},  {"abc", -1, "abc"},
    };
    for (auto& c : cases) {
        char text[GeneralEditSize];
        strcpy(text, c.text);
        PrefBoxSizeSpin(text, c.delta);
        EXPECT_STREQ(c.after, text) << c.text << " " << c.delta;
    }
}

}  // namespace
