#include "link/frame_codec.h"

#include <gtest/gtest.h>
#include <string.h>

#include "fake_platform.h"

namespace {

class FrameCodec : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        fake.portOpen = true;
    }
};

TEST_F(FrameCodec, CrcMatchesTheWorkedValues) {
    EXPECT_EQ(0xA1, Crc8("123456789", 9));
    EXPECT_EQ(0, Crc8("", 0));
    EXPECT_EQ(0, Crc8("KA", -1));
    struct {
        const char* body;
        const char* frame;
    } worked[] = {
        {"KA", "#KA:A0\r"},
        {"NA", "#NA:5F\r"},
        {"OP 1", "#OP 1:20\r"},
        {"OP 0", "#OP 0:7E\r"},
        {"FR", "#FR:56\r"},
        {"MC 1", "#MC 1:89\r"},
        {"RA 10 20 30 40 0", "#RA 10 20 30 40 0:40\r"},
        {"RP 180000000 -360000000", "#RP 180000000 -360000000:A4\r"},
    };
    for (const auto& w : worked) {
        fake.writes.clear();
        ASSERT_EQ(1, SendFrameText(w.body));
        ASSERT_EQ(1u, fake.writes.size());
        EXPECT_EQ(w.frame, fake.writes[0]) << w.body;
        EXPECT_STREQ(w.frame, lastFrame);
    }
}

TEST_F(FrameCodec, SendRefusesAndRewritesBodies) {
    char body[] = "A#B\rC";
    ASSERT_EQ(1, SendFrame(body));
    EXPECT_STREQ("A B C", body);
    EXPECT_EQ(Frame("A B C"), fake.writes.back());

    EXPECT_EQ(0, SendFrame(nullptr));
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

TEST_F(FrameCodec, GoodAndBadLines) {
    Receive("#:00\r");  // good frame with an empty body
    Receive("#KA:a0\r");  // digits in either case
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(0, CountStatus("Received invalid data from controller"));

    const char* bad[] = {"#KA:A1\r", "\r", "KA:A0\r", "x#KA:A0\r", "#KA;A0\r", "A0\r", "#KA:\r"};
    for (const char* line : bad) {
        fake.wire.clear();
        size_t before = fake.statusLines.size();
        Receive(line);
        EXPECT_EQ(std::vector<std::string>{"NA"}, FramesSent()) << line;
        ASSERT_EQ(before + 1, fake.statusLines.size());
        EXPECT_EQ("Received invalid data from controller", fake.statusLines.back());
    }
    // A bad line with the port closed still shows its message.
    fake.portOpen = false;
    fake.wire.clear();
    Receive("#KA:00\r");
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(8, CountStatus("Received invalid data from controller"));
}

TEST_F(FrameCodec, CheckDigitsAreReadUpToTheFirstNonDigit) {
    // The check of body "\x04" is... find bodies whose check reads as "4G"=4 or "ZZ"=0.
    // An empty body has check 0, so "#:ZZ" is good and "#:0Z" is good too.
    Receive("#:ZZ\r");
    Receive("#:0Z\r");
    EXPECT_TRUE(fake.wire.empty());
    // "RA" data frame with a check whose second digit is garbage is bad
    // unless the first digit alone gives the value.
    Receive("#KA:AZ\r");  // reads 0x0A, not 0xA0
    EXPECT_EQ(std::vector<std::string>{"NA"}, FramesSent());
}

TEST_F(FrameCodec, NulEndsAPieceAndOverflowRestartsTheBuffer) {
    std::string piece = Frame("RA 9 9 9 9 0");
    piece += std::string("\0", 1) + Frame("RP 1 1");
    std::vector<char> bytes(piece.begin(), piece.end());
    bytes.push_back('\0');
    ReceiveBytes(bytes.data(), (int)piece.size());
    EXPECT_EQ(9, liveState.liveReadings[0]);
    EXPECT_EQ(0, liveState.liveLatitude);  // lost behind the NUL
    EXPECT_STREQ("", receiveBuffer);

    std::string text(1000, 'x');
    Receive(text);
    EXPECT_EQ(1000u, strlen(receiveBuffer));
    EXPECT_EQ(0, CountStatus("<< Port Overflow >>"));
    Receive(std::string(23, 'y'));  // 1023 still fits
    EXPECT_EQ(0, CountStatus("<< Port Overflow >>"));
    Receive("z");  // 1024 does not
    EXPECT_EQ(1, CountStatus("<< Port Overflow >>"));
    EXPECT_STREQ("z", receiveBuffer);
    // A piece longer than the whole buffer is cut, never written past it.
    std::string huge(5000, 'q');
    Receive(huge);
    EXPECT_EQ(1023u, strlen(receiveBuffer));
    Receive("\r" + Frame("RA 7 7 7 7 0"));
    EXPECT_EQ(7, liveState.liveReadings[0]);
}

}  // namespace
