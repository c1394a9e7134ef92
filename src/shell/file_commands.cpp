#include "shell/file_commands.h"

#include "base/platform.h"
#include "base/status_log.h"
#include "storage/data_file.h"
#include "storage/reconciliation.h"
#include "shell/recording_commands.h"
#include "survey/recording_engine.h"
#include "views/display_format.h"
#include "survey/survey_state.h"
#include "views/plot_geometry.h"

void FileOpen() {
    if (AskSaveQuestion()) FileSave();
    statusFlags &= ~STATUS_CHANGED;
    LogStatus("Select data file to open...");
    if (!ChooseFile(dataFileName, PathSize, CHOOSE_OPEN_DATA)) {
        LogStatus("No file selected");
        return;
    }
    if (!LoadDataFile()) {
        recordCount = 0;
        dataFileName[0] = '\0';
    }
    UpdateFrameCaption();
}

void FileSave() {
    if (recordCount < 1) return;
    if (dataFileName[0] == '\0') {
        FileSaveAs();
        return;
    }
    ReconcileOnSave();
    if (SaveDataFile()) statusFlags &= ~STATUS_CHANGED;
}

void FileSaveAs() {
    LogStatus("Select filename for data file...");
    // A cancel empties dataFileName; the caption keeps the old name until the
    // next change.
    if (!ChooseFile(dataFileName, PathSize, CHOOSE_SAVE_DATA)) {
        LogStatus("No file selected");
        return;
    }
    ReconcileOnSave();
    if (SaveDataFile())
        statusFlags &= ~STATUS_CHANGED;
    else
        dataFileName[0] = '\0';
    UpdateFrameCaption();
}

void FileClose() {
    if (dataFileName[0] == '\0') return;
    if (AskSaveQuestion()) FileSave();
    statusFlags &= ~STATUS_CHANGED;
    dataFileName[0] = '\0';
    recordCount = 0;
    tagCount = 0;
    UpdateFrameCaption();
    listingTopIndex = 0;
    PlatformSetVerticalScroll(WINDOW_LISTING, 0);
    ResetPlotView();
    RepaintDataViews();
    LogStatus("File closed");
}
