#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim_faults.h"
#include "sim_frame.h"

namespace ctlsim {
namespace {

std::string Join(const std::vector<Piece>& pieces) {
    std::string all;
    for (const Piece& p : pieces) all += p.bytes;
    return all;
}

TEST(SimFaults, NoFaultsWritesTheFrameAsIsAndLineFeedFollowsIt) {
    FaultInjector faults(FaultConfig(), 1);
    std::string what = "x";
    const std::vector<Piece> pieces = faults.Apply("#KA:A0\r", &what);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].bytes, "#KA:A0\r");
    EXPECT_EQ(pieces[0].delayMs, 0);
    EXPECT_EQ(what, "");
    FaultConfig config;
    config.lfAfterCr = true;
    FaultInjector lf(config, 1);
    EXPECT_EQ(Join(lf.Apply("#KA:A0\r", nullptr)), "#KA:A0\r\n");
}

TEST(SimFaults, BadCheckOnEveryNthFrame) {
    FaultConfig config;
    config.badCheckEvery = 2;
    FaultInjector faults(config, 1);
    for (int i = 1; i <= 10; i++) {
        std::string what;
        const std::string wire = Join(faults.Apply(FormatFrame("KA"), &what));
        std::string body;
        ASSERT_EQ(wire.size(), 7u);
        EXPECT_EQ(wire.substr(0, 4), "#KA:");
        EXPECT_EQ(ParseFrameLine(wire.substr(0, 6), &body), i % 2 == 1) << wire;
        EXPECT_EQ(what, i % 2 == 0 ? "bad-check" : "");
    }
}

TEST(SimFaults, GarbageBeforeTheFrame) {
    FaultConfig config;
    config.garbageEvery = 1;
    FaultInjector faults(config, 3);
    for (int i = 0; i < 50; i++) {
        const std::string frame = FormatFrame("RA 1 2 3 4 0");
        const std::string wire = Join(faults.Apply(frame, nullptr));
        ASSERT_GT(wire.size(), frame.size());
        const std::string garbage = wire.substr(0, wire.size() - frame.size());
        EXPECT_EQ(wire.substr(garbage.size()), frame);
        EXPECT_EQ(garbage.find('#'), std::string::npos);
        EXPECT_EQ(garbage.find('\r'), std::string::npos);
        EXPECT_EQ(garbage.find('\0'), std::string::npos);
    }
}

TEST(SimFaults, SplitIntoPiecesWithSmallDelays) {
    FaultConfig config;
    config.split = true;
    FaultInjector faults(config, 9);
    bool sawThreeOrMore = false;
    for (int i = 0; i < 100; i++) {
        const std::string frame = FormatFrame("RP 185400000 -3600000");
        std::string what;
        const std::vector<Piece> pieces = faults.Apply(frame, &what);
        ASSERT_GE(pieces.size(), 2u);
        ASSERT_LE(pieces.size(), 4u);
        EXPECT_EQ(Join(pieces), frame);
        EXPECT_EQ(pieces[0].delayMs, 0);
        for (size_t k = 0; k < pieces.size(); k++) {
            EXPECT_FALSE(pieces[k].bytes.empty());
            if (k > 0) {
                EXPECT_GE(pieces[k].delayMs, 1);
                EXPECT_LE(pieces[k].delayMs, 20);
            }
        }
        EXPECT_EQ(what, "split:" + std::to_string(pieces.size()));
        sawThreeOrMore = sawThreeOrMore || pieces.size() >= 3;
    }
    EXPECT_TRUE(sawThreeOrMore);
}

}  // namespace
}  // namespace ctlsim
