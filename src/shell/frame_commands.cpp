#include "shell/frame_commands.h"

#include <stdio.h>

#include "link/frame_codec.h"
#include "resources/resource_ids.h"
#include "base/platform.h"
#include "shell/status_log.h"
#include "storage/cal_file.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

const int FrameMenuIds[] = {
    IDM_FILE_OPEN, IDM_FILE_SAVE, IDM_FILE_SAVE_AS, IDM_FILE_CLOSE, IDM_FILE_PREFERENCES,
    IDM_FILE_MAKE_LISTING, IDM_FILE_PRINT_LISTING, IDM_FILE_PRINT_PLOT, IDM_FILE_EXIT,
    IDM_RECORD_START, IDM_RECORD_STOP, IDM_RECORD_TAKE_READING, IDM_RECORD_MANUAL_READING,
    IDM_RECORD_ADD_TAG, IDM_RECORD_CLEAR, IDM_RECORD_FILTER, IDM_RECORD_STATISTICS,
    IDM_RECORD_SETTINGS, IDM_RECORD_CALIBRATION, IDM_RECORD_CALTEXT_1, IDM_RECORD_CALTEXT_2,
    IDM_RECORD_CALTEXT_3, IDM_RECORD_CALTEXT_4, IDM_CONFIG_DISPLAY, IDM_CONFIG_PORT,
    IDM_CONFIG_GPS, IDM_CONFIG_GPS_DIFF, IDM_CONFIG_AR3000A, IDM_CONFIG_TZR4100,
    IDM_CONFIG_RESET_CONTROLLER, IDM_WINDOW_CASCADE, IDM_WINDOW_TILE_HORIZONTAL,
    IDM_WINDOW_TILE_VERTICAL, IDM_WINDOW_ARRANGE, IDM_WINDOW_SHOW_LISTING,
    IDM_WINDOW_SHOW_PLOT, IDM_WINDOW_SHOW_CHART, IDM_WINDOW_SHOW_TAGS, IDM_HELP_ABOUT,
    IDM_HELP_LICENCE, IDM_HELP_WEBSITE, IDM_HELP_HELP,
};
const int FrameMenuIdCount = (int)(sizeof FrameMenuIds / sizeof FrameMenuIds[0]);

static int Recording() { return (statusFlags & STATUS_RECORDING) != 0; }

int RecordsReadyForOutput() { return recordCount >= 1 && !Recording(); }

int MenuItemEnabled(int id) {
    switch (id) {
    case IDM_FILE_OPEN:
    case IDM_FILE_SAVE_AS:
    case IDM_RECORD_START:
    case IDM_RECORD_TAKE_READING:
    case IDM_RECORD_SETTINGS:
    case IDM_RECORD_CALIBRATION:
    case IDM_CONFIG_PORT:
    case IDM_CONFIG_GPS:
    case IDM_CONFIG_GPS_DIFF:
    case IDM_CONFIG_AR3000A:
    case IDM_CONFIG_TZR4100:
    case IDM_CONFIG_RESET_CONTROLLER:
        return !Recording();
    case IDM_FILE_SAVE:
        return (statusFlags & STATUS_CHANGED) && dataFileName[0] != '\0' && recordCount >= 1;
    case IDM_FILE_CLOSE:
        return dataFileName[0] != '\0';
    case IDM_FILE_MAKE_LISTING:
    case IDM_FILE_PRINT_LISTING:
    case IDM_FILE_PRINT_PLOT:
    case IDM_RECORD_CLEAR:
    case IDM_RECORD_FILTER:
    case IDM_RECORD_STATISTICS:
        return RecordsReadyForOutput();
    case IDM_RECORD_STOP:
        return Recording();
    default:
        return 1;
    }
}

int MenuItemChecked(int id) {
    switch (id) {
    case IDM_CONFIG_GPS_DIFF: return (statusFlags & STATUS_GPS_DIFF_MODE) != 0;
    case IDM_CONFIG_AR3000A: return (statusFlags & STATUS_AR3000A_MODE) != 0;
    case IDM_CONFIG_TZR4100: return (statusFlags & STATUS_TZR_MODE) != 0;
    default: return 0;
    }
}

const char* FrameCommandLogLine(int id) {
    switch (id) {
    case IDM_FILE_OPEN: return "Select data file to open...";
    case IDM_FILE_SAVE_AS: return "Select filename for data file...";
    case IDM_FILE_CLOSE: return "File closed";
    case IDM_FILE_PREFERENCES: return "Set preferences";
    case IDM_FILE_MAKE_LISTING: return "Creating list file";
    case IDM_FILE_PRINT_LISTING: return "Print listing";
    case IDM_FILE_PRINT_PLOT: return "Print plot";
    case IDM_RECORD_MANUAL_READING: return "Take manual reading";
    case IDM_RECORD_SETTINGS: return "Configure record settings";
    case IDM_RECORD_CALIBRATION: return "Calibration";
    case IDM_CONFIG_DISPLAY: return "Configure display";
    case IDM_CONFIG_PORT: return "Configure ports";
    case IDM_CONFIG_GPS: return "Configure GPS";
    case IDM_CONFIG_GPS_DIFF: return "Configure differential GPS input";
    case IDM_CONFIG_AR3000A: return "Configure AR3000A";
    case IDM_CONFIG_TZR4100: return "Configure TZR4100";
    case IDM_CONFIG_RESET_CONTROLLER: return "Reset sent to controller";
    case IDM_WINDOW_CASCADE: return "Windows cascaded";
    case IDM_WINDOW_TILE_HORIZONTAL:
    case IDM_WINDOW_TILE_VERTICAL: return "Windows tiled";
    case IDM_WINDOW_ARRANGE: return "Icons arranged";
    case IDM_WINDOW_SHOW_LISTING:
    case IDM_WINDOW_SHOW_PLOT:
    case IDM_WINDOW_SHOW_CHART:
    case IDM_WINDOW_SHOW_TAGS: return "%s window opened";
    case IDM_HELP_ABOUT: return "About...";
    case IDM_HELP_LICENCE: return "View licence";
    case IDM_HELP_WEBSITE: return "View website";
    case IDM_HELP_HELP: return "View help";
    default: return nullptr;
    }
}

const char* ChildWindowTitle(int window) {
    switch (window) {
    case WINDOW_LISTING: return "Listing";
    case WINDOW_PLOT: return "Plot";
    case WINDOW_CHART: return "Chart";
    case WINDOW_TAGS: return "Text Tags";
    default: return nullptr;
    }
}

void ResetController() {
    if (!PlatformAskYesNo("Resetting the controller will set all parameters to their factory "
                          "default.\n\nDo you want to continue?"))
        return;
    LogStatus("%s", FrameCommandLogLine(IDM_CONFIG_RESET_CONTROLLER));
    SendFrameText("FR");
    WriteSetting(KeyTzrEnable, "0");
    WriteSetting(KeyTzrInitialChannel, "1");
    WriteSetting(KeyTzrNumberOfChannels, "10");
    WriteSetting(KeyAr3000aEnable, "0");
    WriteSetting(KeyGpsDiffEnable, "0");
    WriteSetting(KeyGpsDiffBaudRate, "4800");
    statusFlags &= ~(STATUS_TZR_MODE | STATUS_AR3000A_MODE | STATUS_GPS_DIFF_MODE);
    liveState.liveAccessoryChannel = 0;
}

int RunCoreFrameCommand(int id) {
    switch (id) {
    case IDM_RECORD_START: StartRecording(); return 1;
    case IDM_RECORD_STOP: StopRecording(); return 1;
    case IDM_RECORD_TAKE_READING: TakeReading(); return 1;
    case IDM_RECORD_CLEAR: ClearRecords(); return 1;
    case IDM_RECORD_CALTEXT_1: CopyCalibrationToText(0); return 1;
    case IDM_RECORD_CALTEXT_2: CopyCalibrationToText(1); return 1;
    case IDM_RECORD_CALTEXT_3: CopyCalibrationToText(2); return 1;
    case IDM_RECORD_CALTEXT_4: CopyCalibrationToText(3); return 1;
    case IDM_CONFIG_RESET_CONTROLLER: ResetController(); return 1;
    default: return 0;
    }
}

void FormatAboutText(char* out, int size) {
    if (out == nullptr || size < 1) return;
    snprintf(out, (size_t)size, "%s%s\n%s", "VELDOR\nRF Survey Software\n\nVersion 2.3.3\n\n",
             MAKER_NAME, MAKER_WEB_ADDRESS);
}

void FormatWebsiteError(char* out, int size) {
    if (out == nullptr || size < 1) return;
    snprintf(out, (size_t)size,
             "Failed to open browser.\n\nPlease manually open a browser and visit \"%s\".",
             MAKER_WEB_ADDRESS);
}
