#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim_frame.h"

namespace ctlsim {
namespace {

const char kPcBanner[] = "\n\rVELDOR (Software)\r\nRadio survey systems\n\r";

std::vector<InboundLine> FeedAll(LineReceiver* receiver, const std::string& bytes) {
    std::vector<InboundLine> lines;
    receiver->Feed(bytes.data(), bytes.size(), &lines);
    return lines;
}

TEST(SimFrame, CrcCheckValue) {
    EXPECT_EQ(Crc8("123456789"), 0xA1);
    EXPECT_EQ(Crc8(""), 0);
    EXPECT_EQ(Crc8(nullptr, 3), 0);
}

TEST(SimFrame, WorkedFramesOfThePart) {
    struct Case {
        const char* body;
        uint8_t check;
        const char* frame;
    };
    const Case cases[] = {
        {"KA", 0xA0, "#KA:A0\r"},
        {"NA", 0x5F, "#NA:5F\r"},
        {"OP 1", 0x20, "#OP 1:20\r"},
        {"OP 0", 0x7E, "#OP 0:7E\r"},
        {"FR", 0x56, "#FR:56\r"},
        {"MC 1", 0x89, "#MC 1:89\r"},
        {"RA 10 20 30 40 0", 0x40, "#RA 10 20 30 40 0:40\r"},
        {"RP 180000000 -360000000", 0xA4, "#RP 180000000 -360000000:A4\r"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.body);
        EXPECT_EQ(Crc8(c.body), c.check);
        EXPECT_EQ(FormatFrame(c.body), c.frame);
    }
}

TEST(SimFrame, FormatReplacesHashAndCarriageReturn) {
    EXPECT_EQ(FormatFrame("ST a#b\rc"), FormatFrame("ST a b c"));
    const std::string frame = FormatFrame("ST a#b");
    EXPECT_EQ(frame.substr(0, 7), "#ST a b");
}

TEST(SimFrame, ParseGoodAndBadLines) {
    std::string body;
    EXPECT_TRUE(ParseFrameLine("#KA:A0", &body));
    EXPECT_EQ(body, "KA");
    EXPECT_TRUE(ParseFrameLine("#KA:a0", &body));    // either case
    EXPECT_FALSE(ParseFrameLine("#KA:A1", &body));   // wrong check
    EXPECT_FALSE(ParseFrameLine("x#KA:A0", &body));  // garbage before '#'
    EXPECT_FALSE(ParseFrameLine("#KA-A0", &body));   // no ':'
    EXPECT_FALSE(ParseFrameLine("#KA:A", &body));
    EXPECT_FALSE(ParseFrameLine("#KA:G0", &body));  // not a hex digit
    EXPECT_FALSE(ParseFrameLine("", &body));
    EXPECT_FALSE(ParseFrameLine("#:0", &body));
    EXPECT_FALSE(ParseFrameLine("\n#KA:A0", &body));  // line feed in front
    const std::string withHash = "#K#A:" + std::string("00");
    EXPECT_FALSE(ParseFrameLine(withHash, &body));
}

TEST(SimFrame, EscapeText) {
    EXPECT_EQ(EscapeText("a\\b\r\n\t"), "a\\\\b\\r\\n\\t");
    EXPECT_EQ(EscapeText(std::string("x\0y", 3)), "x\\x00y");
    EXPECT_EQ(EscapeText("\xff"), "\\xFF");
}

TEST(SimReceiver, FrameSplitAtEveryPlace) {
    const std::string bytes = std::string(kPcBanner) + "#OP 1:20\r";
    for (size_t cut = 0; cut <= bytes.size(); cut++) {
        SCOPED_TRACE(cut);
        LineReceiver receiver;
        std::vector<InboundLine> lines;
        receiver.Feed(bytes.data(), cut, &lines);
        receiver.Feed(bytes.data() + cut, bytes.size() - cut, &lines);
        ASSERT_EQ(lines.size(), 3u);
        EXPECT_EQ(lines[0].kind, InboundLine::kBanner);
        EXPECT_EQ(lines[1].kind, InboundLine::kBanner);
        EXPECT_EQ(lines[2].kind, InboundLine::kGood);
        EXPECT_EQ(lines[2].text, "OP 1");
    }
}

TEST(SimReceiver, ByteByByte) {
    LineReceiver receiver;
    receiver.AllowBanner();
    const std::string frames = FormatFrame("MS 1") + FormatFrame("MN 10") + FormatFrame("OP 1");
    std::vector<InboundLine> lines;
    for (char c : frames) receiver.Feed(&c, 1, &lines);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].text, "MS 1");
    EXPECT_EQ(lines[1].text, "MN 10");
    EXPECT_EQ(lines[2].text, "OP 1");
}

TEST(SimReceiver, TwoFramesInOnePiece) {
    LineReceiver receiver;
    auto lines = FeedAll(&receiver, "#KA:A0\r#FR:56\r");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].text, "KA");
    EXPECT_EQ(lines[1].text, "FR");
    EXPECT_FALSE(receiver.InBannerPhase());
}

TEST(SimReceiver, BannerGivesNoBadLines) {
    LineReceiver receiver;
    auto lines = FeedAll(&receiver, kPcBanner);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].kind, InboundLine::kBanner);
    EXPECT_EQ(lines[0].text, "VELDOR (Software)");
    EXPECT_EQ(lines[1].kind, InboundLine::kBanner);
    EXPECT_EQ(lines[1].text, "Radio survey systems");
    EXPECT_TRUE(receiver.InBannerPhase());
    lines = FeedAll(&receiver, FormatFrame("MS 0"));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].kind, InboundLine::kGood);
    EXPECT_FALSE(receiver.InBannerPhase());
}

TEST(SimReceiver, BadFrameEndsBannerPhaseToo) {
    LineReceiver receiver;
    auto lines = FeedAll(&receiver, "#OP 1:21\rhello\r");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].kind, InboundLine::kBad);
    EXPECT_EQ(lines[1].kind, InboundLine::kBad);
    EXPECT_EQ(lines[1].text, "hello");
}

TEST(SimReceiver, AfterBannerGarbageIsBad) {
    LineReceiver receiver;
    auto lines = FeedAll(&receiver, std::string(kPcBanner) + "#KA:A0\rxy#KA:A0\r#KA:A1\r\r");
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[2].kind, InboundLine::kGood);
    EXPECT_EQ(lines[3].kind, InboundLine::kBad);
    EXPECT_EQ(lines[3].text, "xy#KA:A0");
    EXPECT_EQ(lines[4].kind, InboundLine::kBad);
    // The lone carriage return at the end is ignored.
}

TEST(SimReceiver, LineFeedAfterCarriageReturnMakesTheNextFrameBad) {
    LineReceiver receiver;
    auto lines = FeedAll(&receiver, "#KA:A0\r");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].kind, InboundLine::kGood);
    lines = FeedAll(&receiver, "\n#KA:A0\r");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].kind, InboundLine::kBad);
}

TEST(SimReceiver, BannerAgainAfterReopen) {
    LineReceiver receiver;
    auto lines = FeedAll(&receiver, "#KA:A0\r" + std::string(kPcBanner) + "#KA:A0\r");
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].kind, InboundLine::kGood);
    EXPECT_EQ(lines[1].kind, InboundLine::kBanner);
    EXPECT_EQ(lines[2].kind, InboundLine::kBanner);
    EXPECT_EQ(lines[3].kind, InboundLine::kGood);
}

TEST(SimReceiver, ResetDropsPartialInput) {
    LineReceiver receiver;
    auto lines = FeedAll(&receiver, "#KA:A0\r#OP 1");
    EXPECT_EQ(receiver.Buffered(), 5u);
    receiver.Reset();
    EXPECT_EQ(receiver.Buffered(), 0u);
    EXPECT_TRUE(receiver.InBannerPhase());
    lines = FeedAll(&receiver, ":20\r");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].kind, InboundLine::kBanner);  // ":20" alone is banner text now
}

TEST(SimReceiver, OverflowGivesOneBadLine) {
    LineReceiver receiver;
    receiver.AllowBanner();
    std::vector<InboundLine> lines;
    const std::string junk(LineReceiver::kMaxLine + 10, 'x');
    receiver.Feed(junk.data(), junk.size(), &lines);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].kind, InboundLine::kBad);
    EXPECT_EQ(receiver.Buffered(), 10u);
}

}  // namespace
}  // namespace ctlsim
