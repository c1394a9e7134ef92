// How fast the receiver takes frames apart, against the 960 bytes a second
// that a 9600-baud line can deliver.
#include <benchmark/benchmark.h>
#include <string.h>

#include <string>

#include "fake_platform.h"
#include "link/frame_codec.h"

static std::string SurveyStream(int frames) {
    std::string s;
    for (int i = 0; i < frames; i++) {
        char body[64];
        if (i % 2)
            snprintf(body, sizeof body, "RA %d %d %d %d %d", i & 255, (i * 3) & 255, 7, 9, i % 10);
        else
            snprintf(body, sizeof body, "RP %d %d", 185400000 + i, -3600000 - i);
        s += Frame(body);
    }
    return s;
}

static void DecodePieces(benchmark::State& state) {
    ResetFakeWorld();
    fake.portOpen = true;
    const std::string stream = SurveyStream(1000);
    const size_t pieceSize = (size_t)state.range(0);
    char piece[1025];
    for (auto _ : state) {
        for (size_t pos = 0; pos < stream.size(); pos += pieceSize) {
            size_t n = stream.size() - pos < pieceSize ? stream.size() - pos : pieceSize;
            memcpy(piece, stream.data() + pos, n);
            ReceiveBytes(piece, (int)n);
        }
    }
    state.SetBytesProcessed((int64_t)state.iterations() * (int64_t)stream.size());
    state.counters["line_multiple"] = benchmark::Counter(
        (double)state.iterations() * (double)stream.size() / 960.0, benchmark::Counter::kIsRate);
}
BENCHMARK(DecodePieces)->Arg(1)->Arg(16)->Arg(1024);

static void CrcOfABody(benchmark::State& state) {
    const char* body = "RP 180000000 -360000000";
    size_t n = strlen(body);
    for (auto _ : state) benchmark::DoNotOptimize(Crc8(body, (int)n));
}
BENCHMARK(CrcOfABody);
