#include "survey/survey_state.h"

#include <stdio.h>
#include <string.h>

#include "base/platform.h"
#include "base/status_log.h"
#include "resources/resource_ids.h"

RecordStore recordStore;
int32_t recordCount;
uint32_t statusFlags;
LiveState liveState;
AverageHistory averageHistory;
RecordingParams recordingParams;
ManualReading manualReading;
char channelLabels[4][ChannelLabelSize];
char dataFileName[PathSize];

int16_t tagCount;
int32_t tagRecord[MaxTextTags];
char tagText[MaxTextTags][TagTextSize];

int32_t listingTopIndex;
int32_t listingRowCount;
int32_t currentInputChannel;

void ResetSurveyState() {
    memset(&recordStore, 0, sizeof recordStore);
    recordCount = 0;
    statusFlags = 0;
    memset(&liveState, 0, sizeof liveState);
    memset(&averageHistory, 0, sizeof averageHistory);
    memset(&recordingParams, 0, sizeof recordingParams);
    memset(&manualReading, 0, sizeof manualReading);
    for (int c = 0; c < 4; c++) snprintf(channelLabels[c], ChannelLabelSize, "Ch %d", c + 1);
    dataFileName[0] = '\0';
    tagCount = 0;
    memset(tagRecord, 0, sizeof tagRecord);
    memset(tagText, 0, sizeof tagText);
    listingTopIndex = 0;
    listingRowCount = 0;
    currentInputChannel = 0;
}

uint8_t AverageReading(int channel, int reset) {
    if (channel < 0 || channel > 3) return 0;
    const uint8_t* h = averageHistory.readingHistory[channel];
    uint8_t value;
    switch (averageHistory.readingHistoryCount) {
    case 1: value = h[0]; break;
    case 2: value = (uint8_t)((h[0] + h[1]) >> 1); break;
    case 3: value = (uint8_t)((h[0] + h[1] + h[2]) / 3); break;
    default: value = liveState.liveReadings[channel]; break;
    }
    if (reset) averageHistory.readingHistoryCount = 0;
    return value;
}

// Mean of the newest count entries, on the signed sum, truncating toward zero.
static int32_t AveragePosition(const int32_t* history, int32_t count, int32_t live) {
    switch (count) {
    case 1: return history[0];
    case 2: return (int32_t)(((int64_t)history[0] + history[1]) / 2);
    case 3: return (int32_t)(((int64_t)history[0] + history[1] + history[2]) / 3);
    default: return live;
    }
}

static int AveragingNow() {
    return (statusFlags & STATUS_RECORDING) && (statusFlags & STATUS_AVERAGING);
}

void UpdateReadingHistory() {
    if (!AveragingNow()) return;
    for (int c = 0; c < 4; c++) {
        uint8_t* h = averageHistory.readingHistory[c];
        h[2] = h[1];
        h[1] = h[0];
        h[0] = liveState.liveReadings[c];
    }
    if (averageHistory.readingHistoryCount < 3) averageHistory.readingHistoryCount++;
}

void UpdatePositionHistory() {
    if (!AveragingNow()) return;
    int32_t* lat = averageHistory.latitudeHistory;
    int32_t* lon = averageHistory.longitudeHistory;
    lat[2] = lat[1];
    lat[1] = lat[0];
    lat[0] = liveState.liveLatitude;
    lon[2] = lon[1];
    lon[1] = lon[0];
    lon[0] = liveState.liveLongitude;
    if (averageHistory.positionHistoryCount < 3) averageHistory.positionHistoryCount++;
}

static void StoreValues(Record* row, int kind) {
    if (kind == RECORD_KIND_MANUAL) {
        row->latitude = manualReading.latitude;
        row->longitude = manualReading.longitude;
        for (int c = 0; c < 4; c++) row->ch[c] = manualReading.readings[c];
    } else if (!(statusFlags & STATUS_AVERAGING)) {
        row->latitude = liveState.liveLatitude;
        row->longitude = liveState.liveLongitude;
        for (int c = 0; c < 4; c++) row->ch[c] = liveState.liveReadings[c];
    } else {
        int32_t count = averageHistory.positionHistoryCount;
        row->latitude =
            AveragePosition(averageHistory.latitudeHistory, count, liveState.liveLatitude);
        row->longitude =
            AveragePosition(averageHistory.longitudeHistory, count, liveState.liveLongitude);
        averageHistory.positionHistoryCount = 0;
        row->ch[0] = AverageReading(0, 0);
        row->ch[1] = AverageReading(1, 0);
        row->ch[2] = AverageReading(2, 0);
        row->ch[3] = AverageReading(3, 1);
    }
}

int AddRecord(int kind) {
    if (recordCount < MaxRecords) {
        int following = listingTopIndex == recordCount - listingRowCount + 1;
        Record* row = &recordStore.rows[recordCount];
        StoreValues(row, kind);

        uint8_t flags = 0;
        uint8_t channel = liveState.liveAccessoryChannel;
        if (channel != 0) {
            flags = RECORD_HAS_CHANNEL;
            row->accessoryChannel = channel;
        }
        uint8_t gps = liveState.gpsStatus;
        if (liveState.dataValidTicks > 0) flags |= RECORD_LIVE;
        if (gps & 0x30) flags |= RECORD_GPS_FIX;
        if (gps & 0x04) flags |= RECORD_GPS_DIFF;
        row->flags = flags;
        row->time = PlatformTime();
        recordCount++;

        if (following) listingTopIndex = recordCount - listingRowCount + 1;

        if (PlatformWindowExists(WINDOW_LISTING) && listingTopIndex <= recordCount &&
            recordCount <= listingTopIndex + listingRowCount + 1)
            PlatformRepaint(WINDOW_LISTING, AREA_LISTING_COLUMNS, 0);
        if (recordCount == 1) PlatformRepaint(WINDOW_PLOT, AREA_WHOLE, 1);
        else PlatformRepaint(WINDOW_PLOT, AREA_PLOT_RECT, 0);
        PlatformRepaint(WINDOW_CHART, AREA_CHART_RECT, 1);

        if (PlatformWindowExists(WINDOW_LISTING)) {
            int position = 0;
            if (recordCount > listingRowCount + 1)
                position = listingTopIndex * 100 / (recordCount - listingRowCount + 1);
            PlatformSetVerticalScroll(WINDOW_LISTING, position);
        }

        statusFlags |= STATUS_CHANGED;
        if (recordCount < MaxRecords) return 1;
    }
    LogStatus("Data buffer full\n");
    if (statusFlags & STATUS_RECORDING) PlatformFrameCommand(IDM_RECORD_STOP);
    PlatformMessageBox("Data Buffer full", ICON_EXCLAMATION);
    return 0;
}

int RecordsReadyForOutput() {
    return recordCount >= 1 && !(statusFlags & STATUS_RECORDING);
}

int AskSaveQuestion() {
    if (!(statusFlags & STATUS_CHANGED)) return 0;
    return PlatformAskYesNo("Current data has changed\nSave data ?");
}

void AskToSave() {
    if (AskSaveQuestion()) PlatformFrameCommand(IDM_FILE_SAVE);
}

void ClearRecords() {
    if (recordCount < 1) {
        LogStatus("Nothing to clear");
        return;
    }
    if (statusFlags & STATUS_RECORDING) {
        LogStatus("Can not clear while recording");
        return;
    }
    AskToSave();
    recordCount = 0;
    statusFlags &= ~STATUS_CHANGED;
    tagCount = 0;
    recordingParams.startTime = 0;
    LogStatus("Data memory cleared");
    RepaintDataViews();
}

void RepaintDataViews() {
    PlatformRepaint(WINDOW_LISTING, AREA_WHOLE, 1);
    PlatformRepaint(WINDOW_PLOT, AREA_WHOLE, 1);
    PlatformRepaint(WINDOW_CHART, AREA_WHOLE, 1);
    PlatformNotifyWindow(WINDOW_TAGS, 0);
}

void RemoveRecordTags(int32_t index) {
    int i = 0;
    while (i < tagCount) {
        if (tagRecord[i] == index) {
            for (int j = i; j + 1 < tagCount; j++) {
                tagRecord[j] = tagRecord[j + 1];
                memcpy(tagText[j], tagText[j + 1], TagTextSize);
            }
            tagCount--;
            continue;  // examine the tag that has moved into this place
        }
        if (tagRecord[i] > index) tagRecord[i]--;
        i++;
    }
}
