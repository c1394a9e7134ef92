#include "dialogs/tag_dialogs.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/platform.h"
#include "survey/survey_state.h"

// ---- AddEditTagTextBox --------------------------------------------------------------------

int TagDialogOpen(int number, TagDialogValues* values) {
    if (recordCount < 1) {
        PlatformMessageBox("No records to tag", ICON_STOP);
        return TagDialogRefused;
    }
    if (number >= 0 && number < tagCount) {
        snprintf(values->index, sizeof values->index, "%lld", (long long)tagRecord[number] + 1);
        snprintf(values->text, sizeof values->text, "%.*s", TagEditSize - 1, tagText[number]);
        return number;
    }
    if (tagCount >= MaxTextTags) {
        PlatformMessageBox("Maximum number of text tags reached", ICON_STOP);
        return TagDialogRefused;
    }
    snprintf(values->index, sizeof values->index, "%d", (int)recordCount);
    values->text[0] = '\0';
    return -1;
}

int TagDialogStore(int tagInHand, const TagDialogValues* values) {
    int index = atoi(values->index) - 1;
    if (index < 0 || index >= recordCount || values->text[0] == '\0') return 0;
    int place = tagInHand;
    if (place < 0 || place >= tagCount) {
        if (tagCount >= MaxTextTags) return 0;
        place = tagCount++;
    }
    tagRecord[place] = index;
    memset(tagText[place], 0, TagTextSize);
    snprintf(tagText[place], TagTextSize, "%s", values->text);
    return 1;
}


// ---- ManRecBox -----------------------------------------------------------------------------

// Mean of the newest count entries, on the signed sum, truncating toward zero.
static int32_t MeanPosition(const int32_t* history, int32_t count, int32_t live) {
    switch (count) {
    case 1: return history[0];
    case 2: return (int32_t)(((int64_t)history[0] + history[1]) / 2);
    case 3: return (int32_t)(((int64_t)history[0] + history[1] + history[2]) / 3);
    default: return live;
    }
}

void ManualReadingOpen(ManualReadingValues* values) {
    int32_t latitude = liveState.liveLatitude;
    int32_t longitude = liveState.liveLongitude;
    uint8_t readings[4];
    if (!(statusFlags & STATUS_AVERAGING)) {
        for (int c = 0; c < 4; c++) readings[c] = liveState.liveReadings[c];
    } else {
        int32_t count = averageHistory.positionHistoryCount;
        latitude = MeanPosition(averageHistory.latitudeHistory, count, latitude);
        longitude = MeanPosition(averageHistory.longitudeHistory, count, longitude);
        averageHistory.positionHistoryCount = 0;
        for (int c = 0; c < 4; c++) readings[c] = AverageReading(c, c == 3);
    }
    snprintf(values->latitude, sizeof values->latitude, "%ld", (long)latitude);
    snprintf(values->longitude, sizeof values->longitude, "%ld", (long)longitude);
    for (int c = 0; c < 4; c++)
        snprintf(values->readings[c], sizeof values->readings[c], "%d", (int)readings[c]);
}

void ManualReadingStore(const ManualReadingValues* values) {
    manualReading.longitude = (int32_t)atol(values->longitude);
    manualReading.latitude = (int32_t)atol(values->latitude);
    for (int c = 0; c < 4; c++)
        manualReading.readings[c] = (uint8_t)(atoi(values->readings[c]) & 0xFF);
}
