// controller-sim: the I/O and timing around the simulator core. Opens a
// pseudo-terminal (or a serial device), feeds what arrives to the
// Controller, and writes what it asks for, piece by piece, at the times it
// asks for; logs with timestamps in ms since start.
#include <errno.h>
#include <fcntl.h>
#include <math.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "sim_controller.h"
#include "sim_options.h"
#include "sim_replay.h"

namespace {

volatile sig_atomic_t g_stop = 0;

void OnSignal(int) {
    g_stop = 1;
}

int64_t MonotonicMs() {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<int64_t>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

// Raw, 9600 baud, 8 data bits, no parity, one stop bit, no flow control.
// TCSANOW: nothing already queued is flushed.
bool ConfigureLine(int fd) {
    struct termios tio;
    if (tcgetattr(fd, &tio) != 0) return false;
    cfmakeraw(&tio);
    cfsetispeed(&tio, B9600);
    cfsetospeed(&tio, B9600);
    tio.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | CSTOPB | CRTSCTS);
    tio.c_cflag |= CS8 | CREAD | CLOCAL;
    tio.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
    tio.c_cc[VMIN] = 1;
    tio.c_cc[VTIME] = 0;
    return tcsetattr(fd, TCSANOW, &tio) == 0;
}

class Log {
public:
    ~Log() {
        if (file_ != nullptr) fclose(file_);
    }
    bool Open(const std::string& path, bool verbose) {
        verbose_ = verbose;
        if (path.empty()) return true;
        file_ = fopen(path.c_str(), "w");
        return file_ != nullptr;
    }
    void Line(int64_t ms, const std::string& text) {
        if (file_ != nullptr) {
            fprintf(file_, "%lld %s\n", static_cast<long long>(ms), text.c_str());
            fflush(file_);
        }
        if (verbose_) fprintf(stderr, "%lld %s\n", static_cast<long long>(ms), text.c_str());
    }

private:
    FILE* file_ = nullptr;
    bool verbose_ = false;
};

struct Pending {
    int64_t dueMs;
    std::string bytes;
    std::string record;  // written to the record file once bytes are out
};

class Simulator {
public:
    explicit Simulator(const ctlsim::Options& options)
        : options_(options), controller_(options.sim) {}
    ~Simulator();
    int Run();

private:
    bool OpenPort();
    bool OpenDevice();
    int64_t Now() const { return MonotonicMs() - startMs_; }
    void Execute(const std::vector<ctlsim::Action>& actions, int64_t now);
    void ReadInput(int64_t now);
    void ProbeHungPort(int64_t now);
    void WriteDue(int64_t now);
    void HangUp(int64_t now, const char* why);

    ctlsim::Options options_;
    ctlsim::Controller controller_;
    Log log_;
    FILE* record_ = nullptr;
    int fd_ = -1;
    std::string slavePath_;
    bool linkMade_ = false;
    int64_t startMs_ = 0;
    bool hung_ = false;
    int64_t nextProbeMs_ = 0;
    bool hupWithoutData_ = false;
    std::deque<Pending> queue_;
};

Simulator::~Simulator() {
    if (record_ != nullptr) fclose(record_);
    if (linkMade_) {
        char target[4096];
        const ssize_t n = readlink(options_.link.c_str(), target, sizeof target - 1);
        if (n > 0) {
            target[n] = '\0';
            if (slavePath_ == target) unlink(options_.link.c_str());
        }
    }
    if (fd_ >= 0) close(fd_);
}

bool Simulator::OpenDevice() {
    fd_ = open(options_.device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd_ < 0) return false;
    if (!ConfigureLine(fd_)) {
        close(fd_);
        fd_ = -1;
        return false;
    }
    return true;
}

bool Simulator::OpenPort() {
    if (!options_.device.empty()) {
        if (!OpenDevice()) {
            fprintf(stderr, "controller-sim: cannot open %s: %s\n", options_.device.c_str(),
                    strerror(errno));
            return false;
        }
        slavePath_ = options_.device;
    } else {
        fd_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (fd_ < 0 || grantpt(fd_) != 0 || unlockpt(fd_) != 0) {
            fprintf(stderr, "controller-sim: cannot open a pseudo-terminal: %s\n", strerror(errno));
            return false;
        }
        char name[256];
        if (ptsname_r(fd_, name, sizeof name) != 0) {
            fprintf(stderr, "controller-sim: ptsname: %s\n", strerror(errno));
            return false;
        }
        slavePath_ = name;
        // On Linux the termios calls on the master act on the slave, so the
        // slave is configured without being opened here (opening and closing
        // it would look like a hangup).
        if (!ConfigureLine(fd_)) {
            fprintf(stderr, "controller-sim: cannot configure %s: %s\n", name, strerror(errno));
            return false;
        }
        if (!options_.link.empty()) {
            struct stat st;
            if (lstat(options_.link.c_str(), &st) == 0) {
                if (!S_ISLNK(st.st_mode)) {
                    fprintf(stderr, "controller-sim: %s exists and is not a symlink\n",
                            options_.link.c_str());
                    return false;
                }
                unlink(options_.link.c_str());
            }
            if (symlink(slavePath_.c_str(), options_.link.c_str()) != 0) {
                fprintf(stderr, "controller-sim: cannot link %s: %s\n", options_.link.c_str(),
                        strerror(errno));
                return false;
            }
            linkMade_ = true;
        }
    }
    printf("%s\n", slavePath_.c_str());
    fflush(stdout);
    return true;
}

void Simulator::Execute(const std::vector<ctlsim::Action>& actions, int64_t now) {
    for (const ctlsim::Action& action : actions) {
        if (!action.log.empty()) log_.Line(now, action.log);
        if (action.pieces.empty()) continue;
        int64_t due = queue_.empty() ? now : queue_.back().dueMs;
        if (due < now) due = now;
        for (size_t i = 0; i < action.pieces.size(); i++) {
            due += action.pieces[i].delayMs;
            Pending pending;
            pending.dueMs = due;
            pending.bytes = action.pieces[i].bytes;
            if (i + 1 == action.pieces.size()) pending.record = action.record;
            queue_.push_back(pending);
        }
    }
    // Nobody reading for a long time: keep the queue bounded.
    size_t dropped = 0;
    while (queue_.size() > 4096) {
        queue_.pop_front();
        dropped++;
    }
    if (dropped > 0)
        log_.Line(now, "NOTE output queue full, " + std::to_string(dropped) + " pieces dropped");
}

void Simulator::HangUp(int64_t now, const char* why) {
    hung_ = true;
    nextProbeMs_ = now + 50;
    std::string text = std::string("NOTE port closed by the other side (") + why + ")";
    if (!queue_.empty()) text += ", " + std::to_string(queue_.size()) + " pieces not written";
    log_.Line(now, text);
    queue_.clear();
    std::vector<ctlsim::Action> actions;
    controller_.OnHangup(now, &actions);
    Execute(actions, now);
}

void Simulator::ReadInput(int64_t now) {
    char buffer[1024];
    for (;;) {
        const ssize_t n = read(fd_, buffer, sizeof buffer);
        if (n > 0) {
            hupWithoutData_ = false;
            std::vector<ctlsim::Action> actions;
            controller_.OnBytes(buffer, static_cast<size_t>(n), now, &actions);
            Execute(actions, now);
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
        HangUp(now, n == 0 ? "end of file" : strerror(errno));
        return;
    }
}

void Simulator::ProbeHungPort(int64_t now) {
    if (now < nextProbeMs_) return;
    nextProbeMs_ = now + 50;
    if (!options_.device.empty()) {
        // A device that went away: open it again, at most once a second.
        nextProbeMs_ = now + 1000;
        if (fd_ >= 0) close(fd_);
        fd_ = -1;
        if (!OpenDevice()) return;
    }
    char buffer[1024];
    const ssize_t n = read(fd_, buffer, sizeof buffer);
    if (n > 0 || (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))) {
        hung_ = false;
        hupWithoutData_ = false;
        log_.Line(now, "NOTE port opened by the other side");
        if (n > 0) {
            std::vector<ctlsim::Action> actions;
            controller_.OnBytes(buffer, static_cast<size_t>(n), now, &actions);
            Execute(actions, now);
        }
    }
}

void Simulator::WriteDue(int64_t now) {
    while (!queue_.empty() && queue_.front().dueMs <= now) {
        Pending& front = queue_.front();
        const ssize_t n = write(fd_, front.bytes.data(), front.bytes.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            if (errno == EAGAIN || errno == EWOULDBLOCK) return;
            HangUp(now, strerror(errno));
            return;
        }
        front.bytes.erase(0, static_cast<size_t>(n));
        if (!front.bytes.empty()) return;
        if (!front.record.empty() && record_ != nullptr) {
            fprintf(record_, "%s\n", front.record.c_str());
            fflush(record_);
        }
        queue_.pop_front();
    }
}

int Simulator::Run() {
    startMs_ = MonotonicMs();
    if (!log_.Open(options_.logFile, options_.verbose)) {
        fprintf(stderr, "controller-sim: cannot write %s: %s\n", options_.logFile.c_str(),
                strerror(errno));
        return 1;
    }
    if (!options_.recordFile.empty()) {
        record_ = fopen(options_.recordFile.c_str(), "w");
        if (record_ == nullptr) {
            fprintf(stderr, "controller-sim: cannot write %s: %s\n", options_.recordFile.c_str(),
                    strerror(errno));
            return 1;
        }
    }
    if (!OpenPort()) return 1;
    log_.Line(Now(), "NOTE listening on " + slavePath_);
    const int64_t endMs =
        options_.durationS > 0.0 ? static_cast<int64_t>(llround(options_.durationS * 1000.0)) : -1;
    controller_.Start(Now());
    while (g_stop == 0) {
        int64_t now = Now();
        if (endMs >= 0 && now >= endMs) {
            log_.Line(now, "NOTE duration reached");
            break;
        }
        if (hung_) {
            ProbeHungPort(now);
        } else {
            ReadInput(now);
        }
        if (!hung_) {
            std::vector<ctlsim::Action> actions;
            controller_.OnTick(now, &actions);
            Execute(actions, now);
            WriteDue(now);
        }

        int64_t wake = controller_.NextWakeMs();
        if (!queue_.empty() && queue_.front().dueMs < wake) wake = queue_.front().dueMs;
        if (endMs >= 0 && endMs < wake) wake = endMs;
        if (hung_ && nextProbeMs_ < wake) wake = nextProbeMs_;
        int64_t timeout = wake - now;
        if (timeout < 0) timeout = 0;
        if (timeout > 1000) timeout = 1000;
        if (hung_) {
            poll(nullptr, 0, static_cast<int>(timeout));
            continue;
        }
        struct pollfd pfd;
        pfd.fd = fd_;
        pfd.events = POLLIN;
        if (!queue_.empty() && queue_.front().dueMs <= now) pfd.events |= POLLOUT;
        if (hupWithoutData_) {
            // Seen a hangup flag although reads said "no data": do not let a
            // persistent flag turn this loop into a busy one.
            poll(nullptr, 0, static_cast<int>(timeout < 20 ? timeout : 20));
            hupWithoutData_ = false;
            continue;
        }
        const int rc = poll(&pfd, 1, static_cast<int>(timeout));
        if (rc > 0 && (pfd.revents & (POLLHUP | POLLERR)) != 0 && (pfd.revents & POLLIN) == 0) {
            hupWithoutData_ = true;
        }
    }
    log_.Line(Now(), "NOTE exiting");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    ctlsim::Options options;
    std::string error;
    if (!ctlsim::ParseOptions(argc, argv, &options, &error)) {
        fprintf(stderr, "controller-sim: %s\n%s", error.c_str(), ctlsim::UsageText().c_str());
        return 2;
    }
    if (options.help) {
        printf("%s", ctlsim::UsageText().c_str());
        return 0;
    }
    if (!options.replayFile.empty()) {
        ctlsim::ReplaySurvey survey;
        if (!ctlsim::ReadReplaySurvey(options.replayFile, &survey, &error)) {
            fprintf(stderr, "controller-sim: %s\n", error.c_str());
            return 2;
        }
        if (survey.samples.empty()) {
            fprintf(stderr, "controller-sim: %s holds no records\n", options.replayFile.c_str());
            return 2;
        }
        options.sim.replay = survey.samples;
        options.sim.replayAccessory = survey.accessory;
        options.sim.route.periodMs = std::max<int64_t>(10, llround(survey.intervalMs / options.replaySpeed));
    }
    struct sigaction sa;
    memset(&sa, 0, sizeof sa);
    sa.sa_handler = OnSignal;
    sigemptyset(&sa.sa_mask);
    sigaction(SIGTERM, &sa, nullptr);
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGHUP, &sa, nullptr);
    signal(SIGPIPE, SIG_IGN);
    Simulator simulator(options);
    return simulator.Run();
}
