#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim_controller.h"
#include "sim_frame.h"
#include "sim_replay.h"

namespace ctlsim {
namespace {

// The records of the data file of each version, one RP and RA a period, with
// the accessory channel only where the record has one; then only KA.
TEST(SimReplay, PlaysTheRecordsOfEveryVersionInOrderThenOnlyAnswers) {
    const std::vector<std::string> frames = {
        "RP 185400000 -3600000", "RA 10 20 30 40 0", "RP -324000000 648000000", "RA 255 0 128 1 7",
        "RP -1 2147483647",      "RA 1 2 3 4 0",     "RP 324000000 -648000000", "RA 200 201 202 203 0"};
    const struct { const char* name; int64_t intervalMs; size_t records; } files[] = {
        {"v1_0.dat", 5000, 3}, {"v1_1.dat", 7000, 4}, {"v1_2.dat", 10000, 3}, {"v1_3.dat", 2000, 4},
        {"v1_4.dat", 3000, 4}, {"wrong_magic.dat", -1, 0}};
    for (const auto& file : files) {
        ReplaySurvey survey;
        std::string error, body;
        const bool read = ReadReplaySurvey(std::string(SURVEY_DATA_DIR) + "/" + file.name, &survey, &error);
        ASSERT_EQ(read, file.intervalMs > 0) << file.name << " " << error;
        if (!read) continue;
        EXPECT_EQ(survey.intervalMs, file.intervalMs) << file.name;
        SimConfig config;
        config.statusReplies = false, config.route.periodMs = 100;
        config.replay = survey.samples, config.replayAccessory = survey.accessory;
        Controller controller(config);
        controller.Start(0);
        std::vector<Action> actions;
        const std::string op1 = FormatFrame("OP 1");
        controller.OnBytes(op1.data(), op1.size(), 0, &actions);
        for (int64_t now = 10; now <= 5400; now += 10) controller.OnTick(now, &actions);
        std::vector<std::string> bodies, expected(frames.begin(), frames.begin() + 2 * file.records);
        expected.push_back("KA");
        for (const Action& action : actions)
            for (const Piece& piece : action.pieces)
                if (ParseFrameLine(piece.bytes.substr(0, piece.bytes.find('\r')), &body) &&
                    body.compare(0, 2, "VI") != 0 && body.compare(0, 2, "ES") != 0)
                    bodies.push_back(body);
        EXPECT_EQ(bodies, expected) << file.name;
    }
}

}  // namespace
}  // namespace ctlsim
