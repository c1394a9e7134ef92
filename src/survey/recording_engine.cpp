#include "survey/recording_engine.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/platform.h"
#include "base/status_log.h"
#include "resources/resource_ids.h"
#include "survey/survey_state.h"

int32_t recordIntervalSeconds = DefaultRecordIntervalSeconds;
int32_t recordIntervalMeters = DefaultRecordIntervalMeters;
int32_t recordTicks;
int32_t autosaveMinutes = DefaultAutosaveMinutes;
int32_t autosaveTicks;
int32_t EarthRadiusKm = DefaultEarthRadiusKm;
int32_t maxPlotTime = DefaultMaxPlotTime;
int32_t tzrChannelCount = DefaultTzrChannelCount;

void ResetRecordingEngine() {
    recordIntervalSeconds = DefaultRecordIntervalSeconds;
    recordIntervalMeters = DefaultRecordIntervalMeters;
    recordTicks = 0;
    autosaveMinutes = DefaultAutosaveMinutes;
    autosaveTicks = 0;
    EarthRadiusKm = DefaultEarthRadiusKm;
    maxPlotTime = DefaultMaxPlotTime;
    tzrChannelCount = DefaultTzrChannelCount;
}

void TakeReading() {
    LogStatus("Take single reading");
    AddRecord(RECORD_KIND_LIVE);
}

// 3.1415926535898 / 180 as the program has always used it, not the double
// nearest to pi / 180.
static const double DegreesToRadians = 0.017453292519943334;

static double ArcToMetres(int32_t arc) {
    return (double)arc / 3600000.0 * DegreesToRadians * (double)EarthRadiusKm * 1000.0;
}

double DistanceFromLastRecord() {
    if (recordCount < 1) return 0.0;
    const Record* last = &recordStore.rows[recordCount - 1];
    // Differences in signed 32 bits, as the positions are stored.
    int32_t dLong = (int32_t)((uint32_t)liveState.liveLongitude - (uint32_t)last->longitude);
    int32_t dLat = (int32_t)((uint32_t)liveState.liveLatitude - (uint32_t)last->latitude);
    // The absolute value of INT32_MIN stays negative, as in 32-bit arithmetic;
    // squaring makes the sign irrelevant.
    if (dLong < 0 && dLong != INT32_MIN) dLong = -dLong;
    if (dLat < 0 && dLat != INT32_MIN) dLat = -dLat;
    double x = ArcToMetres(dLong);
    double y = ArcToMetres(dLat);
    return sqrt(x * x + y * y);
}

void ShowStoreGauge() {
    if (recordCount > 0) {
        float percent = (float)recordCount / 16000.0f;
        percent = percent * 100.0f;
        char text[32];
        snprintf(text, sizeof text, "%.2f %%", (double)percent);
        PlatformSetStatusPane(2, text);
    } else {
        PlatformSetStatusPane(2, "0 %");
    }
}

int RecordByTime() {
    recordTicks--;
    if (recordTicks > 0) return 0;
    if (AddRecord(RECORD_KIND_LIVE) != 1) return 0;
    recordTicks = recordIntervalSeconds;
    return 1;
}

void RecordByDistance() {
    if (recordCount < 1) {
        AddRecord(RECORD_KIND_LIVE);
        return;
    }
    double d = DistanceFromLastRecord();
    if (!((double)recordIntervalMeters > d)) AddRecord(RECORD_KIND_LIVE);
}

void AutosaveTick() {
    if (!(statusFlags & STATUS_AUTOSAVE)) return;
    autosaveTicks--;
    if (autosaveTicks > 0) return;
    statusFlags &= ~STATUS_AUTOSAVE;
    if (dataFileName[0] == '\0') {
        LogStatus("Could not autosave as no filename");
        return;
    }
    PlatformFrameCommand(IDM_FILE_SAVE);
    statusFlags |= STATUS_AUTOSAVE;
    autosaveTicks = autosaveMinutes * 60;
}
