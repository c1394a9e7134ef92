#include <gtest/gtest.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "sim_controller.h"
#include "sim_test_util.h"

namespace ctlsim {
namespace {

using Bodies = std::vector<std::string>;

const char kPcBanner[] = "\n\rVELDOR (Software)\r\nRadio survey systems\n\r";

bool Contains(const std::vector<std::string>& lines, const std::string& line) {
    for (const std::string& l : lines) {
        if (l == line) return true;
    }
    return false;
}

int AccessoryOf(const std::string& ra) {
    int c[5] = {-1, -1, -1, -1, -1};
    sscanf(ra.c_str(), "RA %d %d %d %d %d", &c[0], &c[1], &c[2], &c[3], &c[4]);
    return c[4];
}

TEST(SimController, NothingStreamsBeforeOp1ButKeepAlive) {
    Harness h;
    h.Advance(4900);
    EXPECT_TRUE(h.Sent().empty());
    h.Advance(200);
    EXPECT_EQ(h.Sent(), Bodies({"KA"}));
    h.Advance(5000);
    EXPECT_EQ(h.Sent(), Bodies({"KA"}));
    EXPECT_FALSE(h.controller.Running());
}

TEST(SimController, Op1StartsStreaming) {
    Harness h;
    h.Raw(kPcBanner);
    h.Frame("MS 0");
    h.Frame("OP 1");
    EXPECT_TRUE(h.controller.Running());
    const Bodies first = h.Sent();
    ASSERT_GE(first.size(), 4u);
    EXPECT_EQ(first[0], "ST TZR4100 mode off");
    EXPECT_EQ(first[1], "VI 2 3 1");
    EXPECT_EQ(first[2], "ES 48");
    EXPECT_EQ(first[3], "RP 185400000 -3600000");  // the route starts at the start point
    ASSERT_EQ(first.size(), 5u);
    EXPECT_EQ(first[4].substr(0, 3), "RA ");
    EXPECT_EQ(AccessoryOf(first[4]), 0);

    h.Advance(1000);
    const Bodies next = h.Sent();
    ASSERT_EQ(next.size(), 2u);  // no ES again: the status did not change
    EXPECT_EQ(next[0].substr(0, 3), "RP ");
    EXPECT_NE(next[0], "RP 185400000 -3600000");
    EXPECT_EQ(next[1].substr(0, 3), "RA ");

    h.Advance(10000);
    const Bodies later = h.Sent();
    EXPECT_EQ(Harness::WithCode(later, "RP").size(), 10u);
    EXPECT_EQ(Harness::WithCode(later, "RA").size(), 10u);
    EXPECT_TRUE(Harness::WithCode(later, "KA").empty());  // streaming keeps KA away
    EXPECT_TRUE(Contains(h.logs, "RX OP 1"));
    EXPECT_TRUE(Contains(h.logs, "BANNER VELDOR (Software)"));
}

TEST(SimController, Op1WhileRunningChangesNothing) {
    Harness h;
    h.Frame("OP 1");
    h.Sent();
    h.Advance(500);
    h.Frame("OP 1");
    EXPECT_TRUE(h.Sent().empty());
    h.Advance(500);
    EXPECT_EQ(h.Sent().size(), 2u);
}

TEST(SimController, Op0StopsStreamingAndKeepAliveFollows) {
    Harness h;
    h.Frame("OP 1");
    h.Advance(2000);
    h.Frame("OP 0");
    EXPECT_FALSE(h.controller.Running());
    h.Sent();
    h.Advance(4900);
    EXPECT_TRUE(h.Sent().empty());
    h.Advance(200);
    EXPECT_EQ(h.Sent(), Bodies({"KA"}));
    // The PC reopens: its banner must not draw "NA".
    h.Raw(kPcBanner);
    h.Frame("MS 0");
    EXPECT_TRUE(Harness::WithCode(h.Sent(), "NA").empty());
}

TEST(SimController, PeriodFollowsTheConfiguration) {
    SimConfig config;
    config.route.periodMs = 100;
    Harness h(config);
    h.Frame("OP 1");
    h.Sent();
    h.Advance(1000);
    EXPECT_EQ(Harness::WithCode(h.Sent(), "RA").size(), 10u);
}

TEST(SimController, NaRepeatsTheLastFrameUpToFiveTimes) {
    SimConfig config;
    config.statusReplies = false;
    Harness h(config);
    h.Frame("OP 1");
    h.Sent();
    const std::string last = h.controller.LastFrame();
    EXPECT_EQ(last.substr(0, 4), "#RA ");
    for (int i = 0; i < 6; i++) h.Frame("NA");
    EXPECT_EQ(h.wire, last + last + last + last + last);
    h.wire.clear();
    EXPECT_TRUE(Contains(h.logs, "NOTE NA beyond the repeat limit"));
    // A new frame starts the count again.
    h.Advance(1000);
    h.Sent();
    const std::string ra = h.controller.LastFrame();
    h.Frame("NA");
    EXPECT_EQ(h.wire, ra);
}

TEST(SimController, NaBeforeAnythingWasSent) {
    Harness h;
    h.Frame("NA");
    EXPECT_TRUE(h.Sent().empty());
}

TEST(SimController, BadFramesAreAnsweredWithNa) {
    Harness h;
    h.Raw(kPcBanner);
    h.Frame("MS 0");
    h.Sent();
    h.Raw("#OP 1:21\r");  // bad check
    EXPECT_EQ(h.Sent(), Bodies({"NA"}));
    h.Raw("zz#OP 1:20\r");  // garbage
    EXPECT_EQ(h.Sent(), Bodies({"NA"}));
    h.Raw("#OP 1-20\r");  // wrong format
    EXPECT_EQ(h.Sent(), Bodies({"NA"}));
    EXPECT_FALSE(h.controller.Running());
    EXPECT_TRUE(Contains(h.logs, "RX-BAD zz#OP 1:20"));
    // The NA itself is the last frame now: NA from the PC repeats it.
    h.Frame("NA");
    EXPECT_EQ(h.Sent(), Bodies({"NA"}));
}

TEST(SimController, SplitFrameFromThePc) {
    Harness h;
    const std::string frame = FormatFrame("OP 1");
    h.Raw(frame.substr(0, 3));
    EXPECT_FALSE(h.controller.Running());
    h.Raw(frame.substr(3));
    EXPECT_TRUE(h.controller.Running());
}

TEST(SimController, TzrChannelSteppingAndWrap) {
    SimConfig config;
    config.statusReplies = false;
    Harness h(config);
    h.Frame("MS 1");
    h.Frame("MN 3");
    h.Frame("MC 2");
    h.Frame("MI 1");
    EXPECT_TRUE(h.Sent().empty());
    EXPECT_TRUE(h.controller.TzrMode());
    h.Frame("OP 1");
    h.Advance(4000);
    std::vector<int> channels;
    for (const std::string& ra : Harness::WithCode(h.Sent(), "RA"))
        channels.push_back(AccessoryOf(ra));
    EXPECT_EQ(channels, std::vector<int>({2, 3, 1, 2, 3}));

    h.Frame("MI 0");
    h.Frame("MC 3");
    h.Advance(2000);
    channels.clear();
    for (const std::string& ra : Harness::WithCode(h.Sent(), "RA"))
        channels.push_back(AccessoryOf(ra));
    EXPECT_EQ(channels, std::vector<int>({3, 3}));

    h.Frame("MS 0");
    h.Advance(1000);
    const Bodies ras = Harness::WithCode(h.Sent(), "RA");
    ASSERT_EQ(ras.size(), 1u);
    EXPECT_EQ(AccessoryOf(ras[0]), 0);
}

TEST(SimController, FactoryResetClearsAccessoryState) {
    Harness h;
    h.Frame("MS 1");
    h.Frame("MN 5");
    h.Frame("MC 4");
    h.Frame("MI 1");
    h.Frame("FR");
    EXPECT_EQ(Harness::WithCode(h.Sent(), "ST").back(), "ST Factory defaults restored");
    EXPECT_FALSE(h.controller.TzrMode());
    EXPECT_EQ(h.controller.TzrChannel(), 1);
    EXPECT_EQ(h.controller.TzrChannels(), 10);
    EXPECT_FALSE(h.controller.TzrIncrement());
}

TEST(SimController, AccessoryModesExcludeEachOther) {
    Harness h;
    h.Frame("AC T88.0W,T89.0W,T90.0W,T91.0W,4800");
    h.Frame("AS 1");
    EXPECT_TRUE(h.controller.Ar3000aScan());
    EXPECT_EQ(h.controller.Ar3000aConfig(), "T88.0W,T89.0W,T90.0W,T91.0W,4800");
    h.Frame("GD 1 4800");
    EXPECT_TRUE(h.controller.GpsDiff());
    EXPECT_FALSE(h.controller.Ar3000aScan());
    h.Frame("MS 1");
    EXPECT_TRUE(h.controller.TzrMode());
    EXPECT_FALSE(h.controller.GpsDiff());
    const Bodies st = Harness::WithCode(h.Sent(), "ST");
    EXPECT_EQ(st, Bodies({"ST AR3000A configured", "ST AR3000A scan on",
                          "ST GPS differential input on at 4800 baud", "ST TZR4100 mode on"}));
}

TEST(SimController, StatusChangesAreReported) {
    SimConfig config;
    config.statusReplies = false;
    Harness h(config);
    h.Frame("OP 1");
    EXPECT_EQ(Harness::WithCode(h.Sent(), "ES"), Bodies({"ES 48"}));
    h.Frame("GD 1 4800");
    h.Advance(1000);
    EXPECT_EQ(Harness::WithCode(h.Sent(), "ES"), Bodies({"ES 52"}));
    h.Frame("GD 0 0");
    h.Advance(1000);
    EXPECT_EQ(Harness::WithCode(h.Sent(), "ES"), Bodies({"ES 48"}));
    h.Advance(3000);
    EXPECT_TRUE(Harness::WithCode(h.Sent(), "ES").empty());
}

TEST(SimController, SelfTestAnswersAndReacquires) {
    SimConfig config;
    config.statusReplies = false;
    Harness h(config);
    h.Frame("OP 1");
    h.Sent();
    h.Frame("OS");
    EXPECT_EQ(h.Sent(), Bodies({"ET 8 0"}));
    h.Advance(5000);
    EXPECT_EQ(Harness::WithCode(h.Sent(), "ES"), Bodies({"ES 8", "ES 48"}));
}

TEST(SimController, SelfTestResultIsConfigurable) {
    SimConfig config;
    config.selfTestKind = 6;
    config.selfTestCode = 0x0180;
    Harness h(config);
    h.Frame("OS");
    EXPECT_EQ(h.Sent(), Bodies({"ET 6 384"}));
}

TEST(SimController, GpsCommandsAreAcceptedAndCheckedLoosely) {
    Harness h;
    h.Frame("OT 19 0 0");
    h.Frame("OD 31 12 2021");
    h.Frame("LT -45015500");
    h.Frame("LG 3600000");
    h.Frame("OI 1");
    h.Frame("OI 2");
    h.Frame("OT 25 0 0");
    EXPECT_EQ(h.Sent(), Bodies({"ST GPS time set", "ST GPS date set", "ST GPS latitude set",
                                "ST GPS longitude set", "ST GPS initialised",
                                "ST GPS reset to factory settings"}));
    EXPECT_TRUE(Contains(h.logs, "NOTE ignored: bad OT"));
}

TEST(SimController, NoStatusRepliesWhenOff) {
    SimConfig config;
    config.statusReplies = false;
    Harness h(config);
    h.Frame("FR");
    h.Frame("MS 1");
    h.Frame("OT 1 2 3");
    EXPECT_TRUE(h.Sent().empty());
}

TEST(SimController, UnknownCodeGetsNoAnswer) {
    Harness h;
    h.Frame("XX 1");
    h.Frame("");
    EXPECT_TRUE(h.Sent().empty());
}

TEST(SimController, CalibrationStartsStreamingAndOp1EndsIt) {
    Harness h;
    h.Frame("CA 1");
    EXPECT_TRUE(h.controller.Running());
    EXPECT_TRUE(h.controller.Calibrating());
    const Bodies sent = h.Sent();
    ASSERT_FALSE(sent.empty());
    EXPECT_EQ(sent[0], "ST Calibration mode");
    EXPECT_EQ(Harness::WithCode(sent, "RA").size(), 1u);
    h.Frame("OP 1");
    EXPECT_FALSE(h.controller.Calibrating());
    EXPECT_TRUE(h.controller.Running());
}

TEST(SimController, RecordLinesMatchTheSamplesSent) {
    SimConfig config;
    config.statusReplies = false;
    Harness h(config);
    h.Frame("MS 1");
    h.Frame("MC 7");
    h.Frame("OP 1");
    h.Advance(3000);
    const Bodies sent = h.Sent();
    const Bodies rp = Harness::WithCode(sent, "RP");
    const Bodies ra = Harness::WithCode(sent, "RA");
    ASSERT_EQ(rp.size(), 4u);
    ASSERT_EQ(ra.size(), 4u);
    ASSERT_EQ(h.records.size(), 4u);
    for (size_t i = 0; i < rp.size(); i++) {
        EXPECT_EQ(h.records[i], rp[i].substr(3) + " " + ra[i].substr(3));
        EXPECT_EQ(AccessoryOf(ra[i]), 7);
    }
}

TEST(SimController, SameSeedSameStreamOtherSeedOther) {
    auto run = [](uint64_t seed) {
        SimConfig config;
        config.route.seed = seed;
        config.faults.garbageEvery = 3;
        config.faults.badCheckEvery = 4;
        config.faults.split = true;
        Harness h(config);
        h.Frame("OP 1");
        h.Advance(20000);
        return h.wire;
    };
    EXPECT_EQ(run(7), run(7));
    EXPECT_NE(run(7), run(8));
}

TEST(SimController, BadCheckEveryThirdFrame) {
    SimConfig config;
    config.statusReplies = false;
    config.faults.badCheckEvery = 3;
    Harness h(config);
    h.Frame("OP 1");
    h.Advance(3000);
    const Bodies sent = h.Sent();
    ASSERT_EQ(sent.size(), 10u);  // VI, ES, then four samples
    for (size_t i = 0; i < sent.size(); i++) {
        SCOPED_TRACE(i);
        const bool bad = sent[i].compare(0, 5, "!BAD ") == 0;
        EXPECT_EQ(bad, i % 3 == 2);
    }
    // The PC answers the bad one with NA: the repeat (frame 11) is good.
    h.Frame("NA");
    const Bodies repeat = h.Sent();
    ASSERT_EQ(repeat.size(), 1u);
    EXPECT_EQ(repeat[0].compare(0, 3, "RA "), 0);
}

TEST(SimController, SilenceStopsEverythingThenResumes) {
    SimConfig config;
    config.silenceAfterMs = 2000;
    config.silenceForMs = 3000;
    Harness h(config);
    h.Advance(1000);
    h.Frame("OP 1");
    h.Advance(1900);
    EXPECT_FALSE(h.Sent().empty());
    h.Advance(200);
    h.Sent();
    h.Advance(2700);  // up to 5900: in the silence
    h.Raw("#XX:00\r");
    h.Frame("OS");
    EXPECT_TRUE(h.Sent().empty());
    EXPECT_TRUE(Contains(h.logs, "NOTE silence begins"));
    h.Advance(1100);
    EXPECT_TRUE(Contains(h.logs, "NOTE silence ends"));
    EXPECT_FALSE(Harness::WithCode(h.Sent(), "RA").empty());
}

TEST(SimController, FloodNaAfterTheFirstOp1) {
    SimConfig config;
    config.floodNa = 7;
    Harness h(config);
    h.Frame("OP 1");
    const Bodies sent = h.Sent();
    ASSERT_GE(sent.size(), 8u);
    for (int i = 0; i < 7; i++) EXPECT_EQ(sent[i], "NA");
    EXPECT_EQ(sent[7], "VI 2 3 1");
    h.Frame("OP 0");
    h.Frame("OP 1");
    EXPECT_TRUE(Harness::WithCode(h.Sent(), "NA").empty());
}

TEST(SimController, HangupDropsPartialInputAndExpectsABanner) {
    Harness h;
    h.Frame("KA");
    h.Raw("#OP ");
    std::vector<Action> actions;
    h.controller.OnHangup(h.now, &actions);
    EXPECT_TRUE(h.controller.InBannerPhase());
    h.Raw(kPcBanner);
    h.Frame("OP 1");
    const Bodies sent = h.Sent();
    EXPECT_TRUE(Harness::WithCode(sent, "NA").empty());
    EXPECT_TRUE(h.controller.Running());
}

}  // namespace
}  // namespace ctlsim
