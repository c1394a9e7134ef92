// How long veldor-export takes to write a full store (16000 records, 1000
// tags) in each format: the best of a few runs, one line per format.
#include <stdio.h>
#include <time.h>

#include "export_survey.h"
#include "fake_platform.h"
#include "survey/cal_lookup.h"

static double NowMs() {
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

int main() {
    ResetFakeWorld();
    UseDefaultCurves();
    for (int i = 0; i < MaxRecords; i++) {
        Record& r = recordStore.rows[i];
        r.flags = (uint8_t)(0x14 | (i % 10 == 0 ? 0x08 : 0));
        r.accessoryChannel = (uint8_t)(i % 7);
        for (int c = 0; c < 4; c++) r.ch[c] = (uint8_t)(i * (c + 3));
        r.latitude = 185400000 + 37 * i;
        r.longitude = -3600000 - 53 * i;
        r.time = 1700000000u + (uint32_t)i;
    }
    recordCount = MaxRecords;
    for (int i = 0; i < MaxTextTags; i++) {
        tagRecord[i] = i * 16;
        snprintf(tagText[i], TagTextSize, "Tag number %d near the \"mast\" & road", i);
    }
    tagCount = MaxTextTags;
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
