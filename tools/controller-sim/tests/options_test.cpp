#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim_options.h"

namespace ctlsim {
namespace {

bool Parse(std::vector<const char*> args, Options* options, std::string* error) {
    args.insert(args.begin(), "controller-sim");
    return ParseOptions(static_cast<int>(args.size()), args.data(), options, error);
}

TEST(SimOptions, AllOptions) {
    Options o;
    std::string error;
    // clang-format off
    const char* all[] = {"--link", "/tmp/com1", "--period-ms", "100", "--start-lat=-1000",
                         "--start-lon", "2000", "--speed", "2.5", "--seed", "77", "--duration",
                         "1.5", "--log", "/tmp/l", "--record-file", "/tmp/r", "--self-test",
                         "6 0x0180", "--gps-status", "16", "--keep-alive-ms", "300", "--no-st",
                         "--bad-check-every", "5", "--garbage-every", "7", "--split",
                         "--lf-after-cr", "--silence-after", "2", "--silence-for", "0.5",
                         "--flood-na", "6", "--verbose"};
    // clang-format on
    ASSERT_TRUE(Parse(std::vector<const char*>(all, all + sizeof all / sizeof all[0]), &o, &error))
        << error;
    EXPECT_EQ(o.link, "/tmp/com1");
    EXPECT_EQ(o.sim.route.periodMs, 100);
    EXPECT_EQ(o.sim.route.startLatitude, -1000);
    EXPECT_EQ(o.sim.route.startLongitude, 2000);
    EXPECT_DOUBLE_EQ(o.sim.route.speedMps, 2.5);
    EXPECT_EQ(o.sim.route.seed, 77u);
    EXPECT_DOUBLE_EQ(o.durationS, 1.5);
    EXPECT_EQ(o.logFile, "/tmp/l");
    EXPECT_EQ(o.recordFile, "/tmp/r");
    EXPECT_EQ(o.sim.selfTestKind, 6);
    EXPECT_EQ(o.sim.selfTestCode, 0x180);
    EXPECT_EQ(o.sim.gpsStatus, 16);
    EXPECT_EQ(o.sim.keepAliveMs, 300);
    EXPECT_FALSE(o.sim.statusReplies);
    EXPECT_EQ(o.sim.faults.badCheckEvery, 5);
    EXPECT_EQ(o.sim.faults.garbageEvery, 7);
    EXPECT_TRUE(o.sim.faults.split);
    EXPECT_TRUE(o.sim.faults.lfAfterCr);
    EXPECT_EQ(o.sim.silenceAfterMs, 2000);
    EXPECT_EQ(o.sim.silenceForMs, 500);
    EXPECT_EQ(o.sim.floodNa, 6);
    EXPECT_TRUE(o.verbose);
}

TEST(SimOptions, Mistakes) {
    Options o;
    std::string error;
    const std::vector<const char*> mistakes[] = {
        {"--bogus"},          {"--period-ms"},          {"--period-ms", "abc"},
        {"--period-ms", "0"}, {"--seed", "-1"},         {"--self-test", "8"},
        {"--split=1"},        {"--self-test", "8 0 1"}, {"--link", "a", "--device", "b"},
    };
    for (const auto& m : mistakes) EXPECT_FALSE(Parse(m, &o, &error)) << m[0];
    EXPECT_NE(error.find("--device"), std::string::npos);
    EXPECT_TRUE(Parse({"--help"}, &o, &error));
    EXPECT_TRUE(o.help);
}

}  // namespace
}  // namespace ctlsim
