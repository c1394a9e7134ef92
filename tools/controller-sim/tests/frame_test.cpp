#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim_frame.h"

namespace ctlsim {
namespace {

const char kPcBanner[] = "\n\rVELDOR (Software)\r\nRadio survey systems\n\r";

// What the receiver makes of the pieces fed in turn, one "<kind> <text>" a line.
std::vector<std::string> Lines(LineReceiver* receiver, const std::vector<std::string>& pieces) {
    std::vector<InboundLine> lines;
    for (const std::string& p : pieces) receiver->Feed(p.data(), p.size(), &lines);
    const char* kinds[] = {"good ", "bad ", "banner "};
    std::vector<std::string> out;
    for (const InboundLine& l : lines) out.push_back(kinds[l.kind] + l.text);
    return out;
}

TEST(SimFrame, CrcFormatAndParse) {
    EXPECT_EQ(Crc8("123456789"), 0xA1);
    EXPECT_EQ(Crc8(""), 0);
    EXPECT_EQ(Crc8(nullptr, 3), 0);
    const struct {
        const char* body;
        uint8_t check;
        const char* frame;
    } worked[] = {
        {"KA", 0xA0, "#KA:A0\r"},
        {"NA", 0x5F, "#NA:5F\r"},
        {"OP 1", 0x20, "#OP 1:20\r"},
        {"OP 0", 0x7E, "#OP 0:7E\r"},
        {"FR", 0x56, "#FR:56\r"},
        {"MC 1", 0x89, "#MC 1:89\r"},
        {"RA 10 20 30 40 0", 0x40, "#RA 10 20 30 40 0:40\r"},
        {"RP 180000000 -360000000", 0xA4, "#RP 180000000 -360000000:A4\r"},
    };
    for (const auto& w : worked) {
        EXPECT_EQ(Crc8(w.body), w.check) << w.body;
        EXPECT_EQ(FormatFrame(w.body), w.frame);
    }
    EXPECT_EQ(FormatFrame("ST a#b\rc"), FormatFrame("ST a b c"));
    EXPECT_EQ(FormatFrame("ST a#b").substr(0, 7), "#ST a b");

    const struct {
        const char* line;
        const char* body;  // nullptr: refused
    } lines[] = {
        {"#KA:A0", "KA"},    {"#KA:a0", "KA"},      {"#KA:A1", nullptr},  {"x#KA:A0", nullptr},
        {"#KA-A0", nullptr}, {"#KA:A", nullptr},    {"#KA:G0", nullptr},  {"", nullptr},
        {"#:0", nullptr},    {"\n#KA:A0", nullptr}, {"#K#A:00", nullptr},
    };
    for (const auto& l : lines) {
        std::string body;
        EXPECT_EQ(ParseFrameLine(l.line, &body), l.body != nullptr) << l.line;
        EXPECT_TRUE(l.body == nullptr || body == l.body) << l.line;
    }
    EXPECT_EQ(EscapeText("a\\b\r\n\t"), "a\\\\b\\r\\n\\t");
    EXPECT_EQ(EscapeText(std::string("x\0y", 3)), "x\\x00y");
    EXPECT_EQ(EscapeText("\xff"), "\\xFF");
}

TEST(SimReceiver, LinesAndBannerPhase) {
    const std::string banner = kPcBanner;
    const std::string bannerLines[] = {"banner VELDOR (Software)", "banner Radio survey systems"};
    const struct {
        std::vector<std::string> pieces;
        std::vector<std::string> lines;
        bool bannerAfter;
    } cases[] = {
        {{"#KA:A0\r#FR:56\r"}, {"good KA", "good FR"}, false},
        {{banner}, {bannerLines[0], bannerLines[1]}, true},
        {{banner, FormatFrame("MS 0")}, {bannerLines[0], bannerLines[1], "good MS 0"}, false},
        // A bad frame ends the banner phase too.
        {{"#OP 1:21\rhello\r"}, {"bad #OP 1:21", "bad hello"}, false},
        // After the banner garbage is bad; a lone carriage return is ignored.
        {{banner + "#KA:A0\rxy#KA:A0\r#KA:A1\r\r"},
         {bannerLines[0], bannerLines[1], "good KA", "bad xy#KA:A0", "bad #KA:A1"},
         false},
        // A line feed after a carriage return spoils the next frame.
        {{"#KA:A0\r", "\n#KA:A0\r"}, {"good KA", "bad \n#KA:A0"}, false},
        // The PC opens its port again: banner again.
        {{"#KA:A0\r" + banner + "#KA:A0\r"},
         {"good KA", bannerLines[0], bannerLines[1], "good KA"},
         false},
    };
    for (const auto& c : cases) {
        LineReceiver receiver;
        EXPECT_EQ(Lines(&receiver, c.pieces), c.lines) << c.pieces[0];
        EXPECT_EQ(receiver.InBannerPhase(), c.bannerAfter) << c.pieces[0];
    }

    // Any split of the input, and byte by byte.
    const std::string bytes = banner + "#OP 1:20\r";
    for (size_t cut = 0; cut <= bytes.size(); cut++) {
        LineReceiver receiver;
        EXPECT_EQ(Lines(&receiver, {bytes.substr(0, cut), bytes.substr(cut)}),
                  std::vector<std::string>({bannerLines[0], bannerLines[1], "good OP 1"}))
            << cut;
    }
    LineReceiver receiver;
    receiver.AllowBanner();
    std::vector<std::string> pieces;
    for (char c : FormatFrame("MS 1") + FormatFrame("MN 10") + FormatFrame("OP 1"))
        pieces.push_back(std::string(1, c));
    EXPECT_EQ(Lines(&receiver, pieces),
              std::vector<std::string>({"good MS 1", "good MN 10", "good OP 1"}));
}

TEST(SimReceiver, ResetAndOverflow) {
    LineReceiver receiver;
    Lines(&receiver, {"#KA:A0\r#OP 1"});
    EXPECT_EQ(receiver.Buffered(), 5u);
    receiver.Reset();
    EXPECT_EQ(receiver.Buffered(), 0u);
    EXPECT_TRUE(receiver.InBannerPhase());
    // ":20" alone is banner text now.
    EXPECT_EQ(Lines(&receiver, {":20\r"}), std::vector<std::string>{"banner :20"});

    LineReceiver full;
    full.AllowBanner();
    std::vector<InboundLine> lines;
    const std::string junk(LineReceiver::kMaxLine + 10, 'x');
    full.Feed(junk.data(), junk.size(), &lines);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].kind, InboundLine::kBad);
    EXPECT_EQ(full.Buffered(), 10u);
}

}  // namespace
}  // namespace ctlsim
