// The frame's menu commands: one row each, in menu order. A new command is
// one more row here.
//
//   X(id, enabled when, check mark, status line, handler)
//
// - enabled when: the EnableRule that MenuItemEnabled evaluates;
// - check mark: the statusFlags bit that puts a check on the item, or 0;
// - status line: what the command writes with LogStatus (FrameCommandLogLine),
//   or nullptr for one that writes none of its own;
// - handler: CORE(f) for a portable f(int id) that RunCoreFrameCommand runs;
//   in the Windows front end (frame_commands_win32.cpp) FRAME(f) for an
//   f(HWND frame, int id) that writes its own status line, DIALOG(f) for an
//   f(HWND frame) that opens a dialog after the row's status line, OUTPUT(f)
//   for an f(HWND frame) that makes a listing or a print: it runs, after the
//   status line, only with records ready for output (an accelerator or a
//   popup menu may reach it without the menu); FRAME(nullptr) for a command
//   that does nothing yet.
//
// Each file that expands the table defines CORE, FRAME, DIALOG and OUTPUT
// first, so that it sees only the handlers that it can reach.
#ifndef VELDOR_SHELL_FRAME_COMMAND_TABLE_H
#define VELDOR_SHELL_FRAME_COMMAND_TABLE_H

#include "resources/resource_ids.h"
#include "survey/survey_state.h"

// When a frame command's menu item is enabled.
enum EnableRule {
    ENABLE_ALWAYS = 0,
    ENABLE_IDLE = 1,           // while not recording
    ENABLE_RECORDING = 2,      // while recording
    ENABLE_SAVE = 3,           // changed data, a file name and at least one record
    ENABLE_FILE_NAMED = 4,     // a data file is named
    ENABLE_RECORDS_READY = 5,  // RecordsReadyForOutput
};

// clang-format off
#define FRAME_COMMANDS(X)                                                                          \
    X(IDM_FILE_OPEN, ENABLE_IDLE, 0, "Select data file to open...", FRAME(OnFileOpen))             \
    X(IDM_FILE_SAVE, ENABLE_SAVE, 0, nullptr, FRAME(OnFileSave))                                   \
    X(IDM_FILE_SAVE_AS, ENABLE_IDLE, 0, "Select filename for data file...", FRAME(OnFileSaveAs))   \
    X(IDM_FILE_CLOSE, ENABLE_FILE_NAMED, 0, "File closed", FRAME(OnFileClose))                     \
    X(IDM_FILE_PREFERENCES, ENABLE_ALWAYS, 0, "Set preferences", DIALOG(OnPreferences))                   \
    X(IDM_FILE_MAKE_LISTING, ENABLE_RECORDS_READY, 0, "Creating list file", OUTPUT(OnCreateListingFile))  \
    X(IDM_FILE_PRINT_LISTING, ENABLE_RECORDS_READY, 0, "Print listing", OUTPUT(PrintListing))     \
    X(IDM_FILE_PRINT_PLOT, ENABLE_RECORDS_READY, 0, "Print plot", OUTPUT(PrintPlot))              \
    X(IDM_FILE_EXIT, ENABLE_ALWAYS, 0, nullptr, FRAME(OnExit))                                     \
    X(IDM_RECORD_START, ENABLE_IDLE, 0, nullptr, CORE(OnRecordStart))                              \
    X(IDM_RECORD_STOP, ENABLE_RECORDING, 0, nullptr, CORE(OnRecordStop))                           \
    X(IDM_RECORD_TAKE_READING, ENABLE_IDLE, 0, nullptr, CORE(OnTakeReading))                       \
    X(IDM_RECORD_MANUAL_READING, ENABLE_ALWAYS, 0, "Take manual reading", DIALOG(OnTakeManualReading))    \
    X(IDM_RECORD_ADD_TAG, ENABLE_ALWAYS, 0, nullptr, DIALOG(OnAddTextTag))                              \
    X(IDM_RECORD_CLEAR, ENABLE_RECORDS_READY, 0, nullptr, CORE(OnClearRecords))                    \
    X(IDM_RECORD_FILTER, ENABLE_RECORDS_READY, 0, nullptr, FRAME(HandToListing))                   \
    X(IDM_RECORD_STATISTICS, ENABLE_RECORDS_READY, 0, nullptr, FRAME(HandToListing))               \
    X(IDM_RECORD_SETTINGS, ENABLE_IDLE, 0, "Configure record settings", DIALOG(OnRecordSettings))      \
    X(IDM_RECORD_CALIBRATION, ENABLE_IDLE, 0, "Calibration", DIALOG(OnCalibration))                         \
    X(IDM_RECORD_CALTEXT_1, ENABLE_ALWAYS, 0, nullptr, CORE(OnCalibrationToText))                  \
    X(IDM_RECORD_CALTEXT_2, ENABLE_ALWAYS, 0, nullptr, CORE(OnCalibrationToText))                  \
    X(IDM_RECORD_CALTEXT_3, ENABLE_ALWAYS, 0, nullptr, CORE(OnCalibrationToText))                  \
    X(IDM_RECORD_CALTEXT_4, ENABLE_ALWAYS, 0, nullptr, CORE(OnCalibrationToText))                  \
    X(IDM_CONFIG_DISPLAY, ENABLE_ALWAYS, 0, "Configure display", DIALOG(OnConfigureDisplay))                 \
    X(IDM_CONFIG_PORT, ENABLE_IDLE, 0, "Configure ports", DIALOG(OnConfigurePorts))                       \
    X(IDM_CONFIG_GPS, ENABLE_IDLE, 0, "Configure GPS", DIALOG(OnConfigureGps))                               \
    X(IDM_CONFIG_GPS_DIFF, ENABLE_IDLE, STATUS_GPS_DIFF_MODE, "Configure differential GPS input",  \
      DIALOG(OnConfigureGpsDiff))                                                                           \
    X(IDM_CONFIG_AR3000A, ENABLE_IDLE, STATUS_AR3000A_MODE, "Configure AR3000A",                   \
      DIALOG(OnConfigureAr3000a))                                                                           \
    X(IDM_CONFIG_TZR4100, ENABLE_IDLE, STATUS_TZR_MODE, "Configure TZR4100", DIALOG(OnConfigureTzr4100))    \
    X(IDM_CONFIG_RESET_CONTROLLER, ENABLE_IDLE, 0, "Reset sent to controller",                     \
      CORE(OnResetController))                                                                     \
    X(IDM_WINDOW_CASCADE, ENABLE_ALWAYS, 0, "Windows cascaded", FRAME(OnCascade))                  \
    X(IDM_WINDOW_TILE_HORIZONTAL, ENABLE_ALWAYS, 0, "Windows tiled", FRAME(OnTileHorizontal))      \
    X(IDM_WINDOW_TILE_VERTICAL, ENABLE_ALWAYS, 0, "Windows tiled", FRAME(OnTileVertical))          \
    X(IDM_WINDOW_ARRANGE, ENABLE_ALWAYS, 0, "Icons arranged", FRAME(OnArrangeIcons))               \
    X(IDM_WINDOW_SHOW_LISTING, ENABLE_ALWAYS, 0, "%s window opened", FRAME(OnShowListing))         \
    X(IDM_WINDOW_SHOW_PLOT, ENABLE_ALWAYS, 0, "%s window opened", FRAME(OnShowPlot))               \
    X(IDM_WINDOW_SHOW_CHART, ENABLE_ALWAYS, 0, "%s window opened", FRAME(OnShowChart))             \
    X(IDM_WINDOW_SHOW_TAGS, ENABLE_ALWAYS, 0, "%s window opened", FRAME(OnShowTags))               \
    X(IDM_HELP_ABOUT, ENABLE_ALWAYS, 0, "About...", FRAME(OnAbout))                                \
    X(IDM_HELP_LICENCE, ENABLE_ALWAYS, 0, "View licence", FRAME(OnLicence))                        \
    X(IDM_HELP_WEBSITE, ENABLE_ALWAYS, 0, "View website", FRAME(OnWebsite))                        \
    X(IDM_HELP_HELP, ENABLE_ALWAYS, 0, "View help", FRAME(OnHelp))
// clang-format on

#endif
