// How long veldor-export takes from a full store (16000 records, 1000 tags)
// to each format, one line per format, and to the coverage report on a
// lawn-mower route, with the share of it spent on local means and tiles:
// the best of a few runs each.
#include <stdio.h>
#include <time.h>

#include "export_survey.h"
#include "fake_platform.h"

static double NowMs() {
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

// Fills the store: a straight diagonal run, or 40 lanes of 400 records
// driven back and forth (the route a coverage survey takes).
static void FillStore(int lanes) {
    for (int i = 0; i < MaxRecords; i++) {
        Record& r = recordStore.rows[i];
        const int row = i / 400, column = row % 2 ? 399 - i % 400 : i % 400;
        r.flags = (uint8_t)(0x14 | (!lanes && i % 10 == 0 ? 0x08 : 0));
        r.accessoryChannel = (uint8_t)(lanes ? 0 : i % 7);
        for (int c = 0; c < 4; c++)
            r.ch[c] = (uint8_t)(lanes ? 120 + (i * 37 + c * 11) % 97 - row * 2 : i * (c + 3));
        r.latitude = lanes ? 185400000 + 800 * row : 185400000 + 37 * i;
        r.longitude = lanes ? -3600000 + 60 * column : -3600000 - 53 * i;
        r.time = 1700000000u + (uint32_t)i;
    }
    recordCount = MaxRecords;
    for (int i = 0; i < MaxTextTags; i++) {
        tagRecord[i] = i * 16;
        snprintf(tagText[i], TagTextSize, "Tag number %d near the \"mast\" & road", i);
    }
    tagCount = MaxTextTags;
}

static int TimeFormats() {
    int failed = 0;
    for (int format = FORMAT_CSV; format <= FORMAT_GPX; format++) {
        const std::string path = TempTestPath(std::string("export_bench") + ExportExtension(format));
        double best = 1e9;
        for (int run = 0; run < 5; run++) {
            FILE* file = fopen(path.c_str(), "wb");
            const double t0 = NowMs();
            failed |= file == nullptr || !WriteExport(file, format, 0, "bench.DAT") || fclose(file) != 0;
            if (NowMs() - t0 < best) best = NowMs() - t0;
        }
        remove(path.c_str());
        printf("export %d records %s: %.1f ms\n", MaxRecords, ExportExtension(format) + 1, best);
    }
    return failed;
}

static int TimeReport() {
    CoverageExport& e = coverageExport;
    e.settings = CoverageSettings{20.0, 36, 100.0, COVERAGE_MEDIAN, 50.0, 0.90, 0};
    e.channel = 0;
    e.compared = 0;
    const std::string path = TempTestPath("report_bench.html");
    double tiles = 1e9, report = 1e9;
    int failed = 0;
    for (int run = 0; run < 5; run++) {
        FILE* file = fopen(path.c_str(), "wb");
        const double t0 = NowMs();
        ComputeCoverage();
        const double t1 = NowMs();
        failed |= file == nullptr || !WriteReport(file, "bench.DAT", "bench") || fclose(file) != 0;
        const double t2 = NowMs();
        if (t1 - t0 < tiles) tiles = t1 - t0;
        if (t2 - t0 < report) report = t2 - t0;
    }
    remove(path.c_str());
    printf("report %d records: %.1f ms (tiles %.1f ms)\n", MaxRecords, report, tiles);
    printf("  %d local means in %d tiles\n", (int)e.here.windowCount, (int)e.here.tileCount);
    return failed;
}

int main() {
    ResetFakeWorld();
    UseDefaultCurves();
    FillStore(0);
    int failed = TimeFormats();
    FillStore(1);
    failed |= TimeReport();
    return failed;
}
