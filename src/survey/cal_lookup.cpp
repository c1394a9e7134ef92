#include "survey/cal_lookup.h"

#include <float.h>
#include <stdio.h>
#include <string.h>

#include "base/busy.h"
#include "base/platform.h"

// The lookup is defined in single precision with a rounding after each
// operation: float expressions must not be evaluated in a wider type (x87).
// The build also passes -ffp-contract=off, so no multiply-add is fused.
#if defined(FLT_EVAL_METHOD) && FLT_EVAL_METHOD != 0
#error "BuildChannelLookup needs FLT_EVAL_METHOD 0 (SSE arithmetic, e.g. -msse2 -mfpmath=sse)"
#endif

CalTableData CalTable[CalChannels];
float ChannelLookup[CalChannels][CalLookupSize];

void ResetCalibration() {
    memset(CalTable, 0, sizeof CalTable);
    memset(ChannelLookup, 0, sizeof ChannelLookup);
}

void BuildChannelLookup(int channel) {
    if (channel < 0 || channel >= CalChannels) return;
    CalTableData& table = CalTable[channel];
    float* entry = ChannelLookup[channel];

    // 1. No points: the identity.
    if (table.count == 0) {
        for (int i = 0; i < CalLookupSize; i++) entry[i] = (float)i;
        return;
    }

    BeginBusy();
    // 2. The store holds 256 points at most.
    if (table.count > CalMaxPoints) table.count = CalMaxPoints;

    // 3.
    int index = 0;
    int prevIndex = 0;
    float prevValue = table.points[0].value;

    // 4. Each point in table order.
    for (int n = 0; n < table.count; n++) {
        // Past the last entry there is nothing left to fill (a table out of
        // order can carry index beyond 255): stop at the end of the table.
        if (index >= CalLookupSize) break;
        const int p = table.points[n].power;
        const float v = table.points[n].value;
        if (index < p) {
            const float fp = (float)p;
            const float fPrev = (float)prevIndex;
            for (int i = index; i < p; i++) {
                const float di = (float)i - fPrev;  // first difference
                const float dp = fp - fPrev;        // second difference
                const float ratio = di / dp;        // the division
                const float dv = v - prevValue;     // difference of the values
                const float product = ratio * dv;   // the multiplication
                entry[i] = product + prevValue;     // the addition
            }
            index = p;
        }
        entry[index] = v;  // the point's own value, not the formula's
        prevValue = v;
        prevIndex = index;
        index = index + 1;
    }

    // 5. Flat after the last point.
    for (int i = index; i < CalLookupSize; i++) entry[i] = prevValue;
    EndBusy();
}

void SetDefaultCalTable(int channel) {
    if (channel < 0 || channel >= CalChannels) return;
    CalTableData& table = CalTable[channel];
    memset(&table.points[0], 0, 2 * sizeof(CalPoint));
    table.count = 2;
    table.points[0].power = 0;
    table.points[0].value = 0.0f;
    table.points[1].power = 255;
    table.points[1].value = 100.0f;
}
