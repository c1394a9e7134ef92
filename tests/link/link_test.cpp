// The controller simulator on a pseudo-terminal, talking to the program's
// frame codec and link timers. A small reader here plays the serial reader
// thread: it polls the port and hands each piece to ReceiveBytes, on the
// test's own thread, so the fake platform needs no locking.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fake_platform.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "shell/tick.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

extern char** environ;

namespace {

int64_t NowMs() {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return (int64_t)ts.tv_sec * 1000 + ts.tv_nsec / 1000000;
}

class SimulatorLink : public ::testing::Test {
protected:
    const std::string ptyPath = TempTestPath("link-pty"), logPath = TempTestPath("link-sim.log");
    pid_t sim = -1;
    int fd = -1;

    void SetUp() override { ResetFakeWorld(); }

    void TearDown() override {
        if (fd >= 0) close(fd);
        if (sim > 0) {
            kill(sim, SIGTERM);
            waitpid(sim, nullptr, 0);
        }
        remove(ptyPath.c_str());
        remove(logPath.c_str());
    }

    // Starts the simulator, silent for 3 s after 1 s of data, and opens its port.
    void Start() {
        const char* exe = getenv("CONTROLLER_SIM");
        ASSERT_NE(nullptr, exe) << "CONTROLLER_SIM is not set";
        std::vector<std::string> args = {exe,     "--link",        ptyPath, "--log",
                                         logPath, "--period-ms",   "100",   "--duration",
                                         "60",    "--seed",        "7",     "--silence-after",
                                         "1",     "--silence-for", "3"};
        std::vector<char*> argv;
        for (std::string& a : args) argv.push_back(&a[0]);
        argv.push_back(nullptr);
        ASSERT_EQ(0, posix_spawn(&sim, exe, nullptr, nullptr, argv.data(), environ));
        for (int i = 0; i < 200 && access(ptyPath.c_str(), F_OK) != 0; i++) usleep(10000);
        fd = open(ptyPath.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        ASSERT_GE(fd, 0) << "cannot open " << ptyPath;
        struct termios tio;
        ASSERT_EQ(0, tcgetattr(fd, &tio));
        cfmakeraw(&tio);
        ASSERT_EQ(0, tcsetattr(fd, TCSANOW, &tio));
        fake.portFd = fd;
        fake.portOpen = true;
    }

    // Reads what arrives for ms milliseconds, piece by piece.
    void Pump(int ms) {
        const int64_t end = NowMs() + ms;
        char piece[1024 + 1];
        for (int64_t left; (left = end - NowMs()) > 0;) {
            struct pollfd p = {fd, POLLIN, 0};
            if (poll(&p, 1, (int)left) <= 0) continue;
            ssize_t n = read(fd, piece, 1024);
            if (n > 0)
                ReceiveBytes(piece, (int)n);
            else if (n < 0 && errno != EAGAIN)
                usleep(1000);
        }
    }
};

TEST_F(SimulatorLink, KeepAliveWatchdogAndStaleDataOnADrivenTick) {
    Start();
    ASSERT_EQ(1, SendFrameText("OP 1"));
    // A driven tick every 100 ms: 1 s of data, 3 s of silence, then data.
    int ticks = 0, ticksToLoss = -1, opWhileStale = 0;
    for (int64_t end = NowMs() + 5500; NowMs() < end;) {
        Pump(100);
        size_t before = FramesSent().size();
        Tick(1);
        ticks++;
        std::vector<std::string> frames = FramesSent();
        if (frames.size() > before && frames.back() == "OP 1") opWhileStale++;
        if (ticksToLoss < 0 && CountStatus("No communications from controller") > 0)
            ticksToLoss = ticks;
    }
    EXPECT_EQ(1, CountStatus("No communications from controller"));
    EXPECT_EQ(1, CountStatus("Communication from controller returned"));
    EXPECT_GT(ticksToLoss, 12);
    // Data went stale ten ticks into the silence, and "OP 1" followed every
    // tick until data came back.
    EXPECT_GE(opWhileStale, 15);
    // While data flowed and nothing else was sent, "KA" kept the line alive.
    EXPECT_NE(std::string::npos, ReadFileBytes(logPath).find(" RX KA\n"));
    // A clean line: no complaint either way, and the stored sample is the live one.
    EXPECT_EQ(0, CountStatus("Received invalid data from controller"));
    const std::vector<std::string> frames = FramesSent();
    EXPECT_EQ(frames.end(), std::find(frames.begin(), frames.end(), "NA"));
    EXPECT_GT(liveState.dataValidTicks, 0);
    EXPECT_NE(0, liveState.liveLatitude);
    AddRecord(RECORD_KIND_LIVE);
    EXPECT_EQ(liveState.liveLatitude, recordStore.rows[0].latitude);
    EXPECT_TRUE(recordStore.rows[0].flags & RECORD_LIVE);
}

}  // namespace
