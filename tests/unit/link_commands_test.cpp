// The link's frames, the controller's messages, the accessory modes and the
// GPS commands, against the fake platform with the port open.
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "link/accessory_modes.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "link/gps_commands.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"

namespace {

using Frames = std::vector<std::string>;

const char* const Invalid = "Received invalid data from controller";

struct Link : ::testing::Test {
    void SetUp() override {
        ResetFakeWorld();
        fake.portOpen = true;
    }
};

// A frame goes out in one write; what the receiver takes is in GoodAndBadLines.
TEST_F(Link, SendWritesOneFrameRefusesAndRewritesBodies) {
    EXPECT_EQ(0, Crc8("KA", -1));
    ASSERT_EQ(1, SendFrameText("RP 180000000 -360000000"));
    EXPECT_EQ(Frames{"#RP 180000000 -360000000:A4\r"}, fake.writes);
    EXPECT_STREQ("#RP 180000000 -360000000:A4\r", lastFrame);
    char body[] = "A#B\rC";
    ASSERT_EQ(1, SendFrame(body));
    EXPECT_EQ(Frame("A B C"), fake.writes.back());
    char empty[] = "";
    EXPECT_EQ(0, SendFrame(empty));
    fake.portOpen = false;
    strcpy(lastFrame, "#KA:A0\r");
    keepAliveTicks = 2;
    retransmitCount = 3;
    EXPECT_EQ(0, SendFrameText("OP 1"));
    // A refused send leaves the link state alone.
    EXPECT_STREQ("#KA:A0\r", lastFrame);
    EXPECT_EQ(2, keepAliveTicks);
    EXPECT_EQ(3, retransmitCount);
    fake.portOpen = true;
    EXPECT_EQ(1, SendFrameText("OP 1"));
    EXPECT_EQ(5, keepAliveTicks);
    EXPECT_EQ(0, retransmitCount);
}

// Check digits are read up to the first non-digit: "ZZ" and "0Z" read 0, the
// check of an empty body, and "AZ" reads 0x0A.
TEST_F(Link, GoodAndBadLines) {
    for (const char* good : {"#:00\r", "#KA:a0\r", "#:ZZ\r", "#:0Z\r"}) Receive(good);
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(0, CountStatus(Invalid));
    const char* bad[] = {"#KA:A1\r", "\r", "KA:A0\r", "x#KA:A0\r", "#KA;A0\r", "A0\r", "#KA:\r",
                         "#KA:AZ\r"};
    for (const char* line : bad) {
        fake.wire.clear();
        size_t before = fake.statusLines.size();
        Receive(line);
        EXPECT_EQ(Frames{"NA"}, FramesSent()) << line;
        ASSERT_EQ(before + 1, fake.statusLines.size());
        EXPECT_EQ(Invalid, fake.statusLines.back());
    }
    // A bad line with the port closed still shows its message.
    fake.portOpen = false;
    fake.wire.clear();
    Receive("#KA:00\r");
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(9, CountStatus(Invalid));
}

TEST_F(Link, NulEndsAPieceAndOverflowRestartsTheBuffer) {
    Receive(Frame("RA 9 9 9 9 0") + std::string("\0", 1) + Frame("RP 1 1"));
    EXPECT_EQ(9, liveState.liveReadings[0]);
    EXPECT_EQ(0, liveState.liveLatitude);  // lost behind the NUL
    EXPECT_STREQ("", receiveBuffer);
    Receive(std::string(1023, 'x'));  // 1023 still fits
    EXPECT_EQ(1023u, strlen(receiveBuffer));
    EXPECT_EQ(0, CountStatus("<< Port Overflow >>"));
    Receive("z");  // 1024 does not
    EXPECT_EQ(1, CountStatus("<< Port Overflow >>"));
    EXPECT_STREQ("z", receiveBuffer);
    // A piece longer than the whole buffer is cut, never written past it.
    Receive(std::string(5000, 'q'));
    EXPECT_EQ(1023u, strlen(receiveBuffer));
    Receive("\r" + Frame("RA 7 7 7 7 0"));
    EXPECT_EQ(7, liveState.liveReadings[0]);
}

// The GPS status is logged only where a bit changes: 16 after 48 still gives fixes.
TEST_F(Link, TextMessagesGpsStatusChangesAndUnknownCodes) {
    for (const char* m :
         {"ST Battery low", "VI 2 3 1", "DB x=1", "ES 4", "ES0", "ES 48", "ES 16", "ES 0", "ES 9"})
        HandleControllerMessage(m);
    EXPECT_EQ((Frames{"Controller: Battery low", "Controller firmware version: v2.3.1",
                      "Controller debug: x=1", "GPS differential correction active",
                      "GPS differential correction inactive", "GPS giving position fixes",
                      "GPS not giving position fixes", "GPS insufficient visable satellites",
                      "GPS acquiring satellites/position hold"}),
              fake.statusLines);
    EXPECT_EQ(9, liveState.gpsStatus);
    commsWatchdogTicks = 3;
    // The second letter must fit the first.
    for (const char* unknown : {"XX", "RX 1", "EX 1", "R", ""})
        EXPECT_EQ(0, HandleControllerMessage(unknown)) << unknown;
    EXPECT_EQ(3, commsWatchdogTicks);
    EXPECT_TRUE(fake.wire.empty());
}

TEST_F(Link, RetransmitsAtMostFiveTimes) {
    Receive(Frame("NA"));  // nothing to repeat before any frame
    EXPECT_TRUE(fake.wire.empty());
    SendFrameText("MC 1");
    fake.wire.clear();
    for (int i = 0; i < 6; i++) Receive(Frame("NA"));
    EXPECT_EQ(Frames(5, "MC 1"), FramesSent());
    EXPECT_EQ(12, commsWatchdogTicks);  // the ignored sixth still re-arms
    SendFrameText("OP 1");
    fake.wire.clear();
    for (int i = 0; i < 5; i++) Receive(Frame("NA"));
    EXPECT_EQ(Frames(5, "OP 1"), FramesSent());
}

TEST_F(Link, SelfTestReport) {
    fake.windowExists[WINDOW_GPS] = true;
    HandleControllerMessage("ET 6 384");  // 0x0180: ROM once
    HandleControllerMessage("ET 8 8192");  // the last line of the longer list
    HandleControllerMessage("ET 6 0");
    HandleControllerMessage("ET 0 0");
    EXPECT_EQ((Frames{"GPS self test failure(s):\n\nRead only memory (ROM)\n",
                      "GPS self test failure(s):\n\nReal time clock communications or time\n",
                      "GPS self test passed", "GPS self test failed\nNo communications with GPS"}),
              fake.messageBoxes);
    size_t lines = fake.statusLines.size();
    commsWatchdogTicks = 4;
    HandleControllerMessage("ET 7 1");
    EXPECT_EQ(4u, fake.messageBoxes.size());
    EXPECT_EQ(lines, fake.statusLines.size());
    EXPECT_EQ(12, commsWatchdogTicks);
    // With the dialog closed only the status line remains.
    fake.windowExists[WINDOW_GPS] = false;
    HandleControllerMessage("ET 8 16385");
    EXPECT_EQ(4u, fake.messageBoxes.size());
    EXPECT_EQ("GPS self test failed (Code 0x4001)", fake.statusLines.back());
}

TEST_F(Link, TzrAsksBeforeTakingOverAnotherMode) {
    statusFlags = STATUS_GPS_DIFF_MODE;
    fake.answers = {0};
    EXPECT_EQ(0, ApplyTzrMode());
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(STATUS_GPS_DIFF_MODE, statusFlags);
    statusFlags = STATUS_AR3000A_MODE | STATUS_GPS_DIFF_MODE;  // a hand-edited file
    fake.answers = {1, 1};
    EXPECT_EQ(1, ApplyTzrMode());
    EXPECT_EQ(STATUS_TZR_MODE, statusFlags);
    EXPECT_EQ(
        (Frames{"Enabling TRZ scan mode will disable AR3000A differential mode.\nDo you want to continue?",
                "Enabling TZR4100 mode will disable AR3000A scan mode.\nDo you want to continue?",
                "Enabling TRZ scan mode will disable AR3000A differential mode.\nDo you want to continue?"}),
        fake.questions);
}

TEST_F(Link, Ar3000aAndGpsDiffTakeOverOnlyOnYes) {
    WriteSetting(KeyAr3000aFreq[0], std::string(200, '9').c_str());  // an absurd one is cut
    WriteSetting(KeyAr3000aEnable, "1");
    statusFlags = STATUS_TZR_MODE;
    fake.answers = {0, 1, 1, 1};
    EXPECT_EQ(0, ApplyAr3000aMode());
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(STATUS_TZR_MODE, statusFlags);
    EXPECT_EQ(1, ApplyAr3000aMode());
    EXPECT_EQ(STATUS_AR3000A_MODE, statusFlags);
    EXPECT_EQ("0", StoredSetting("TZR4100", "Enable TZR4100 mode"));
    EXPECT_EQ("0", StoredSetting("GPS Diff", "Enable GPS Diff mode"));
    WriteSetting(KeyGpsDiffEnable, "1");
    ApplyGpsDiffMode();
    EXPECT_EQ((Frames{"AC T" + std::string(31, '9') + "W,T89.0W,T90.0W,T91.0W,4800", "AS 1",
                      "GD 1 4800"}),
              FramesSent());
    EXPECT_EQ(STATUS_GPS_DIFF_MODE, statusFlags);
    EXPECT_EQ("0", StoredSetting("AR3000A", "Enable AR3000A mode"));
    fake.wire.clear();
    EXPECT_EQ(1, ApplyAr3000aMode());
    EXPECT_EQ(Frames{"AS 0"}, FramesSent());
    EXPECT_EQ(3u, fake.questions.size());
    // A failed send leaves the flags as they were.
    WriteSetting(KeyAr3000aEnable, "1");
    fake.portOpen = false;
    EXPECT_EQ(0, ApplyAr3000aMode());
    EXPECT_EQ(STATUS_GPS_DIFF_MODE, statusFlags);
}

void Put(char* field, const char* text) {
    snprintf(field, GpsFieldSize, "%s", text);
}

// Runs one Set with four texts; kind 0 time, 1 date, 2 latitude, 3 longitude.
// Returns the frame sent and the fields as rewritten, or the message shown.
std::string GpsSet(int kind, const char* a, const char* b, const char* c, const char* d) {
    ResetFakeWorld();
    fake.portOpen = true;
    if (kind == 0) {
        GpsTimeFields f;
        Put(f.hour, a);
        Put(f.minute, b);
        Put(f.second, c);
        Put(f.utcOffset, d);
        if (GpsSetTime(&f)) return FramesSent().back() + " | " + f.hour + ":" + f.minute + ":" + f.second;
    } else {
        GpsDateFields f;
        Put(f.day, a);
        Put(f.month, b);
        Put(f.year, c);
        if (GpsSetDate(&f)) return FramesSent().back() + " | " + f.year;
    }
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_TRUE(fake.statusLines.empty());
    EXPECT_EQ(std::vector<int>{ICON_STOP}, fake.messageIcons);
    return fake.messageBoxes.empty() ? "" : fake.messageBoxes[0];
}

TEST_F(Link, GpsSetTimeAndDate) {
    const struct { int kind; const char *a, *b, *c, *d, *result; } cases[] = {
        {0, "23", "59", "0", "-5", "OT 4 59 0 | 23:59:00"},
        {0, "24", "99", "99", "99", "Invalid hour value"},  // the first bound fails
        {0, "-1", "0", "0", "0", "Invalid hour value"},     // compared as unsigned
        {0, "1", "60", "0", "0", "Invalid minute value"},
        {0, "1", "0", "61", "0", "Invalid second value"},
        {0, "1", "2", "3", "-13", "Invalid UTC offset"},
        {0, " 23", "\t2", "3", "12", "OT 11 2 3 | 23:02:03"},  // blanks skipped; 12 is the last offset
        {1, "31", "4", "85", "", "OD 31 4 1985 | 1985"},  // 31 in April passes
        {1, "1", "1", "0", "", "OD 1 1 2000 | 2000"},
        {1, "1", "1", "2077", "", "OD 1 1 2077 | 2077"},
        {1, "0", "13", "78", "", "Invalid day value"},
        {1, "32", "1", "1", "", "Invalid day value"},
        {1, "1", "13", "1", "", "Invalid month value"},
        {1, "1", "1", "79", "", "Invalid year value"},
        {1, "1", "1", "2078", "", "Invalid year value"},
        {1, "1", "1", "1979", "", "Invalid year value"},
        {1, "1", "1", "-5", "", "Invalid year value"},
        {1, "1", "1", "100", "", "Invalid year value"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.result, GpsSet(c.kind, c.a, c.b, c.c, c.d)) << c.a << " " << c.b << " " << c.c;
        if (c.kind == 0) {
            EXPECT_EQ(c.result[0] == 'O' ? atoi(c.d) : 0, ReadSetting(KeyGpsUtcOffset));
        }
    }
    // With the port closed nothing goes out, but the status line is written.
    fake.portOpen = false;
    GpsDateFields f = {"2", "3", "2021"};
    EXPECT_EQ(1, GpsSetDate(&f));
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(1, CountStatus("Set GPS date command sent"));
}

TEST_F(Link, GpsResetAndSelfTestAnsweredNoSendNothing) {
    fake.answers = {0, 0, 1};
    EXPECT_EQ(0, GpsReset());
    EXPECT_EQ(0, GpsSelfTest());
    EXPECT_EQ(2u, fake.questions.size());
    EXPECT_TRUE(fake.wire.empty() && fake.statusLines.empty() && fake.messageBoxes.empty());
    EXPECT_EQ(1, GpsReset());  // Yes: the note that follows carries the question icon
    EXPECT_EQ(std::vector<int>{ICON_QUESTION}, fake.messageIcons);
}

TEST_F(Link, GpsOpeningFields) {
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
    EXPECT_EQ((Frames{"9", "05", "07", "2", "3", "2021", "-12", "90", "-59", "59.000", "-180", "0",
                      "-12.346"}),
              (Frames{f.time.hour, f.time.minute, f.time.second, f.date.day, f.date.month,
                      f.date.year, f.time.utcOffset, f.latitude.degrees, f.latitude.minutes,
                      f.latitude.seconds, f.longitude.degrees, f.longitude.minutes,
                      f.longitude.seconds}));
    // "Long E/W" defaults to "E".
    EXPECT_EQ((std::vector<int>{1, 0, 1}),
              (std::vector<int>{f.latitude.southOrWest, f.latitude.northOrEast, f.longitude.northOrEast}));
}

}  // namespace
