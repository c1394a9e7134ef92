// How long a full survey (16000 records, 1000 tags, 344223 bytes) takes to
// save and to load. Both run on the user-interface thread and block it.
#include <benchmark/benchmark.h>
#include <stdio.h>

#include <string>

#include "fake_platform.h"
#include "storage/data_file.h"

static void FillFullSurvey() {
    ResetFakeWorld();
    for (int i = 0; i < MaxRecords; i++) {
        Record& r = recordStore.rows[i];
        r.flags = 0x14;
        r.accessoryChannel = (uint8_t)i;
        for (int c = 0; c < 4; c++) r.ch[c] = (uint8_t)(i + c);
        r.latitude = 185400000 + i;
        r.longitude = -3600000 - i;
        r.time = 1700000000u + (uint32_t)i;
    }
    recordCount = MaxRecords;
    for (int i = 0; i < MaxTextTags; i++) {
        tagRecord[i] = i * 16;
        snprintf(tagText[i], TagTextSize, "Tag number %d near the mast", i);
    }
    tagCount = MaxTextTags;
    snprintf(dataFileName, PathSize, "/tmp/veldor-bench-%d.dat", (int)MaxRecords);
}

static void ClearFakeLog() {
    fake.statusLines.clear();
    fake.repaints.clear();
    fake.notifications.clear();
    fake.scrollPositions.clear();
}

static void SaveFullSurvey(benchmark::State& state) {
    FillFullSurvey();
    for (auto _ : state) {
        if (SaveDataFile() != 1) state.SkipWithError("save failed");
        ClearFakeLog();
    }
    state.SetBytesProcessed((int64_t)state.iterations() * (1223 + 18 * 16000 + 55 * 1000));
    remove(dataFileName);
}
BENCHMARK(SaveFullSurvey)->Unit(benchmark::kMillisecond);

static void LoadFullSurvey(benchmark::State& state) {
    FillFullSurvey();
    if (SaveDataFile() != 1) state.SkipWithError("save failed");
    for (auto _ : state) {
        if (LoadDataFile() != 1 || recordCount != MaxRecords || tagCount != MaxTextTags)
            state.SkipWithError("load failed");
        ClearFakeLog();
    }
    state.SetBytesProcessed((int64_t)state.iterations() * (1223 + 18 * 16000 + 55 * 1000));
    remove(dataFileName);
}
BENCHMARK(LoadFullSurvey)->Unit(benchmark::kMillisecond);
