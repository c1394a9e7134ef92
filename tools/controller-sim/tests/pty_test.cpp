// End-to-end-ish: the real controller-sim binary on a pseudo-terminal, the
// test on the slave side as the PC would be.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "sim_frame.h"

#ifndef CONTROLLER_SIM_BINARY
#define CONTROLLER_SIM_BINARY "controller-sim"
#endif

namespace ctlsim {
namespace {

const char kPcBanner[] = "\n\rVELDOR (Software)\r\nRadio survey systems\n\r";

int64_t NowMs() {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<int64_t>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

size_t CountCode(const std::vector<std::string>& lines, const std::string& code) {
    size_t n = 0;
    for (const std::string& line : lines) n += line.compare(0, code.size(), code) == 0 ? 1 : 0;
    return n;
}

// The PC's side of the line: reads frames from the slave.
class Peer {
public:
    bool Open(const std::string& path) {
        fd_ = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        pending_.clear();
        return fd_ >= 0;
    }
    void Close() {
        if (fd_ >= 0) close(fd_);
        fd_ = -1;
    }
    ~Peer() { Close(); }
    int fd() const { return fd_; }

    void Write(const std::string& bytes) {
        ASSERT_EQ(write(fd_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

    // Reads until `count` lines start with `code` or the time is up; returns
    // every line read, bodies of good frames as they are, bad lines as "!BAD <escaped>".
    std::vector<std::string> ReadUntil(int64_t timeoutMs, const std::string& code, size_t count) {
        std::vector<std::string> lines;
        const int64_t end = NowMs() + timeoutMs;
        while (NowMs() < end) {
            struct pollfd pfd = {fd_, POLLIN, 0};
            const int64_t left = end - NowMs();
            if (poll(&pfd, 1, static_cast<int>(left > 0 ? left : 0)) <= 0) continue;
            char buffer[512];
            const ssize_t n = read(fd_, buffer, sizeof buffer);
            if (n <= 0) continue;
            for (ssize_t i = 0; i < n; i++) {
                if (buffer[i] != '\r') {
                    pending_.push_back(buffer[i]);
                    continue;
                }
                std::string body;
                lines.push_back(ParseFrameLine(pending_, &body) ? body
                                                                : "!BAD " + EscapeText(pending_));
                pending_.clear();
            }
            if (CountCode(lines, code) >= count) break;
        }
        return lines;
    }

private:
    int fd_ = -1;
    std::string pending_;
};

TEST(SimPty, StreamsAnswersAndSurvivesAHangup) {
    const char* binary = getenv("CONTROLLER_SIM_BINARY");
    if (binary == nullptr || binary[0] == '\0') binary = CONTROLLER_SIM_BINARY;
    char dirTemplate[] = "/tmp/controller-sim-test-XXXXXX";
    ASSERT_NE(mkdtemp(dirTemplate), nullptr);
    const std::string dir = dirTemplate;
    const std::string link = dir + "/com1";
    const std::string logPath = dir + "/sim.log";
    const std::string recordPath = dir + "/samples.txt";

    int out[2];
    ASSERT_EQ(pipe(out), 0);
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        dup2(out[1], 1);
        close(out[0]);
        close(out[1]);
        execl(binary, binary, "--period-ms", "100", "--duration", "20", "--seed", "3", "--link",
              link.c_str(), "--log", logPath.c_str(), "--record-file", recordPath.c_str(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    close(out[1]);

    // The first line on standard output is the slave's path.
    std::string slave;
    const int64_t end = NowMs() + 3000;
    while (NowMs() < end && (slave.empty() || slave.back() != '\n')) {
        struct pollfd pfd = {out[0], POLLIN, 0};
        if (poll(&pfd, 1, 100) <= 0) continue;
        char c;
        if (read(out[0], &c, 1) != 1) break;
        slave.push_back(c);
    }
    close(out[0]);
    ASSERT_FALSE(slave.empty()) << "no path from " << binary;
    slave.pop_back();
    EXPECT_EQ(slave.compare(0, 9, "/dev/pts/"), 0) << slave;
    char target[256] = {0};
    ASSERT_GT(readlink(link.c_str(), target, sizeof target - 1), 0);
    EXPECT_EQ(slave, target);

    Peer pc;
    ASSERT_TRUE(pc.Open(link));
    // The slave is raw, 9600 8N1, before the PC configures anything.
    struct termios tio;
    ASSERT_EQ(tcgetattr(pc.fd(), &tio), 0);
    EXPECT_EQ(cfgetospeed(&tio), static_cast<speed_t>(B9600));
    EXPECT_EQ(tio.c_cflag & (CSIZE | PARENB | CSTOPB), static_cast<tcflag_t>(CS8));
    EXPECT_EQ(tio.c_lflag & (ICANON | ECHO | ISIG), 0u);
    EXPECT_EQ(tio.c_iflag & (ICRNL | IXON), 0u);
    EXPECT_EQ(tio.c_oflag & OPOST, 0u);

    // Banner, then "OP 1": streaming starts, every frame with a good check.
    pc.Write(kPcBanner);
    pc.Write(FormatFrame("OP 1"));
    std::vector<std::string> lines = pc.ReadUntil(2000, "RA ", 3);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], "VI 2 3 1");
    EXPECT_EQ(lines[1], "ES 48");
    EXPECT_EQ(lines[2], "RP 185400000 -3600000");
    EXPECT_GE(CountCode(lines, "RA "), 3u);
    EXPECT_GE(CountCode(lines, "RP "), 3u);
    EXPECT_EQ(CountCode(lines, "!BAD"), 0u);
    EXPECT_EQ(CountCode(lines, "NA"), 0u);  // the banner drew no NA

    // A bad frame is answered with NA.
    pc.Write("#OP 1:21\r");
    lines = pc.ReadUntil(1000, "NA", 1);
    EXPECT_EQ(CountCode(lines, "NA"), 1u);
    EXPECT_EQ(CountCode(lines, "!BAD"), 0u);

    // The PC closes the port and opens it again: the simulator goes on.
    pc.Close();
    usleep(300 * 1000);
    ASSERT_TRUE(pc.Open(link));
    pc.Write(kPcBanner);
    pc.Write(FormatFrame("KA"));
    lines = pc.ReadUntil(1500, "RA ", 2);
    EXPECT_GE(CountCode(lines, "RA "), 2u);
    EXPECT_EQ(CountCode(lines, "NA"), 0u);
    EXPECT_EQ(CountCode(lines, "!BAD"), 0u);
    pc.Write(FormatFrame("OP 0"));
    usleep(100 * 1000);
    pc.Close();

    // SIGTERM ends it cleanly and soon.
    ASSERT_EQ(kill(pid, SIGTERM), 0);
    int status = 0;
    pid_t done = 0;
    for (int i = 0; i < 300 && done == 0; i++) {
        done = waitpid(pid, &status, WNOHANG);
        if (done == 0) usleep(10 * 1000);
    }
    if (done == 0) {
        kill(pid, SIGKILL);
        waitpid(pid, &status, 0);
        FAIL() << "controller-sim did not end on SIGTERM";
    }
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    // A hangup must not make it spin: a few seconds of run, little CPU.
    struct rusage usage;
    ASSERT_EQ(getrusage(RUSAGE_CHILDREN, &usage), 0);
    const double cpu = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
                       (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    EXPECT_LT(cpu, 0.5);

    const std::string log = ReadFile(logPath);
    for (const char* line :
         {" BANNER VELDOR (Software)\n", " RX OP 1\n", " TX RP 185400000 -3600000\n",
          " RX-BAD #OP 1:21\n", " TX NA\n", " NOTE port closed by the other side", " RX OP 0\n",
          " NOTE exiting\n"})
        EXPECT_NE(log.find(line), std::string::npos) << line << " in " << log;

    const std::string records = ReadFile(recordPath);
    EXPECT_EQ(records.compare(0, 19, "185400000 -3600000 "), 0) << records;
    EXPECT_GE(static_cast<int>(std::count(records.begin(), records.end(), '\n')), 5);

    struct stat st;
    EXPECT_NE(lstat(link.c_str(), &st), 0) << "link left behind";
    unlink(logPath.c_str());
    unlink(recordPath.c_str());
    rmdir(dir.c_str());
}

}  // namespace
}  // namespace ctlsim
