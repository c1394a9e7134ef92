// The controller: what it does on each inbound frame and as time passes.
// Pure logic: bytes in, actions out (log lines, pieces to write, record-file
// lines), with the time passed in by the caller, so tests drive it with a
// fake clock.
#ifndef CONTROLLER_SIM_SIM_CONTROLLER_H
#define CONTROLLER_SIM_SIM_CONTROLLER_H

#include <stddef.h>
#include <stdint.h>

#include <string>
#include <vector>

#include "sim_faults.h"
#include "sim_frame.h"
#include "sim_route.h"

namespace ctlsim {

struct SimConfig {
    RouteConfig route;  // route.periodMs is the streaming period, route.seed the seed
    FaultConfig faults;
    int64_t keepAliveMs = 5000;
    // "ET" answer to "OS".
    int selfTestKind = 8;
    int selfTestCode = 0;
    // GPS status reported while tracking normally (0x30 bits: giving fixes).
    int gpsStatus = 48;
    // Samples during which the GPS reports "acquiring" (0x08) after "OS", "OI 1" or "OI 2".
    int reacquireSamples = 3;
    // "ST" text answers to some commands.
    bool statusReplies = true;
    // Silence: after silenceAfterMs of streaming (from the first "OP 1"),
    // nothing is written for silenceForMs. Off when silenceAfterMs < 0.
    int64_t silenceAfterMs = -1;
    int64_t silenceForMs = 0;
    // "NA" frames sent in a row after the first "OP 1".
    int floodNa = 0;
    // Repeats of the last frame for "NA" in a row; a new frame resets the count.
    int maxRepeats = 5;
    // A saved survey played instead of the route, one record a period, with
    // each record's accessory channel; after its last record no more samples.
    std::vector<Sample> replay;
    std::vector<int> replayAccessory;
};

// What the caller must do, in order.
struct Action {
    std::string log;            // a log line without its timestamp; "" for none
    std::vector<Piece> pieces;  // bytes to write; empty for none
    std::string record;         // record-file line to write once the pieces are out; "" for none
};

class Controller {
public:
    explicit Controller(const SimConfig& config);

    // The clock starts: the keep-alive counts from here.
    void Start(int64_t nowMs);
    void OnBytes(const char* data, size_t length, int64_t nowMs, std::vector<Action>* out);
    void OnTick(int64_t nowMs, std::vector<Action>* out);
    // The other side closed the port: forget partial input, expect a banner.
    void OnHangup(int64_t nowMs, std::vector<Action>* out);
    // The earliest time at which OnTick has something to do.
    int64_t NextWakeMs() const;

    // State, for tests and the log.
    bool Running() const { return running_; }
    bool Calibrating() const { return calibrating_; }
    bool TzrMode() const { return tzrMode_; }
    int TzrChannel() const { return tzrChannel_; }
    int TzrChannels() const { return tzrChannels_; }
    bool TzrIncrement() const { return tzrIncrement_; }
    bool Ar3000aScan() const { return arScan_; }
    const std::string& Ar3000aConfig() const { return arConfig_; }
    bool GpsDiff() const { return gpsDiff_; }
    int GpsStatus() const;
    uint64_t SamplesTaken() const { return samples_; }
    const std::string& LastFrame() const { return lastFrame_; }
    bool InBannerPhase() const { return receiver_.InBannerPhase(); }
    const RouteModel& Route() const { return route_; }

private:
    void HandleLine(const InboundLine& line, int64_t nowMs, std::vector<Action>* out);
    void HandleBody(const std::string& body, int64_t nowMs, std::vector<Action>* out);
    void Send(const std::string& body, int64_t nowMs, std::vector<Action>* out,
              const std::string& record = std::string());
    void Repeat(int64_t nowMs, std::vector<Action>* out);
    void Reply(const std::string& text, int64_t nowMs, std::vector<Action>* out);
    void Note(const std::string& text, std::vector<Action>* out);
    void StartRunning(int64_t nowMs, std::vector<Action>* out);
    void TakeSample(int64_t nowMs, std::vector<Action>* out);
    void ResetAccessories();
    bool Silenced(int64_t nowMs) const;
    void UpdateSilence(int64_t nowMs, std::vector<Action>* out);

    SimConfig config_;
    RouteModel route_;
    FaultInjector faults_;
    LineReceiver receiver_;

    int64_t lastTxMs_ = 0;
    std::string lastFrame_;
    int repeats_ = 0;

    bool running_ = false;
    bool calibrating_ = false;
    bool everRan_ = false;
    int64_t nextSampleMs_ = 0;
    uint64_t samples_ = 0;

    int64_t silenceStartMs_ = -1;
    int64_t silenceEndMs_ = -1;
    int silenceState_ = 0;  // 0 before, 1 in, 2 over

    bool tzrMode_ = false;
    int tzrChannel_ = 1;
    int tzrChannels_ = 10;
    bool tzrIncrement_ = false;
    bool arScan_ = false;
    std::string arConfig_;
    bool gpsDiff_ = false;
    int reacquireLeft_ = 0;
    int lastStatusSent_ = -1;
};

}  // namespace ctlsim

#endif
