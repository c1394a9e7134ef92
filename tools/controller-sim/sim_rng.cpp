#include "sim_rng.h"

#include <math.h>

namespace ctlsim {

uint64_t Mix64(uint64_t value) {
    uint64_t z = value;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

uint64_t HashSeed(uint64_t a, uint64_t b, uint64_t c) {
    return Mix64(Mix64(Mix64(a) ^ (b + 0x9E3779B97F4A7C15ULL)) ^ (c + 0x632BE59BD9B4E019ULL));
}

uint64_t Rng::Next() {
    state_ += 0x9E3779B97F4A7C15ULL;
    return Mix64(state_);
}

uint32_t Rng::Below(uint32_t bound) {
    if (bound == 0) return 0;
    return static_cast<uint32_t>((Next() >> 32) % bound);
}

int32_t Rng::Range(int32_t lo, int32_t hi) {
    if (hi <= lo) return lo;
    const uint32_t span = static_cast<uint32_t>(static_cast<int64_t>(hi) - lo + 1);
    return static_cast<int32_t>(lo + static_cast<int64_t>(Below(span)));
}

double Rng::Unit() {
    return static_cast<double>(Next() >> 11) * (1.0 / 9007199254740992.0);
}

double Rng::Gaussian() {
    double u1 = Unit();
    if (u1 < 1e-300) u1 = 1e-300;
    const double u2 = Unit();
    return sqrt(-2.0 * log(u1)) * cos(6.283185307179586 * u2);
}

}  // namespace ctlsim
