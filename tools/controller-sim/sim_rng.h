// Deterministic pseudo-random numbers for the simulator: the same seed gives
// the same numbers on every platform (no std:: distributions, whose output
// is not specified).
#ifndef CONTROLLER_SIM_SIM_RNG_H
#define CONTROLLER_SIM_SIM_RNG_H

#include <stdint.h>

namespace ctlsim {

// SplitMix64 finaliser: a good 64-bit mixing function.
uint64_t Mix64(uint64_t value);

// Mixes several values into one seed (for per-sample, per-channel streams).
uint64_t HashSeed(uint64_t a, uint64_t b, uint64_t c = 0);

class Rng {
public:
    explicit Rng(uint64_t seed) : state_(seed) {}

    uint64_t Next();
    // Uniform in [0, bound); 0 when bound is 0.
    uint32_t Below(uint32_t bound);
    // Uniform in [lo, hi], inclusive.
    int32_t Range(int32_t lo, int32_t hi);
    // Uniform in [0, 1).
    double Unit();
    // Standard normal (Box-Muller).
    double Gaussian();

private:
    uint64_t state_;
};

}  // namespace ctlsim

#endif
