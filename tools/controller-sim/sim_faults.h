// Fault injection on the frames the simulator writes. Deterministic: the
// same seed and the same sequence of frames give the same faults.
#ifndef CONTROLLER_SIM_SIM_FAULTS_H
#define CONTROLLER_SIM_SIM_FAULTS_H

#include <stdint.h>

#include <string>
#include <vector>

namespace ctlsim {

struct FaultConfig {
    int badCheckEvery = 0;   // every Nth frame written gets a wrong check (0: never)
    int garbageEvery = 0;    // every Nth frame written gets random bytes before its '#'
    bool split = false;      // frames written in random pieces with small delays
    bool lfAfterCr = false;  // a line feed after every carriage return
};

// One write: the bytes, written delayMs after the previous piece.
struct Piece {
    std::string bytes;
    int delayMs;
};

class FaultInjector {
public:
    FaultInjector(const FaultConfig& config, uint64_t seed);

    // The pieces to write for a good frame ("#...:XX\r"). *faults gets a
    // short description of what was done ("" when nothing).
    std::vector<Piece> Apply(const std::string& frame, std::string* faults);

    uint64_t FramesWritten() const { return frames_; }

private:
    FaultConfig config_;
    uint64_t state_;
    uint64_t frames_ = 0;

    uint32_t Below(uint32_t bound);
};

}  // namespace ctlsim

#endif
