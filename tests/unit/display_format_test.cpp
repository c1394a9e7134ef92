#include "views/display_format.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "survey/cal_lookup.h"

namespace {

class DisplayFormatTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        ScreenFormat = {LATLONG_DEG_MIN, SIGN_NORTH_SOUTH, READING_0_0};
        for (int c = 0; c < 4; c++)
            for (int r = 0; r < 256; r++) ChannelLookup[c][r] = (float)r;
    }

    std::string Screen(int32_t value, int axis, int32_t latLong, int32_t sign) {
        ScreenFormat.latLongMode = latLong;
        ScreenFormat.signMode = sign;
        char out[ScreenTextSize];
        return FormatPosition(value, axis, out);
    }
    std::string Report(int32_t value, int axis, int32_t latLong, int32_t sign) {
        char line[128] = "|";
        AppendPositionField(line, value, axis, DisplayFormat{latLong, sign, 1});
        EXPECT_EQ('|', line[0]);
        return line + 1;
    }
    std::string ScreenReading(int channel, uint8_t raw, int32_t mode) {
        ScreenFormat.readingMode = mode;
        char out[ScreenTextSize];
        return FormatReading(channel, raw, out);
    }
    std::string ReportReading(int channel, uint8_t raw, int32_t mode) {
        char line[64] = "x,";
        AppendReadingField(line, channel, raw, DisplayFormat{1, 1, mode});
        EXPECT_EQ(0, strncmp(line, "x,", 2));
        return line + 2;
    }
};

struct MagnitudeRow {
    int32_t value;
    const char* text[4];  // Deg, Deg Min, Deg Min Sec, Milliseconds
};

const MagnitudeRow MagnitudeTable[] = {
    {1, {"0.0000003", "0 0.00002", "0 0 0.001", "1"}},
    {59999, {"0.0166664", "0 0.99998", "0 0 59.999", "59999"}},
    {3599999, {"0.9999997", "0 59.99998", "0 59 59.999", "3599999"}},
    {-115123456, {"31.9787369", "31 58.72427", "31 58 43.456", "115123456"}},
    {417087123, {"115.8575363", "115 51.45205", "115 51 27.123", "417087123"}},
    {INT32_MIN, {"596.5232544", "596 31.39413", "596 31 23.648", "2147483648"}},  // 2^31 kept
};

// Degrees are single precision: a double division would give 31.9787378 for
// 115123456.
TEST_F(DisplayFormatTest, PositionsOfEveryModeInBothFamilies) {
    for (const MagnitudeRow& row : MagnitudeTable) {
        for (int mode = 1; mode <= 4; mode++) {
            SCOPED_TRACE(std::to_string(row.value) + " mode " + std::to_string(mode));
            std::string m = row.text[mode - 1];
            bool negative = row.value < 0;
            // Screen: bare magnitude behind the sign in "+/-", letters in N/S.
            EXPECT_EQ((negative ? "-" : "") + m, Screen(row.value, AXIS_LATITUDE, mode, 2));
            EXPECT_EQ(m + (negative ? " S" : " N"), Screen(row.value, AXIS_LATITUDE, mode, 1));
            EXPECT_EQ(m + (negative ? " W" : " E"), Screen(row.value, AXIS_LONGITUDE, mode, 1));
            // Report: letters in N/S; in "+/-" always a sign except Milliseconds.
            EXPECT_EQ(m + (negative ? " S" : " N"), Report(row.value, AXIS_LATITUDE, mode, 1));
            EXPECT_EQ(m + (negative ? " W" : " E"), Report(row.value, AXIS_LONGITUDE, mode, 1));
            std::string sign = negative ? "-" : (mode == 4 ? "" : "+");
            EXPECT_EQ(sign + m, Report(row.value, AXIS_LONGITUDE, mode, 2));
        }
    }
    // A mode outside the list: milliseconds on the screen, degrees in a report;
    // any sign mode but 2 gives letters, any axis but latitude East/West.
    EXPECT_EQ("115123456 S", Screen(-115123456, AXIS_LATITUDE, 0, 1));
    EXPECT_EQ("31.9787369 S", Report(-115123456, AXIS_LATITUDE, 5, 7));
    EXPECT_EQ("0 0.00002 W", Screen(-1, 0, 2, -1));
}

// Each reading mode on the screen and in a report: truncated toward zero,
// saturated, the nearest table for a channel outside 0..3, and a mode outside
// the list as three decimals on the screen but the integer in a report.
TEST_F(DisplayFormatTest, ReadingsOnTheScreenAndInReports) {
    ChannelLookup[2][10] = -0.7f;
    ChannelLookup[2][11] = -3.7f;
    ChannelLookup[1][6] = -3.0e38f;
    ChannelLookup[1][7] = 2147483648.0f;
    ChannelLookup[0][9] = 1.5f;
    ChannelLookup[3][9] = 2.5f;
    const struct { int channel; uint8_t raw; int32_t mode; const char *screen, *report; } cases[] = {
        {2, 10, 0, "0", "0"},
        {2, 10, 3, "-0.700", "-0.700"},
        {2, 11, 2, "-3.700", "-3"},
        {2, 11, -2, "-3.700", "-3"},
        {1, 7, 0, "2147483647", "2147483647"},
        {1, 6, 0, "-2147483648", "-2147483648"},
        {9, 9, 3, "2.500", "2.500"},
        {-4, 9, 3, "1.500", "1.500"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.channel << " " << (int)c.raw << " mode " << c.mode);
        EXPECT_EQ(c.screen, ScreenReading(c.channel, c.raw, c.mode));
        EXPECT_EQ(c.report, ReportReading(c.channel, c.raw, c.mode));
    }
    // A report field is cut to one field's room, or to the line's size.
    char line[ReportFieldSize * 2] = "";
    ChannelLookup[1][5] = 3.0e38f;
    AppendReadingField(line, 1, 5, DisplayFormat{1, 1, 3});
    EXPECT_EQ((size_t)ReportFieldSize - 1, strlen(line));
    char buffer[16];
    memset(buffer, '#', sizeof buffer);
    strcpy(buffer, "abc");
    AppendPositionField(buffer, 10, -115123456, AXIS_LATITUDE, DisplayFormat{2, 2, 1});
    EXPECT_STREQ("abc-31 58", buffer);
    EXPECT_EQ('#', buffer[10]);
    AppendReadingField(buffer, 10, 0, 200, DisplayFormat{1, 1, -1});
    EXPECT_STREQ("abc-31 58", buffer);
    // A line with no terminator inside its size is ended, not read beyond.
    memset(buffer, 'z', sizeof buffer);
    AppendReadingField(buffer, 8, 0, 7, DisplayFormat{1, 1, -1});
    EXPECT_EQ(std::string(7, 'z'), std::string(buffer));
}

TEST_F(DisplayFormatTest, ChannelMarkInRecordRowsAndLiveRow) {
    ScreenFormat.readingMode = -1;
    currentInputChannel = 2;
    Record row = {};
    row.ch[0] = 10;
    row.ch[2] = 30;
    row.accessoryChannel = 7;
    char out[ScreenTextSize];
    EXPECT_STREQ("30", FormatRowReading(row, 2, out));  // no RECORD_HAS_CHANNEL
    row.flags = RECORD_HAS_CHANNEL;
    EXPECT_STREQ("30 [7]", FormatRowReading(row, 2, out));
    EXPECT_STREQ("10", FormatRowReading(row, 0, out));  // not the input channel

    LiveRowText live;
    memset(&live, '#', sizeof live);
    liveState.liveLatitude = -115123456;
    EXPECT_EQ(0, FormatLiveRow(&live));  // dataValidTicks 0
    EXPECT_STREQ("- No currently valid data -", live.cell[0]);
    for (int c = 1; c < ListingColumnCount; c++) EXPECT_STREQ("", live.cell[c]);

    ScreenFormat = {LATLONG_DEG_MIN, SIGN_NORTH_SOUTH, READING_0_0};
    recordCount = 41;
    liveState.dataValidTicks = 4;
    liveState.liveLongitude = 417087123;
    for (int c = 0; c < 4; c++) liveState.liveReadings[c] = (uint8_t)(20 + c);
    EXPECT_EQ(1, FormatLiveRow(&live));
    const char* expected[] = {"42",   "31 58.72427 S", "115 51.45205 E", "20.0", "21.0",
                              "22.0", "23.0"};  // accessory channel 0: no mark
    for (int c = 0; c < ListingColumnCount; c++) EXPECT_STREQ(expected[c], live.cell[c]);
    liveState.liveAccessoryChannel = 5;
    FormatLiveRow(&live);
    EXPECT_STREQ("22.0 [5]", live.cell[5]);
    EXPECT_STREQ("23.0", live.cell[6]);
}

TEST_F(DisplayFormatTest, RowStampAndDateText) {
    char out[ScreenTextSize];
    EXPECT_STREQ("1 - unknown", FormatRowStamp(0, 0, out));
    EXPECT_STREQ("12 - unknown", FormatRowStamp(11, 0, out));
    // The fake breaks clock values down as UTC.
    const uint32_t tuesday = 1614675907u;  // 2021-03-02 09:05:07
    EXPECT_STREQ("12 - 09:05:07", FormatRowStamp(11, tuesday, out));
    EXPECT_STREQ("16000 - 23:59:59", FormatRowStamp(15999, 86399, out));
    EXPECT_STREQ("2147483648 - 00:00:01", FormatRowStamp(INT32_MAX, 1, out));

    char date[DateTextSize];
    EXPECT_STREQ("Tue Mar 02 09:05:07 2021\n", FormatDateText(tuesday, date));
    EXPECT_STREQ("Sat Mar 06 09:05:07 2021\n", FormatDateText(tuesday + 4 * 86400, date));
    EXPECT_STREQ("Thu Jan 01 00:00:00 1970\n", FormatDateText(0, date));
    EXPECT_STREQ("Tue Jan 19 03:14:07 2038\n", FormatDateText(INT32_MAX, date));
    // The 32-bit time functions refuse later times: no date, no time of day.
    EXPECT_STREQ("", FormatDateText(0x80000000u, date));
    EXPECT_STREQ("12 - ", FormatRowStamp(11, UINT32_MAX, out));
}

}  // namespace
