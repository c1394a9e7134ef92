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

TEST_F(ControllerMessages, ReadingsAndPosition) {
    for (int w : {WINDOW_LISTING, WINDOW_PLOT}) fake.windowExists[w] = true;
    EXPECT_EQ(1, HandleControllerMessage("RA 300 0 255 7 3"));
    EXPECT_EQ(44, liveState.liveReadings[0]);  // low 8 bits of 300
    EXPECT_EQ(255, liveState.liveReadings[2]);
    EXPECT_EQ(3, liveState.liveAccessoryChannel);
    EXPECT_EQ(10, liveState.dataValidTicks);
    ASSERT_EQ(1u, fake.repaints.size());  // Plot only with "Plot Current Position"
    EXPECT_EQ(AREA_LISTING_LIVE_ROW, fake.repaints[0].area);
    EXPECT_EQ(0, fake.repaints[0].erase);

    statusFlags |= STATUS_PLOT_POSITION;
    fake.repaints.clear();
    EXPECT_EQ(1, HandleControllerMessage("ra 1 2 3 4 0"));  // code in any case
    EXPECT_EQ(1, liveState.liveReadings[0]);
    ASSERT_EQ(2u, fake.repaints.size());
    EXPECT_EQ(WINDOW_PLOT, fake.repaints[1].window);
    EXPECT_EQ(1, fake.repaints[1].erase);

    fake.repaints.clear();
    liveState.dataValidTicks = 0;
    EXPECT_EQ(1, HandleControllerMessage("RP -324000000 648000000"));
    EXPECT_EQ(-324000000, liveState.liveLatitude);
    EXPECT_EQ(648000000, liveState.liveLongitude);
    EXPECT_EQ(10, liveState.dataValidTicks);
    ASSERT_EQ(1u, fake.repaints.size());  // RP never touches the Plot
    EXPECT_EQ(WINDOW_LISTING, fake.repaints[0].window);

    // Missing numbers keep the last values.
    EXPECT_EQ(1, HandleControllerMessage("RP 5"));
    EXPECT_EQ(5, liveState.liveLatitude);
    EXPECT_EQ(648000000, liveState.liveLongitude);
    EXPECT_EQ(1, HandleControllerMessage("RA 9 8"));
    EXPECT_EQ(9, liveState.liveReadings[0]);
    EXPECT_EQ(8, liveState.liveReadings[1]);
    EXPECT_EQ(3, liveState.liveReadings[2]);
    EXPECT_EQ(1, HandleControllerMessage("RP"));
    EXPECT_EQ(5, liveState.liveLatitude);
}

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
