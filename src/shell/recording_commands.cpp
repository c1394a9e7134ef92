#include "shell/recording_commands.h"

#include "base/platform.h"
#include "base/status_log.h"
#include "link/accessory_modes.h"
#include "link/frame_codec.h"
#include "resources/resource_ids.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

void SnapshotRecordingParams() {
    recordingParams.startTime = PlatformTime();
    recordingParams.intervalSeconds = recordIntervalSeconds;
    recordingParams.intervalMeters = recordIntervalMeters;
    recordingParams.distanceMode = (statusFlags & STATUS_DISTANCE_INTERVAL) ? 1 : 0;
    recordingParams.inputChannel = (uint16_t)(currentInputChannel & 0xFFFF);
    for (int c = 0; c < 4; c++)
        ReadSetting(KeyCalibrationFile[c], recordingParams.calFileName[c], PathSize);
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
