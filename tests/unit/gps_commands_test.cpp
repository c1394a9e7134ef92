#include "link/gps_commands.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "storage/settings_file.h"

namespace {

class GpsCommands : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        fake.portOpen = true;
    }

    static void Put(char* field, const char* text) { snprintf(field, GpsFieldSize, "%s", text); }

    // Runs one Set with four texts; kind 0 time, 1 date, 2 latitude, 3 longitude (a, b name
    // the radio buttons, first and second). Returns the frame sent, or the message shown.
    static std::string Set(int kind, const char* a, const char* b, const char* c, const char* d,
                           int first = 1, int second = 0) {
        ResetFakeWorld();
        fake.portOpen = true;
        int ok;
        if (kind == 0) {
            GpsTimeFields f;
            Put(f.hour, a);
            Put(f.minute, b);
            Put(f.second, c);
            Put(f.utcOffset, d);
            ok = GpsSetTime(&f);
            if (ok) return FramesSent().back() + " | " + f.hour + ":" + f.minute + ":" + f.second;
        } else if (kind == 1) {
            GpsDateFields f;
            Put(f.day, a);
            Put(f.month, b);
            Put(f.year, c);
            ok = GpsSetDate(&f);
            if (ok) return FramesSent().back() + " | " + f.year;
        } else {
            GpsPositionFields f = {first, second, {}, {}, {}};
            Put(f.degrees, a);
            Put(f.minutes, b);
            Put(f.seconds, c);
            ok = kind == 2 ? GpsSetLatitude(&f) : GpsSetLongitude(&f);
            if (ok) return FramesSent().back() + " | " + f.seconds;
            EXPECT_STREQ(c, f.seconds);  // left as typed
        }
        EXPECT_TRUE(fake.wire.empty());
        EXPECT_TRUE(fake.statusLines.empty());
        EXPECT_EQ(std::vector<int>{ICON_STOP}, fake.messageIcons);
        return fake.messageBoxes.empty() ? "" : fake.messageBoxes[0];
    }
};

TEST_F(GpsCommands, SetTimeAndDate) {
    EXPECT_EQ("OT 4 59 0 | 23:59:00", Set(0, "23", "59", "0", "-5"));
    EXPECT_EQ("Invalid hour value", Set(0, "24", "99", "99", "99"));  // the first bound fails
    EXPECT_EQ("Invalid hour value", Set(0, "-1", "0", "0", "0"));     // compared as unsigned
    EXPECT_EQ("Invalid minute value", Set(0, "1", "60", "0", "0"));
    EXPECT_EQ("Invalid second value", Set(0, "1", "0", "61", "0"));
    EXPECT_EQ("Invalid UTC offset", Set(0, "1", "2", "3", "-13"));
    EXPECT_EQ(0, ReadSetting(KeyGpsUtcOffset));
    // Blanks before a number are skipped; 12 is the last offset taken.
    EXPECT_EQ("OT 11 2 3 | 23:02:03", Set(0, " 23", "\t2", "3", "12"));
    EXPECT_EQ(12, ReadSetting(KeyGpsUtcOffset));

    EXPECT_EQ("OD 31 4 1985 | 1985", Set(1, "31", "4", "85", ""));  // 31 in April passes
    EXPECT_EQ("OD 1 1 2000 | 2000", Set(1, "1", "1", "0", ""));
    EXPECT_EQ("OD 1 1 2077 | 2077", Set(1, "1", "1", "2077", ""));
    EXPECT_EQ("Invalid day value", Set(1, "0", "13", "78", ""));
    EXPECT_EQ("Invalid day value", Set(1, "32", "1", "1", ""));
    EXPECT_EQ("Invalid month value", Set(1, "1", "13", "1", ""));
    for (const char* year : {"79", "2078", "1979", "-5", "100"})
        EXPECT_EQ("Invalid year value", Set(1, "1", "1", year, "")) << year;

    // With the port closed nothing goes out, but the status line is written.
    fake.portOpen = false;
    GpsDateFields f = {"2", "3", "2021"};
    EXPECT_EQ(1, GpsSetDate(&f));
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(1, CountStatus("Set GPS date command sent"));
}

TEST_F(GpsCommands, ResetAndSelfTestAnsweredNoSendNothing) {
    fake.answers = {0, 0, 1};
    EXPECT_EQ(0, GpsReset());
    EXPECT_EQ(0, GpsSelfTest());
    EXPECT_EQ(2u, fake.questions.size());
    EXPECT_TRUE(fake.wire.empty() && fake.statusLines.empty() && fake.messageBoxes.empty());
    EXPECT_EQ(1, GpsReset());  // Yes: the note that follows carries the question icon
    EXPECT_EQ(std::vector<int>{ICON_QUESTION}, fake.messageIcons);
}

TEST_F(GpsCommands, OpeningFields) {
    fake.now = 1614675907u;  // 2 March 2021 09:05:07
    WriteSetting(KeyGpsUtcOffset, "-20");
    WriteSetting(KeyGpsLatNS, "n");  // only a capital N means North
    WriteSetting(KeyGpsLatDeg, "95");
    WriteSetting(KeyGpsLatMin, "-70");
    WriteSetting(KeyGpsLatSec, "75.5");
    WriteSetting(KeyGpsLongDeg, "-200");
    WriteSetting(KeyGpsLongSec, "-12.3456");
    GpsBoxFields f;
    LoadGpsBoxFields(&f);
    EXPECT_EQ("9:05:07 2/3/2021", std::string(f.time.hour) + ":" + f.time.minute + ":" +
                                      f.time.second + " " + f.date.day + "/" + f.date.month + "/" +
                                      f.date.year);
    EXPECT_EQ(std::vector<std::string>({"-12", "90", "-59", "59.000", "-180", "0", "-12.346"}),
              std::vector<std::string>({f.time.utcOffset, f.latitude.degrees, f.latitude.minutes,
                                        f.latitude.seconds, f.longitude.degrees,
                                        f.longitude.minutes, f.longitude.seconds}));
    EXPECT_EQ(1, f.latitude.southOrWest);
    EXPECT_EQ(0, f.latitude.northOrEast);
    EXPECT_EQ(1, f.longitude.northOrEast);  // "Long E/W" defaults to "E"
}

}  // namespace
