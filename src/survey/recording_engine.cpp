#include "survey/recording_engine.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "link/frame_codec.h"
#include "resources/resource_ids.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

int32_t recordIntervalSeconds = 5;
int32_t recordIntervalMeters = 500;
int32_t recordTicks;
int32_t autosaveMinutes = 5;
int32_t autosaveTicks;
int32_t EarthRadiusKm = 6371;
int32_t maxPlotTime = 1000;
int32_t tzrChannelCount = 10;

void ResetRecordingEngine() {
    recordIntervalSeconds = KeyRecordIntervalSeconds.defaultValue;
    recordIntervalMeters = KeyRecordIntervalMeters.defaultValue;
    recordTicks = 0;
    autosaveMinutes = KeyAutosaveInterval.defaultValue;
    autosaveTicks = 0;
    EarthRadiusKm = KeyEarthRadius.defaultValue;
    maxPlotTime = KeyMaxPlotTime.defaultValue;
    tzrChannelCount = KeyTzrNumberOfChannels.defaultValue;
}

void UpdateFrameCaption() {
    if (dataFileName[0] == '\0') {
        PlatformSetFrameCaption("VELDOR");
        return;
    }
    char caption[PathSize + 16];
    snprintf(caption, sizeof caption, "%s [ %s ]", "VELDOR", DisplayFileName(dataFileName));
    PlatformSetFrameCaption(caption);
}

static void ArmAutosaveAtStart() {
    if (!(statusFlags & STATUS_AUTOSAVE) || autosaveMinutes < 1) return;
    if (dataFileName[0] == '\0') {
        if (PlatformAskYesNo("Autosave is enabled but no filename is defined\n\n"
                             "Do you want to specify a filename?")) {
            if (ChooseFile(dataFileName, PathSize, CHOOSE_SAVE_DATA)) {
                statusFlags &= ~STATUS_CHANGED;
                UpdateFrameCaption();
            } else {
                statusFlags &= ~STATUS_AUTOSAVE;
            }
        } else {
            statusFlags &= ~STATUS_AUTOSAVE;
            WriteSetting(KeyAutosaveEnable, "0");
        }
    }
    autosaveTicks = 1;
}

static int TzrStepping() {
    return (statusFlags & STATUS_TZR_MODE) && (statusFlags & STATUS_INCREMENT_CHANNEL);
}

void StartRecording() {
    ArmAutosaveAtStart();
    if (recordCount > 0) {
        LogStatus("Recording resumed");
    } else {
        LogStatus("Recording started");
        SnapshotRecordingParams();
    }
    if (statusFlags & STATUS_TZR_MODE) {
        SendFramef("MC %d", ReadSetting(KeyTzrInitialChannel));
        int controllerSteps =
            (statusFlags & STATUS_INCREMENT_CHANNEL) && recordIntervalSeconds < 2;
        SendFrameText(controllerSteps ? "MI 1" : "MI 0");
    }
    statusFlags |= STATUS_RECORDING;
    PlatformSetStatusPane(1, "Recording");
    statusFlags &= ~STATUS_PLOT_SUSPENDED;
    averageHistory.readingHistoryCount = 0;
    averageHistory.positionHistoryCount = 0;
    recordTicks = recordIntervalSeconds;
}

void StopRecording() {
    statusFlags &= ~STATUS_RECORDING;
    PlatformSetStatusPane(1, "Idle");
    LogStatus("Recording stopped");
    if ((statusFlags & STATUS_AUTOSAVE) && dataFileName[0] != '\0')
        PlatformFrameCommand(IDM_FILE_SAVE);
    if (TzrStepping() && recordIntervalSeconds < 2) SendFrameText("MI 0");
    if (statusFlags & STATUS_PLOT_SUSPENDED) {
        statusFlags &= ~STATUS_PLOT_SUSPENDED;
        PlatformRepaint(WINDOW_PLOT, AREA_PLOT_RECT, 1);
    }
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

void RecordByTime() {
    recordTicks--;
    if (recordTicks > 0) return;
    if (AddRecord(RECORD_KIND_LIVE) != 1) return;
    recordTicks = recordIntervalSeconds;
    if (TzrStepping() && recordIntervalSeconds > 1) {
        int next = liveState.liveAccessoryChannel + 1;
        if (next > tzrChannelCount) next = 1;
        SendFramef("MC %d", next);
    }
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
