// The core's work that a user waits for: the receiver taking frames apart,
// against the 960 bytes a second that a 9600-baud line delivers; a full
// store's data file saved and loaded (344223 bytes, on the user-interface
// thread) and its listing file of 16000 lines.
#include <benchmark/benchmark.h>
#include <stdio.h>
#include <string.h>

#include <string>

#include "full_store.h"
#include "link/frame_codec.h"
#include "storage/data_file.h"
#include "storage/listing_file.h"

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

// step is SaveDataFile or LoadDataFile, on a file saved first.
static void FullSurveyFile(benchmark::State& state, int (*step)()) {
    FillFullStore();
    snprintf(dataFileName, PathSize, "%s", TempTestPath("bench.dat").c_str());
    if (SaveDataFile() != 1) state.SkipWithError("save failed");
    for (auto _ : state) {
        if (step() != 1 || recordCount != MaxRecords || tagCount != MaxTextTags)
            state.SkipWithError("save or load failed");
    }
    state.SetBytesProcessed((int64_t)state.iterations() * (1223 + 18 * 16000 + 55 * 1000));
    remove(dataFileName);
}
BENCHMARK_CAPTURE(FullSurveyFile, save, SaveDataFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FullSurveyFile, load, LoadDataFile)->Unit(benchmark::kMillisecond);

// In the default format: degrees, North/South, one decimal, space.
static void ListingFileFullStore(benchmark::State& state) {
    FillFullStore();
    const std::string path = TempTestPath("bench.txt");
    for (auto _ : state) {
        remove(path.c_str());
        if (WriteListingFile(path.c_str()) != 1) state.SkipWithError("listing file failed");
    }
    remove(path.c_str());
    state.SetItemsProcessed((int64_t)state.iterations() * MaxRecords);
}
BENCHMARK(ListingFileFullStore)->Unit(benchmark::kMillisecond);
