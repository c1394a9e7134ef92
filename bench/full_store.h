// What every benchmark program shares: the fake platform, a full store to
// time the program on, and the best of a few rounds of some work.
#pragma once

#include <stdio.h>

#include <chrono>

#include "fake_platform.h"

// A fresh fake world on the default curves, its store full: 16000 records
// driven back and forth in 40 lanes of 400 (the route of a coverage survey),
// readings across all four colour bands, two records in three with a fix,
// every tenth with an accessory channel; 1000 tags, one every 16 records, so
// that a record without a tag looks through all of them.
inline void FillFullStore() {
    ResetFakeWorld();
    UseDefaultCurves();
    for (int i = 0; i < MaxRecords; i++) {
        Record& r = recordStore.rows[i];
        const int lane = i / 400, step = lane % 2 ? 399 - i % 400 : i % 400;
        r.flags = (uint8_t)(RECORD_LIVE | (i % 3 ? RECORD_GPS_FIX : 0) |
                            (i % 10 ? 0 : RECORD_HAS_CHANNEL));
        r.accessoryChannel = (uint8_t)(i % 7);
        for (int c = 0; c < 4; c++) r.ch[c] = (uint8_t)((i * 7 + c * 60) % 256);
        r.latitude = 185400000 + 800 * lane;
        r.longitude = -3600000 + 60 * step;
        r.time = 1700000000u + (uint32_t)i;
    }
    recordCount = MaxRecords;
    for (int t = 0; t < MaxTextTags; t++) {
        tagRecord[t] = t * 16;
        snprintf(tagText[t], TagTextSize, "Tag number %d near the \"mast\" & road", t);
    }
    tagCount = MaxTextTags;
}

// The shortest of five runs of work, in milliseconds.
template <typename Work>
double BestMs(Work work) {
    double best = 1e9;
    for (int round = 0; round < 5; round++) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        if (took.count() < best) best = took.count();
    }
    return best;
}
