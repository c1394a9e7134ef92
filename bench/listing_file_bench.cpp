// The listing export of a full store: 16000 lines, each looking through a
// full table of 1000 tags for its first tag, in the default format (degrees,
// North/South, one decimal, space).
#include <benchmark/benchmark.h>
#include <stdio.h>

#include <string>

#include "fake_platform.h"
#include "storage/listing_file.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"

static void ListingExportFullStore(benchmark::State& state) {
    ResetFakeWorld();
    UseDefaultCurves();
    recordCount = MaxRecords;
    for (int i = 0; i < MaxRecords; i++) {
        Record& r = recordStore.rows[i];
        r.flags = (uint8_t)(RECORD_GPS_FIX | RECORD_LIVE | (i % 7 == 0 ? RECORD_HAS_CHANNEL : 0));
        r.accessoryChannel = (uint8_t)(i % 10);
        for (int c = 0; c < 4; c++) r.ch[c] = (uint8_t)(i * (c + 3));
        r.latitude = -115123456 + i * 37;
        r.longitude = 417096000 - i * 53;
        r.time = 1614675907u + (uint32_t)i * 5u;
    }
    // Tags on every 16th record: the search for a line without a tag walks all 1000.
    for (int t = 0; t < MaxTextTags; t++) {
        tagRecord[t] = t * 16;
        snprintf(tagText[t], TagTextSize, "tag %d", t);
    }
    tagCount = MaxTextTags;
    std::string path = fake.settingsFile + ".bench.txt";
    for (auto _ : state) {
        remove(path.c_str());
        benchmark::DoNotOptimize(WriteListingFile(path.c_str()));
    }
    remove(path.c_str());
    state.SetItemsProcessed((int64_t)state.iterations() * MaxRecords);
}
BENCHMARK(ListingExportFullStore)->Unit(benchmark::kMillisecond);
