#include "shell/frame_commands.h"

#include <stdio.h>

#include "link/frame_codec.h"
#include "resources/resource_ids.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "shell/frame_command_table.h"
#include "storage/cal_file.h"
#include "storage/settings_file.h"
#include "shell/recording_commands.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "veldor_version.h"

// The portable handlers of the table's CORE rows.
static void OnRecordStart(int) { StartRecording(); }
static void OnRecordStop(int) { StopRecording(); }
static void OnTakeReading(int) { TakeReading(); }
static void OnClearRecords(int) { ClearRecords(); }
static void OnCalibrationToText(int id) { CopyCalibrationToText(id - IDM_RECORD_CALTEXT_1); }
static void OnResetController(int) { ResetController(); }

struct FrameCommandRow {
    int id;
    EnableRule enabled;
    uint32_t checkFlag;
    const char* logLine;
    void (*run)(int id);  // null for the commands the frame runs
};

#define CORE(handler) handler
#define FRAME(handler) nullptr
#define DIALOG(handler) nullptr
#define OUTPUT(handler) nullptr
#define ROW(id, enabled, checkFlag, logLine, handler) {id, enabled, checkFlag, logLine, handler},
static const FrameCommandRow FrameCommandRows[] = {FRAME_COMMANDS(ROW)};
#undef ROW
#define MENU_ID(id, enabled, checkFlag, logLine, handler) id,
const int FrameMenuIds[] = {FRAME_COMMANDS(MENU_ID)};
#undef MENU_ID
#undef OUTPUT
#undef DIALOG
#undef FRAME
#undef CORE
const int FrameMenuIdCount = (int)(sizeof FrameMenuIds / sizeof FrameMenuIds[0]);

static const FrameCommandRow* FindFrameCommand(int id) {
    for (const FrameCommandRow& row : FrameCommandRows) {
        if (row.id == id) return &row;
    }
    return nullptr;
}

static int Recording() { return (statusFlags & STATUS_RECORDING) != 0; }

static int EnableRuleHolds(EnableRule rule) {
    switch (rule) {
    case ENABLE_IDLE: return !Recording();
    case ENABLE_RECORDING: return Recording();
    case ENABLE_SAVE:
        return (statusFlags & STATUS_CHANGED) && dataFileName[0] != '\0' && recordCount >= 1;
    case ENABLE_FILE_NAMED: return dataFileName[0] != '\0';
    case ENABLE_RECORDS_READY: return RecordsReadyForOutput();
    default: return 1;
    }
}

int MenuItemEnabled(int id) {
    const FrameCommandRow* row = FindFrameCommand(id);
    return row == nullptr ? 1 : EnableRuleHolds(row->enabled);
}

int MenuItemChecked(int id) {
    const FrameCommandRow* row = FindFrameCommand(id);
    return row != nullptr && (statusFlags & row->checkFlag) != 0;
}

const char* FrameCommandLogLine(int id) {
    const FrameCommandRow* row = FindFrameCommand(id);
    return row == nullptr ? nullptr : row->logLine;
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
    const FrameCommandRow* row = FindFrameCommand(id);
    if (row == nullptr || row->run == nullptr) return 0;
    row->run(id);
    return 1;
}

void FormatAboutText(char* out, int size) {
    if (out == nullptr || size < 1) return;
    snprintf(out, (size_t)size, "%s%s\n%s",
             "VELDOR\nRF Survey Software\n\nVersion " VELDOR_VERSION "\n\n", MAKER_NAME,
             MAKER_WEB_ADDRESS);
}

void FormatWebsiteError(char* out, int size) {
    if (out == nullptr || size < 1) return;
    snprintf(out, (size_t)size,
             "Failed to open browser.\n\nPlease manually open a browser and visit \"%s\".",
             MAKER_WEB_ADDRESS);
}
