#include "sim_controller.h"

#include <ctype.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

namespace ctlsim {

namespace {

const int kStatusAcquiring = 0x08;
const int kStatusDifferential = 0x04;
const int kMaxTzrChannels = 99;

// Exactly `count` decimal numbers separated by blanks, nothing else.
bool ReadNumbers(const std::string& text, int count, long* values) {
    const char* p = text.c_str();
    for (int i = 0; i < count; i++) {
        while (*p == ' ') p++;
        if (*p == '\0') return false;
        char* end = nullptr;
        errno = 0;
        const long value = strtol(p, &end, 10);
        if (end == p || errno != 0) return false;
        if (*end != '\0' && *end != ' ') return false;
        values[i] = value;
        p = end;
    }
    while (*p == ' ') p++;
    return *p == '\0';
}

std::string Upper2(const std::string& body) {
    std::string code;
    for (size_t i = 0; i < 2 && i < body.size(); i++) {
        code.push_back(static_cast<char>(toupper(static_cast<unsigned char>(body[i]))));
    }
    return code;
}

}  // namespace

Controller::Controller(const SimConfig& config)
    : config_(config), route_(config.route), faults_(config.faults, config.route.seed) {
    if (config_.route.periodMs < 1) config_.route.periodMs = 1;
    if (config_.keepAliveMs < 1) config_.keepAliveMs = 1;
}

void Controller::Start(int64_t nowMs) {
    lastTxMs_ = nowMs;
}

int Controller::GpsStatus() const {
    if (reacquireLeft_ > 0) return kStatusAcquiring;
    int status = config_.gpsStatus & 0xFF;
    if (gpsDiff_) status |= kStatusDifferential;
    return status;
}

int64_t Controller::NextWakeMs() const {
    int64_t next = lastTxMs_ + config_.keepAliveMs;
    if (running_ && nextSampleMs_ < next) next = nextSampleMs_;
    if (silenceState_ == 0 && silenceStartMs_ >= 0 && silenceStartMs_ < next)
        next = silenceStartMs_;
    if (silenceState_ == 1 && silenceEndMs_ < next) next = silenceEndMs_;
    return next;
}

bool Controller::Silenced(int64_t nowMs) const {
    return silenceStartMs_ >= 0 && nowMs >= silenceStartMs_ && nowMs < silenceEndMs_;
}

void Controller::UpdateSilence(int64_t nowMs, std::vector<Action>* out) {
    if (silenceStartMs_ < 0) return;
    if (silenceState_ == 0 && nowMs >= silenceStartMs_) {
        silenceState_ = 1;
        Note("silence begins", out);
    }
    if (silenceState_ == 1 && nowMs >= silenceEndMs_) {
        silenceState_ = 2;
        Note("silence ends", out);
    }
}

void Controller::Note(const std::string& text, std::vector<Action>* out) {
    Action action;
    action.log = "NOTE " + text;
    out->push_back(action);
}

void Controller::Send(const std::string& body, int64_t nowMs, std::vector<Action>* out,
                      const std::string& record) {
    UpdateSilence(nowMs, out);
    if (Silenced(nowMs)) {
        Action action;
        action.log = "DROP " + body;
        out->push_back(action);
        return;
    }
    const std::string frame = FormatFrame(body);
    std::string faults;
    Action action;
    action.log = "TX " + body;
    action.pieces = faults_.Apply(frame, &faults);
    action.record = record;
    out->push_back(action);
    if (!faults.empty()) {
        std::string wire;
        for (const Piece& piece : action.pieces) wire += piece.bytes;
        Action note;
        note.log = "FAULT " + faults + " " + EscapeText(wire);
        out->push_back(note);
    }
    lastFrame_ = frame;
    repeats_ = 0;
    lastTxMs_ = nowMs;
}

void Controller::Repeat(int64_t nowMs, std::vector<Action>* out) {
    if (lastFrame_.empty()) {
        Note("NA with nothing sent yet", out);
        return;
    }
    if (repeats_ >= config_.maxRepeats) {
        Note("NA beyond the repeat limit", out);
        return;
    }
    const std::string body = lastFrame_.substr(1, lastFrame_.size() - 5);
    UpdateSilence(nowMs, out);
    if (Silenced(nowMs)) {
        Action action;
        action.log = "DROP " + body;
        out->push_back(action);
        return;
    }
    std::string faults;
    Action action;
    action.log = "TX-REPEAT " + body;
    action.pieces = faults_.Apply(lastFrame_, &faults);
    out->push_back(action);
    if (!faults.empty()) {
        std::string wire;
        for (const Piece& piece : action.pieces) wire += piece.bytes;
        Action note;
        note.log = "FAULT " + faults + " " + EscapeText(wire);
        out->push_back(note);
    }
    repeats_++;
    lastTxMs_ = nowMs;
}

void Controller::Reply(const std::string& text, int64_t nowMs, std::vector<Action>* out) {
    if (config_.statusReplies) Send("ST " + text, nowMs, out);
}

void Controller::OnBytes(const char* data, size_t length, int64_t nowMs, std::vector<Action>* out) {
    std::vector<InboundLine> lines;
    receiver_.Feed(data, length, &lines);
    for (const InboundLine& line : lines) HandleLine(line, nowMs, out);
}

void Controller::OnHangup(int64_t nowMs, std::vector<Action>* out) {
    (void)nowMs;
    if (receiver_.Buffered() > 0) Note("partial input dropped", out);
    receiver_.Reset();
}

void Controller::HandleLine(const InboundLine& line, int64_t nowMs, std::vector<Action>* out) {
    Action action;
    switch (line.kind) {
        case InboundLine::kBanner:
            action.log = "BANNER " + EscapeText(line.text);
            out->push_back(action);
            break;
        case InboundLine::kBad:
            action.log = "RX-BAD " + EscapeText(line.text);
            out->push_back(action);
            Send("NA", nowMs, out);
            break;
        case InboundLine::kGood:
            action.log = "RX " + line.text;
            out->push_back(action);
            HandleBody(line.text, nowMs, out);
            break;
    }
}

void Controller::ResetAccessories() {
    tzrMode_ = false;
    tzrChannel_ = 1;
    tzrChannels_ = 10;
    tzrIncrement_ = false;
    arScan_ = false;
    arConfig_.clear();
    gpsDiff_ = false;
}

void Controller::HandleBody(const std::string& body, int64_t nowMs, std::vector<Action>* out) {
    const std::string code = Upper2(body);
    const std::string args = body.size() > 2 ? body.substr(2) : std::string();
    long v[3] = {0, 0, 0};
    if (code == "OP") {
        if (!ReadNumbers(args, 1, v) || (v[0] != 0 && v[0] != 1)) {
            Note("ignored: bad OP", out);
        } else if (v[0] == 1) {
            calibrating_ = false;
            if (!running_) StartRunning(nowMs, out);
        } else {
            running_ = false;
            calibrating_ = false;
            // The PC closes its port next and sends its banner when it opens it again.
            receiver_.AllowBanner();
        }
    } else if (code == "CA") {
        if (!ReadNumbers(args, 1, v) || v[0] != 1) {
            Note("ignored: bad CA", out);
        } else {
            calibrating_ = true;
            Reply("Calibration mode", nowMs, out);
            if (!running_) StartRunning(nowMs, out);
        }
    } else if (code == "KA") {
        // Nothing: the PC is alive.
    } else if (code == "NA") {
        Repeat(nowMs, out);
    } else if (code == "FR") {
        ResetAccessories();
        Reply("Factory defaults restored", nowMs, out);
    } else if (code == "MS") {
        if (!ReadNumbers(args, 1, v)) {
            Note("ignored: bad MS", out);
        } else {
            tzrMode_ = v[0] != 0;
            if (tzrMode_) {
                arScan_ = false;
                gpsDiff_ = false;
            }
            Reply(tzrMode_ ? "TZR4100 mode on" : "TZR4100 mode off", nowMs, out);
        }
    } else if (code == "MN") {
        if (!ReadNumbers(args, 1, v) || v[0] < 1 || v[0] > kMaxTzrChannels) {
            Note("ignored: bad MN", out);
        } else {
            tzrChannels_ = static_cast<int>(v[0]);
        }
    } else if (code == "MC") {
        if (!ReadNumbers(args, 1, v) || v[0] < 1 || v[0] > kMaxTzrChannels) {
            Note("ignored: bad MC", out);
        } else {
            tzrChannel_ = static_cast<int>(v[0]);
        }
    } else if (code == "MI") {
        if (!ReadNumbers(args, 1, v)) {
            Note("ignored: bad MI", out);
        } else {
            tzrIncrement_ = v[0] != 0;
        }
    } else if (code == "AC") {
        arConfig_ = body.size() > 3 ? body.substr(3) : std::string();
        Reply("AR3000A configured", nowMs, out);
    } else if (code == "AS") {
        if (!ReadNumbers(args, 1, v)) {
            Note("ignored: bad AS", out);
        } else {
            arScan_ = v[0] != 0;
            if (arScan_) {
                tzrMode_ = false;
                gpsDiff_ = false;
            }
            Reply(arScan_ ? "AR3000A scan on" : "AR3000A scan off", nowMs, out);
        }
    } else if (code == "GD") {
        if (!ReadNumbers(args, 2, v)) {
            Note("ignored: bad GD", out);
        } else {
            gpsDiff_ = v[0] != 0;
            if (gpsDiff_) {
                tzrMode_ = false;
                arScan_ = false;
                Reply("GPS differential input on at " + std::to_string(v[1]) + " baud", nowMs, out);
            } else {
                Reply("GPS differential input off", nowMs, out);
            }
        }
    } else if (code == "OT") {
        if (!ReadNumbers(args, 3, v) || v[0] < 0 || v[0] > 23 || v[1] < 0 || v[1] > 59 ||
            v[2] < 0 || v[2] > 60) {
            Note("ignored: bad OT", out);
        } else {
            Reply("GPS time set", nowMs, out);
        }
    } else if (code == "OD") {
        if (!ReadNumbers(args, 3, v) || v[0] < 1 || v[0] > 31 || v[1] < 1 || v[1] > 12 ||
            v[2] < 1980 || v[2] > 2077) {
            Note("ignored: bad OD", out);
        } else {
            Reply("GPS date set", nowMs, out);
        }
    } else if (code == "LT" || code == "LG") {
        const long limit = (code == "LT" ? 90L : 180L) * 3600000L;
        if (!ReadNumbers(args, 1, v) || v[0] < -limit || v[0] > limit) {
            Note("ignored: bad " + code, out);
        } else {
            Reply(code == "LT" ? "GPS latitude set" : "GPS longitude set", nowMs, out);
        }
    } else if (code == "OI") {
        if (!ReadNumbers(args, 1, v) || (v[0] != 1 && v[0] != 2)) {
            Note("ignored: bad OI", out);
        } else {
            reacquireLeft_ = config_.reacquireSamples;
            Reply(v[0] == 1 ? "GPS initialised" : "GPS reset to factory settings", nowMs, out);
        }
    } else if (code == "OS") {
        Send("ET " + std::to_string(config_.selfTestKind) + " " +
                 std::to_string(config_.selfTestCode),
             nowMs, out);
        reacquireLeft_ = config_.reacquireSamples;
    } else {
        Note("ignored: unknown code", out);
    }
}

void Controller::StartRunning(int64_t nowMs, std::vector<Action>* out) {
    running_ = true;
    if (!everRan_) {
        everRan_ = true;
        if (config_.silenceAfterMs >= 0) {
            silenceStartMs_ = nowMs + config_.silenceAfterMs;
            silenceEndMs_ = silenceStartMs_ + (config_.silenceForMs > 0 ? config_.silenceForMs : 0);
        }
        for (int i = 0; i < config_.floodNa; i++) Send("NA", nowMs, out);
    }
    Send("VI 2 3 1", nowMs, out);
    lastStatusSent_ = -1;  // ES again at every start
    TakeSample(nowMs, out);
    nextSampleMs_ = nowMs + config_.route.periodMs;
}

void Controller::TakeSample(int64_t nowMs, std::vector<Action>* out) {
    const bool replaying = !config_.replay.empty();
    if (replaying && samples_ >= config_.replay.size()) return;
    const int status = GpsStatus();
    if (status != lastStatusSent_) {
        Send("ES " + std::to_string(status), nowMs, out);
        lastStatusSent_ = status;
    }
    if (reacquireLeft_ > 0) reacquireLeft_--;
    const Sample sample = replaying ? config_.replay[samples_] : route_.SampleAt(samples_);
    const int accessory = replaying ? config_.replayAccessory[samples_] : tzrMode_ ? tzrChannel_ : 0;
    samples_++;
    char text[128];
    snprintf(text, sizeof text, "RP %ld %ld", static_cast<long>(sample.latitude),
             static_cast<long>(sample.longitude));
    Send(text, nowMs, out);
    snprintf(text, sizeof text, "RA %d %d %d %d %d", sample.readings[0], sample.readings[1],
             sample.readings[2], sample.readings[3], accessory);
    char record[160];
    snprintf(record, sizeof record, "%ld %ld %d %d %d %d %d", static_cast<long>(sample.latitude),
             static_cast<long>(sample.longitude), sample.readings[0], sample.readings[1],
             sample.readings[2], sample.readings[3], accessory);
    Send(text, nowMs, out, record);
    if (tzrMode_ && tzrIncrement_) tzrChannel_ = tzrChannel_ >= tzrChannels_ ? 1 : tzrChannel_ + 1;
}

void Controller::OnTick(int64_t nowMs, std::vector<Action>* out) {
    UpdateSilence(nowMs, out);
    if (running_ && nowMs >= nextSampleMs_) {
        TakeSample(nowMs, out);
        nextSampleMs_ += config_.route.periodMs;
        // Behind by more than a period (a stall): no burst of samples.
        if (nextSampleMs_ <= nowMs) nextSampleMs_ = nowMs + config_.route.periodMs;
    }
    if (!Silenced(nowMs) && nowMs - lastTxMs_ >= config_.keepAliveMs) Send("KA", nowMs, out);
}

}  // namespace ctlsim
