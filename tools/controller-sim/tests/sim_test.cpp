// What the link tests and the scenarios do not exercise: the injected faults,
// the replay's timing and the option errors. The rest of the simulator is
// driven by them.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "sim_controller.h"
#include "sim_faults.h"
#include "sim_frame.h"
#include "sim_options.h"
#include "sim_replay.h"

namespace ctlsim {
namespace {

using Bodies = std::vector<std::string>;

std::string Join(const std::vector<Piece>& pieces) {
    std::string all;
    for (const Piece& p : pieces) all += p.bytes;
    return all;
}

// Drives a Controller in 10 ms ticks. Steps: "+N" moves the clock N ms on,
// anything else is a body sent as a frame. Returns the bodies written since
// the last call; a line that is no good frame stands as "!BAD <line>".
struct Harness {
    explicit Harness(const SimConfig& config) : controller(config) { controller.Start(0); }
    Bodies Drive(const Bodies& steps) {
        std::vector<Action> actions;
        for (const std::string& s : steps) {
            if (s[0] != '+') {
                const std::string frame = FormatFrame(s);
                controller.OnBytes(frame.data(), frame.size(), now, &actions);
            }
            for (const int64_t end = now + (s[0] == '+' ? atoll(s.c_str() + 1) : 0); now < end;) {
                now = std::min<int64_t>(now + 10, end);
                controller.OnTick(now, &actions);
            }
        }
        std::string wire;
        for (const Action& action : actions) wire += Join(action.pieces);
        Bodies bodies;
        for (size_t start = 0, cr; (cr = wire.find('\r', start)) != std::string::npos;
             start = cr + 1) {
            std::string line = wire.substr(start, cr - start), body;
            if (!ParseFrameLine(line, &body))
                bodies.push_back("!BAD " + line);
            else if (body.compare(0, 2, "VI") != 0 && body.compare(0, 2, "ES") != 0)
                bodies.push_back(body);
        }
        return bodies;
    }

    Controller controller;
    int64_t now = 0;
};

TEST(SimFaults, EachFaultSpoilsTheWireItsOwnWay) {
    // FaultConfig: bad check every, garbage every, split, line feed after carriage return.
    std::string what = "x";
    EXPECT_EQ(Join(FaultInjector({0, 0, false, true}, 1).Apply("#KA:A0\r", &what)), "#KA:A0\r\n");
    EXPECT_EQ(what, "lf-after-cr");
    FaultInjector garbage({0, 1}, 3);
    const std::string frame = FormatFrame("RP 185400000 -3600000");
    for (int i = 0; i < 50; i++) {
        const std::string wire = Join(garbage.Apply(frame, nullptr));
        ASSERT_GT(wire.size(), frame.size());
        EXPECT_EQ(wire.substr(wire.size() - frame.size()), frame);
        EXPECT_EQ(wire.find_first_of(std::string("#\r\0", 3)), wire.size() - frame.size());
    }
    FaultInjector split({0, 0, true}, 9);
    size_t most = 0;
    for (int i = 0; i < 100; i++) {
        const std::vector<Piece> pieces = split.Apply(frame, &what);
        ASSERT_GE(pieces.size(), 2u);
        ASSERT_LE(pieces.size(), 4u);
        EXPECT_EQ(Join(pieces), frame);
        EXPECT_EQ(what, "split:" + std::to_string(pieces.size()));
        EXPECT_EQ(pieces[0].delayMs, 0);
        for (size_t k = 1; k < pieces.size(); k++) {
            EXPECT_FALSE(pieces[k].bytes.empty());
            EXPECT_TRUE(pieces[k].delayMs >= 1 && pieces[k].delayMs <= 20) << pieces[k].delayMs;
        }
        most = std::max(most, pieces.size());
    }
    EXPECT_GE(most, 3u);
}

TEST(SimFaults, BadCheckEveryThirdFrameAndTheRepeatIsGood) {
    SimConfig config;
    config.statusReplies = false, config.faults.badCheckEvery = 3;
    Harness h(config);
    const Bodies sent = h.Drive({"OP 1", "+3000"});
    ASSERT_EQ(sent.size(), 8u);  // four samples after VI and ES, counted as frames 1 and 2
    for (size_t i = 0; i < sent.size(); i++)
        EXPECT_EQ(sent[i].compare(0, 5, "!BAD ") == 0, i % 3 == 0) << i;
    const Bodies repeat = h.Drive({"NA"});
    ASSERT_EQ(repeat.size(), 1u);
    EXPECT_EQ(repeat[0].compare(0, 3, "RA "), 0);
}

TEST(SimFaults, FloodNaAfterTheFirstOp1Only) {
    SimConfig config;
    config.floodNa = 7;
    Harness h(config);
    const Bodies sent = h.Drive({"OP 1"});
    ASSERT_GE(sent.size(), 7u);
    EXPECT_EQ(Bodies(sent.begin(), sent.begin() + 7), Bodies(7, "NA"));
    const Bodies again = h.Drive({"OP 0", "OP 1"});
    EXPECT_EQ(std::count(again.begin(), again.end(), "NA"), 0);
}

TEST(SimOptions, MistakesAreRefused) {
    const std::vector<const char*> mistakes[] = {
        {"--bogus"},          {"--period-ms"},          {"--period-ms", "abc"},
        {"--period-ms", "0"}, {"--seed", "-1"},         {"--self-test", "8"},
        {"--split=1"},        {"--self-test", "8 0 1"}, {"--link", "a", "--device", "b"},
    };
    Options o;
    std::string error;
    for (std::vector<const char*> m : mistakes) {
        m.insert(m.begin(), "controller-sim");
        EXPECT_FALSE(ParseOptions(static_cast<int>(m.size()), m.data(), &o, &error)) << m[1];
    }
    EXPECT_NE(error.find("--device"), std::string::npos);
}

// The records of the data file of each version, one RP and RA a period, with
// the accessory channel only where the record has one; then only KA.
TEST(SimReplay, PlaysTheRecordsOfEveryVersionInOrderThenOnlyAnswers) {
    const Bodies frames = {"RP 185400000 -3600000",   "RA 10 20 30 40 0",
                           "RP -324000000 648000000", "RA 255 0 128 1 7",
                           "RP -1 2147483647",        "RA 1 2 3 4 0",
                           "RP 324000000 -648000000", "RA 200 201 202 203 0"};
    const struct {
        const char* name;
        int64_t intervalMs;
        size_t records;
    } files[] = {{"v1_0.dat", 5000, 3}, {"v1_1.dat", 7000, 4}, {"v1_2.dat", 10000, 3},
                 {"v1_3.dat", 2000, 4}, {"v1_4.dat", 3000, 4}, {"wrong_magic.dat", -1, 0}};
    for (const auto& file : files) {
        ReplaySurvey survey;
        std::string error;
        const bool read =
            ReadReplaySurvey(std::string(SURVEY_DATA_DIR) + "/" + file.name, &survey, &error);
        ASSERT_EQ(read, file.intervalMs > 0) << file.name << " " << error;
        if (!read) continue;
        EXPECT_EQ(survey.intervalMs, file.intervalMs) << file.name;
        SimConfig config;
        config.statusReplies = false, config.route.periodMs = 100;
        config.replay = survey.samples, config.replayAccessory = survey.accessory;
        Harness h(config);
        Bodies expected(frames.begin(), frames.begin() + 2 * file.records);
        expected.push_back("KA");
        EXPECT_EQ(h.Drive({"OP 1", "+5400"}), expected) << file.name;
    }
}

}  // namespace
}  // namespace ctlsim
