#include "sim_faults.h"

#include <stdio.h>

#include "sim_rng.h"

namespace ctlsim {

namespace {

// Garbage: printable ASCII without '#' (a '#' would start a frame of its own).
char GarbageByte(uint32_t n) {
    char c = static_cast<char>(0x21 + n % 94);  // '!' .. '~'
    if (c == '#') c = '?';
    return c;
}

}  // namespace

FaultInjector::FaultInjector(const FaultConfig& config, uint64_t seed)
    : config_(config), state_(HashSeed(seed, 0xFA17)) {}

uint32_t FaultInjector::Below(uint32_t bound) {
    state_ += 0x9E3779B97F4A7C15ULL;
    if (bound == 0) return 0;
    return static_cast<uint32_t>((Mix64(state_) >> 32) % bound);
}

std::vector<Piece> FaultInjector::Apply(const std::string& frame, std::string* faults) {
    frames_++;
    std::string wire = frame;
    std::string what;
    if (config_.badCheckEvery > 0 && frames_ % static_cast<uint64_t>(config_.badCheckEvery) == 0 &&
        wire.size() >= 4) {
        // Replace the two digits by those of another value.
        const size_t at = wire.size() - 3;
        unsigned value = 0;
        sscanf(wire.c_str() + at, "%2X", &value);
        value ^= 1 + Below(255);
        char digits[3];
        snprintf(digits, sizeof digits, "%02X", value & 0xFF);
        wire[at] = digits[0];
        wire[at + 1] = digits[1];
        what += " bad-check";
    }
    if (config_.garbageEvery > 0 && frames_ % static_cast<uint64_t>(config_.garbageEvery) == 0) {
        const uint32_t count = 1 + Below(6);
        std::string garbage;
        for (uint32_t i = 0; i < count; i++) garbage.push_back(GarbageByte(Below(94)));
        wire = garbage + wire;
        what += " garbage";
    }
    if (config_.lfAfterCr) {
        wire.push_back('\n');
        what += " lf-after-cr";
    }
    std::vector<Piece> pieces;
    if (config_.split && wire.size() >= 2) {
        // Two to four pieces, cut at distinct random places.
        const uint32_t want = 2 + Below(3);
        std::vector<size_t> cuts;
        for (uint32_t i = 0; i + 1 < want; i++) {
            const size_t cut = 1 + Below(static_cast<uint32_t>(wire.size() - 1));
            bool seen = false;
            for (size_t c : cuts) seen = seen || c == cut;
            if (!seen) cuts.push_back(cut);
        }
        for (size_t i = 1; i < cuts.size(); i++) {
            for (size_t j = i; j > 0 && cuts[j - 1] > cuts[j]; j--) {
                const size_t t = cuts[j];
                cuts[j] = cuts[j - 1];
                cuts[j - 1] = t;
            }
        }
        size_t from = 0;
        for (size_t cut : cuts) {
            pieces.push_back(Piece{wire.substr(from, cut - from),
                                   from == 0 ? 0 : static_cast<int>(1 + Below(20))});
            from = cut;
        }
        pieces.push_back(Piece{wire.substr(from), static_cast<int>(1 + Below(20))});
        what += " split:" + std::to_string(pieces.size());
    } else {
        pieces.push_back(Piece{wire, 0});
    }
    if (faults != nullptr) *faults = what.empty() ? std::string() : what.substr(1);
    return pieces;
}

}  // namespace ctlsim
