#include "views/tags_view.h"

#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "base/platform.h"
#include "survey/survey_state.h"
#include "views/chart_view.h"
#include "views/listing_view.h"
#include "views/plot_view.h"

static void SwapTags(int a, int b) {
    int32_t record = tagRecord[a];
    tagRecord[a] = tagRecord[b];
    tagRecord[b] = record;
    char text[TagTextSize];
    memcpy(text, tagText[a], TagTextSize);
    memcpy(tagText[a], tagText[b], TagTextSize);
    memcpy(tagText[b], text, TagTextSize);
}

void SortTags() {
    int swapped = 1;
    while (swapped) {
        swapped = 0;
        for (int i = 0; i + 1 < tagCount; i++) {
            if (tagRecord[i] > tagRecord[i + 1]) {
                SwapTags(i, i + 1);
                swapped = 1;
            }
        }
    }
}

void TagLineText(int number, char* out, int size) {
    snprintf(out, (size_t)size, "%lld - %.*s", (long long)tagRecord[number] + 1,
             TagTextSize - 1, tagText[number]);
}

void ShowTagRecord(int number) {
    if (number < 0 || number >= tagCount) return;
    int32_t index = tagRecord[number];
    ListingShowRecord(index);
    if (index < 0 || index >= recordCount) return;
    chartLocationRecord = index;
    PlatformRepaint(WINDOW_CHART, AREA_WHOLE, 1);
    plotLocationRecord = index;
    PlatformRepaint(WINDOW_PLOT, AREA_WHOLE, 1);
}

void HideTagLocation() { ListingHideLocation(); }

void DeleteTag(int number) {
    if (number < 0 || number >= tagCount) return;
    for (int i = number; i + 1 < tagCount; i++) {
        tagRecord[i] = tagRecord[i + 1];
        memcpy(tagText[i], tagText[i + 1], TagTextSize);
    }
    tagCount--;
    TagTableChanged();
}

void TagTableChanged() {
    PlatformNotifyWindow(WINDOW_TAGS, 0);
    statusFlags |= STATUS_CHANGED;
    PlatformRepaint(WINDOW_LISTING, AREA_LISTING_INDEX, 1);
}
