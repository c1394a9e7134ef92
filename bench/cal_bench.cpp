// BuildChannelLookup, which runs at start-up, when the calibration editor
// saves or closes, and on reloading a stored calibration file: never per
// reading. A reading itself is one indexed load of ChannelLookup.
#include <benchmark/benchmark.h>

#include "fake_platform.h"
#include "survey/cal_lookup.h"

// A full table: 256 points at powers 0..255, the most points a table holds.
static void BuildLookup256Points(benchmark::State& state) {
    ResetFakeWorld();
    CalTable[0].count = 256;
    for (int n = 0; n < 256; n++) {
        CalTable[0].points[n].power = (uint8_t)n;
        CalTable[0].points[n].value = -110.0f + 0.5f * (float)n;
    }
    for (auto _ : state) {
        BuildChannelLookup(0);
        benchmark::DoNotOptimize(ChannelLookup[0][255]);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed((int64_t)state.iterations() * 256);
}
BENCHMARK(BuildLookup256Points);

// The default curve of start-up: two points, 254 interpolated entries.
static void BuildLookupDefaultCurve(benchmark::State& state) {
    ResetFakeWorld();
    CalTable[0].count = 2;
    CalTable[0].points[0].power = 0;
    CalTable[0].points[0].value = 0.0f;
    CalTable[0].points[1].power = 255;
    CalTable[0].points[1].value = 100.0f;
    for (auto _ : state) {
        BuildChannelLookup(0);
        benchmark::DoNotOptimize(ChannelLookup[0][128]);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed((int64_t)state.iterations() * 256);
}
BENCHMARK(BuildLookupDefaultCurve);
