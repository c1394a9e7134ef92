#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "sim_controller.h"
#include "sim_frame.h"

namespace ctlsim {
namespace {

using Bodies = std::vector<std::string>;

// Drives a Controller with a fake clock and keeps what it wrote, logged and recorded.
struct Harness {
    explicit Harness(const SimConfig& config = SimConfig()) : controller(config) {
        controller.Start(0);
    }
    void Raw(const std::string& bytes) {
        std::vector<Action> actions;
        controller.OnBytes(bytes.data(), bytes.size(), now, &actions);
        Take(actions);
    }
    void Frame(const std::string& body) { Raw(FormatFrame(body)); }
    // Moves the clock on in ticks of 10 ms.
    void Advance(int64_t ms) {
        for (const int64_t end = now + ms; now < end;) {
            now = std::min<int64_t>(now + 10, end);
            std::vector<Action> actions;
            controller.OnTick(now, &actions);
            Take(actions);
        }
    }
    // The bodies written since the last call; a line that is no good frame
    // stands as "!BAD <line>".
    Bodies Sent() {
        Bodies bodies;
        size_t start = 0;
        for (size_t cr; (cr = wire.find('\r', start)) != std::string::npos; start = cr + 1) {
            std::string line = wire.substr(start, cr - start), body;
            bodies.push_back(ParseFrameLine(line, &body) ? body : "!BAD " + line);
        }
        wire.clear();
        return bodies;
    }
    void Take(const std::vector<Action>& actions) {
        for (const Action& action : actions) {
            if (!action.log.empty()) logs.push_back(action.log);
            for (const Piece& piece : action.pieces) wire += piece.bytes;
            if (!action.record.empty()) records.push_back(action.record);
        }
    }
    bool Logged(const std::string& line) const {
        return std::find(logs.begin(), logs.end(), line) != logs.end();
    }

    Controller controller;
    int64_t now = 0;
    std::string wire;
    Bodies logs, records;
};

// The PC's banner as a raw step.
const char kBanner[] = "~\n\rVELDOR (Software)\r\nRadio survey systems\n\r";

// Runs steps: "+N" moves the clock N ms on, "~bytes" writes raw bytes,
// anything else is a body sent as a frame. Returns the bodies written.
Bodies Drive(Harness& h, const std::vector<std::string>& steps) {
    for (const std::string& s : steps) {
        if (!s.empty() && s[0] == '+') {
            h.Advance(atoll(s.c_str() + 1));
        } else if (!s.empty() && s[0] == '~') {
            h.Raw(s.substr(1));
        } else {
            h.Frame(s);
        }
    }
    return h.Sent();
}

// Steps and the bodies they must draw (only those starting with code).
struct Exchange {
    std::vector<std::string> steps;
    Bodies sent;
    std::string code = "";
};

Bodies WithCode(const Bodies& bodies, const std::string& code) {
    Bodies out;
    for (const std::string& b : bodies)
        if (b.compare(0, code.size(), code) == 0) out.push_back(b);
    return out;
}

void Expect(Harness& h, const std::vector<Exchange>& exchanges) {
    for (size_t i = 0; i < exchanges.size(); i++) {
        const Exchange& e = exchanges[i];
        EXPECT_EQ(WithCode(Drive(h, e.steps), e.code), e.sent) << "exchange " << i;
    }
}

int AccessoryOf(const std::string& ra) {
    int c[5] = {-1, -1, -1, -1, -1};
    sscanf(ra.c_str(), "RA %d %d %d %d %d", &c[0], &c[1], &c[2], &c[3], &c[4]);
    return c[4];
}

std::vector<int> Channels(const Bodies& bodies) {
    std::vector<int> channels;
    for (const std::string& ra : WithCode(bodies, "RA")) channels.push_back(AccessoryOf(ra));
    return channels;
}

SimConfig Quiet() {
    SimConfig config;
    config.statusReplies = false;
    return config;
}

TEST(SimController, AnswersWithoutStreaming) {
    SimConfig selfTest;
    selfTest.selfTestKind = 6;
    selfTest.selfTestCode = 0x0180;
    const struct {
        SimConfig config;
        std::vector<Exchange> exchanges;
        const char* logged;
    } cases[] = {
        // Only "KA" before "OP 1", every 5 s.
        {SimConfig(), {{{"+4900"}, {}}, {{"+200"}, {"KA"}}, {{"+5000"}, {"KA"}}}, ""},
        // Nothing to repeat yet, an unknown code, an empty body: no answer.
        {SimConfig(), {{{"NA", "XX 1", ""}, {}}}, ""},
        {Quiet(), {{{"FR", "MS 1", "OT 1 2 3"}, {}}}, ""},
        {selfTest, {{{"OS"}, {"ET 6 384"}}}, ""},
        {SimConfig(),
         {{{"OT 19 0 0", "OD 31 12 2021", "LT -45015500", "LG 3600000", "OI 1", "OI 2",
            "OT 25 0 0"},
           {"ST GPS time set", "ST GPS date set", "ST GPS latitude set", "ST GPS longitude set",
            "ST GPS initialised", "ST GPS reset to factory settings"}}},
         "NOTE ignored: bad OT"},
        // Bad check, garbage, wrong format: "NA" each; that "NA" is then the
        // last frame, which "NA" from the PC repeats.
        {SimConfig(),
         {{{kBanner, "MS 0"}, {"ST TZR4100 mode off"}},
          {{"~#OP 1:21\r"}, {"NA"}},
          {{"~zz#OP 1:20\r"}, {"NA"}},
          {{"~#OP 1-20\r"}, {"NA"}},
          {{"NA"}, {"NA"}}},
         "RX-BAD zz#OP 1:20"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.exchanges[0].steps[0]);
        Harness h(c.config);
        Expect(h, c.exchanges);
        EXPECT_FALSE(h.controller.Running());
        if (c.logged[0] != 0) {
            EXPECT_TRUE(h.Logged(c.logged));
        }
    }
}

TEST(SimController, Op1StartsStreamingOnce) {
    Harness h;
    const Bodies first = Drive(h, {kBanner, "MS 0", "OP 1"});
    EXPECT_TRUE(h.controller.Running());
    ASSERT_EQ(first.size(), 5u);  // the route starts at the start point
    EXPECT_EQ(Bodies(first.begin(), first.begin() + 4),
              Bodies({"ST TZR4100 mode off", "VI 2 3 1", "ES 48", "RP 185400000 -3600000"}));
    EXPECT_EQ(first[4].substr(0, 3), "RA ");
    EXPECT_EQ(AccessoryOf(first[4]), 0);

    const Bodies next = Drive(h, {"+1000"});
    ASSERT_EQ(next.size(), 2u);  // no ES again: the status did not change
    EXPECT_EQ(next[0].substr(0, 3), "RP ");
    EXPECT_NE(next[0], "RP 185400000 -3600000");
    EXPECT_EQ(next[1].substr(0, 3), "RA ");

    const Bodies later = Drive(h, {"+10000"});
    EXPECT_EQ(WithCode(later, "RP").size(), 10u);
    EXPECT_EQ(WithCode(later, "RA").size(), 10u);
    EXPECT_TRUE(WithCode(later, "KA").empty());  // streaming keeps KA away
    EXPECT_TRUE(h.Logged("RX OP 1"));
    EXPECT_TRUE(h.Logged("BANNER VELDOR (Software)"));
    // "OP 1" while running neither answers nor moves the period.
    Expect(h, {{{"+500", "OP 1"}, {}}});
    EXPECT_EQ(Drive(h, {"+500"}).size(), 2u);
}

TEST(SimController, Op0StopsStreamingAndKeepAliveFollows) {
    Harness h;
    Drive(h, {"OP 1", "+2000", "OP 0"});
    EXPECT_FALSE(h.controller.Running());
    Expect(h, {{{"+4900"}, {}}, {{"+200"}, {"KA"}}, {{kBanner, "MS 0"}, {}, "NA"}});
}

TEST(SimController, PeriodFollowsTheConfiguration) {
    SimConfig config;
    config.route.periodMs = 100;
    Harness h(config);
    Drive(h, {"OP 1"});
    EXPECT_EQ(WithCode(Drive(h, {"+1000"}), "RA").size(), 10u);
}

TEST(SimController, NaRepeatsTheLastFrameUpToFiveTimes) {
    Harness h(Quiet());
    Drive(h, {"OP 1"});
    const std::string last = h.controller.LastFrame();
    EXPECT_EQ(last.substr(0, 4), "#RA ");
    for (int i = 0; i < 6; i++) h.Frame("NA");
    EXPECT_EQ(h.wire, last + last + last + last + last);
    h.wire.clear();
    EXPECT_TRUE(h.Logged("NOTE NA beyond the repeat limit"));
    // A new frame starts the count again.
    Drive(h, {"+1000"});
    const std::string ra = h.controller.LastFrame();
    h.Frame("NA");
    EXPECT_EQ(h.wire, ra);
}

TEST(SimController, SplitFrameFromThePc) {
    Harness h;
    const std::string frame = FormatFrame("OP 1");
    h.Raw(frame.substr(0, 3));
    EXPECT_FALSE(h.controller.Running());
    h.Raw(frame.substr(3));
    EXPECT_TRUE(h.controller.Running());
}

TEST(SimController, TzrChannelSteppingWrapAndFactoryReset) {
    Harness h(Quiet());
    EXPECT_TRUE(Drive(h, {"MS 1", "MN 3", "MC 2", "MI 1"}).empty());
    EXPECT_TRUE(h.controller.TzrMode());
    EXPECT_EQ(Channels(Drive(h, {"OP 1", "+4000"})), std::vector<int>({2, 3, 1, 2, 3}));
    EXPECT_EQ(Channels(Drive(h, {"MI 0", "MC 3", "+2000"})), std::vector<int>({3, 3}));
    EXPECT_EQ(Channels(Drive(h, {"MS 0", "+1000"})), std::vector<int>({0}));

    Harness r;
    EXPECT_EQ(WithCode(Drive(r, {"MS 1", "MN 5", "MC 4", "MI 1", "FR"}), "ST").back(),
              "ST Factory defaults restored");
    EXPECT_FALSE(r.controller.TzrMode());
    EXPECT_EQ(r.controller.TzrChannel(), 1);
    EXPECT_EQ(r.controller.TzrChannels(), 10);
    EXPECT_FALSE(r.controller.TzrIncrement());
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
    EXPECT_EQ(WithCode(h.Sent(), "ST"),
              Bodies({"ST AR3000A configured", "ST AR3000A scan on",
                      "ST GPS differential input on at 4800 baud", "ST TZR4100 mode on"}));
}

TEST(SimController, StatusChangesAndSelfTestAreReported) {
    Harness h(Quiet());
    Expect(h, {{{"OP 1"}, {"ES 48"}, "ES"},
               {{"GD 1 4800", "+1000"}, {"ES 52"}, "ES"},
               {{"GD 0 0", "+1000"}, {"ES 48"}, "ES"},
               {{"+3000"}, {}, "ES"},
               {{"OS"}, {"ET 8 0"}},
               {{"+5000"}, {"ES 8", "ES 48"}, "ES"}});  // reacquiring after the self test
}

TEST(SimController, CalibrationStartsStreamingAndOp1EndsIt) {
    Harness h;
    const Bodies sent = Drive(h, {"CA 1"});
    EXPECT_TRUE(h.controller.Running());
    EXPECT_TRUE(h.controller.Calibrating());
    ASSERT_FALSE(sent.empty());
    EXPECT_EQ(sent[0], "ST Calibration mode");
    EXPECT_EQ(WithCode(sent, "RA").size(), 1u);
    h.Frame("OP 1");
    EXPECT_FALSE(h.controller.Calibrating());
    EXPECT_TRUE(h.controller.Running());
}

TEST(SimController, RecordLinesMatchTheSamplesSent) {
    Harness h(Quiet());
    const Bodies sent = Drive(h, {"MS 1", "MC 7", "OP 1", "+3000"});
    const Bodies rp = WithCode(sent, "RP");
    const Bodies ra = WithCode(sent, "RA");
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
    SimConfig config = Quiet();
    config.faults.badCheckEvery = 3;
    Harness h(config);
    const Bodies sent = Drive(h, {"OP 1", "+3000"});
    ASSERT_EQ(sent.size(), 10u);  // VI, ES, then four samples
    for (size_t i = 0; i < sent.size(); i++)
        EXPECT_EQ(sent[i].compare(0, 5, "!BAD ") == 0, i % 3 == 2) << i;
    // The PC answers the bad one with NA: the repeat (frame 11) is good.
    const Bodies repeat = Drive(h, {"NA"});
    ASSERT_EQ(repeat.size(), 1u);
    EXPECT_EQ(repeat[0].compare(0, 3, "RA "), 0);
}

TEST(SimController, SilenceStopsEverythingThenResumes) {
    SimConfig config;
    config.silenceAfterMs = 2000;
    config.silenceForMs = 3000;
    Harness h(config);
    EXPECT_FALSE(Drive(h, {"+1000", "OP 1", "+1900"}).empty());
    Drive(h, {"+200"});
    // Up to 5900: in the silence.
    EXPECT_TRUE(Drive(h, {"+2700", "~#XX:00\r", "OS"}).empty());
    EXPECT_TRUE(h.Logged("NOTE silence begins"));
    EXPECT_FALSE(WithCode(Drive(h, {"+1100"}), "RA").empty());
    EXPECT_TRUE(h.Logged("NOTE silence ends"));
}

TEST(SimController, FloodNaAfterTheFirstOp1) {
    SimConfig config;
    config.floodNa = 7;
    Harness h(config);
    const Bodies sent = Drive(h, {"OP 1"});
    ASSERT_GE(sent.size(), 8u);
    EXPECT_EQ(Bodies(sent.begin(), sent.begin() + 8),
              Bodies({"NA", "NA", "NA", "NA", "NA", "NA", "NA", "VI 2 3 1"}));
    EXPECT_TRUE(WithCode(Drive(h, {"OP 0", "OP 1"}), "NA").empty());
}

TEST(SimController, HangupDropsPartialInputAndExpectsABanner) {
    Harness h;
    Drive(h, {"KA", "~#OP "});
    std::vector<Action> actions;
    h.controller.OnHangup(h.now, &actions);
    EXPECT_TRUE(h.controller.InBannerPhase());
    EXPECT_TRUE(WithCode(Drive(h, {kBanner, "OP 1"}), "NA").empty());
    EXPECT_TRUE(h.controller.Running());
}

}  // namespace
}  // namespace ctlsim
