#include "link/controller_messages.h"

#include <gtest/gtest.h>

#include "fake_platform.h"
#include "link/frame_codec.h"
#include "survey/survey_state.h"

namespace {

class ControllerMessages : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        fake.portOpen = true;
    }
};

TEST_F(ControllerMessages, GpsStatusLogsOnlyChanges) {
    const struct {
        std::vector<const char*> messages;
        std::vector<std::string> lines;
    } steps[] = {
        {{"ES 4"}, {"GPS differential correction active"}},
        {{"ES0"}, {"GPS differential correction inactive"}},
        {{"ES 48", "ES 16", "ES 0"},
         {"GPS giving position fixes", "GPS not giving position fixes"}},
        {{"ES 9"},
         {"GPS insufficient visable satellites", "GPS acquiring satellites/position hold"}},
    };
    for (const auto& s : steps) {
        fake.statusLines.clear();
        for (const char* m : s.messages) HandleControllerMessage(m);
        EXPECT_EQ(s.lines, fake.statusLines) << s.messages[0];
    }
    EXPECT_EQ(9, liveState.gpsStatus);
}

TEST_F(ControllerMessages, TextMessagesAndUnknownCodes) {
    HandleControllerMessage("ST Battery low");
    HandleControllerMessage("VI 2 3 1");
    HandleControllerMessage("DB x=1");
    EXPECT_EQ(
        (std::vector<std::string>{"Controller: Battery low", "Controller firmware version: v2.3.1",
                                  "Controller debug: x=1"}),
        fake.statusLines);
    commsWatchdogTicks = 3;
    EXPECT_EQ(0, HandleControllerMessage("XX"));
    EXPECT_EQ(0, HandleControllerMessage("RX 1"));  // second letter must fit the first
    EXPECT_EQ(0, HandleControllerMessage("R"));
    EXPECT_EQ(0, HandleControllerMessage(""));
    EXPECT_EQ(3, commsWatchdogTicks);
    EXPECT_TRUE(fake.wire.empty());
}

TEST_F(ControllerMessages, RetransmitsAtMostFiveTimes) {
    SendFrameText("MC 1");
    fake.wire.clear();
    for (int i = 0; i < 6; i++) Receive(Frame("NA"));
    std::vector<std::string> five(5, "MC 1");
    EXPECT_EQ(five, FramesSent());
    EXPECT_EQ(12, commsWatchdogTicks);  // the ignored sixth still re-arms
    SendFrameText("OP 1");
    fake.wire.clear();
    for (int i = 0; i < 5; i++) Receive(Frame("NA"));
    EXPECT_EQ(std::vector<std::string>(5, "OP 1"), FramesSent());

    // Nothing to repeat with the port closed or before any frame.
    ResetFakeWorld();
    fake.portOpen = true;
    Receive(Frame("NA"));
    EXPECT_TRUE(fake.wire.empty());
}

TEST_F(ControllerMessages, SelfTestReport) {
    fake.windowExists[WINDOW_GPS] = true;
    HandleControllerMessage("ET 6 384");  // 0x0180: ROM once
    EXPECT_EQ("GPS self test failure(s):\n\nRead only memory (ROM)\n", fake.messageBoxes[0]);
    HandleControllerMessage("ET 6 0");
    EXPECT_EQ("GPS self test passed", fake.messageBoxes[1]);
    HandleControllerMessage("ET 0 0");
    EXPECT_EQ("GPS self test failed\nNo communications with GPS", fake.messageBoxes[2]);
    size_t lines = fake.statusLines.size();
    commsWatchdogTicks = 4;
    HandleControllerMessage("ET 7 1");
    EXPECT_EQ(3u, fake.messageBoxes.size());
    EXPECT_EQ(lines, fake.statusLines.size());
    EXPECT_EQ(12, commsWatchdogTicks);
    // With the dialog closed only the status line remains.
    fake.windowExists[WINDOW_GPS] = false;
    HandleControllerMessage("ET 8 16385");
    EXPECT_EQ(3u, fake.messageBoxes.size());
    EXPECT_EQ("GPS self test failed (Code 0x4001)", fake.statusLines.back());
}

}  // namespace
