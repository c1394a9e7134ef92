#include "storage/reconciliation.h"

#include <stdio.h>
#include <string.h>

#include "base/platform.h"
#include "storage/cal_file.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

constexpr int MessageSize = 1024;

// Both checks read the key with this default, not the empty default of the
// settings table.
static const char* const CheckDefaultCalFile = "Default.cal";

static void CurrentCalFileName(int channel, char* name) {
    ReadSettingWithDefault(KeyCalibrationFile[channel], CheckDefaultCalFile, name, PathSize);
}

static int CanOpenForReading(const char* path) {
    FILE* file = fopen(path, "rb");
    if (file == nullptr) return 0;
    fclose(file);
    return 1;
}

void ReconcileOnLoad() {
    if (!(statusFlags & STATUS_LOAD_STORED)) return;
    char message[MessageSize];
    for (int c = 0; c < 4; c++) {
        char current[PathSize];
        CurrentCalFileName(c, current);
        const char* stored = recordingParams.calFileName[c];
        if (strcmp(current, stored) == 0) continue;
        if (!CanOpenForReading(stored)) {
            snprintf(message, sizeof message,
                     "Warning:\nOriginal calibration file \"%s\"\nfor channel %d does not exist",
                     DisplayFileName(stored), c + 1);
            PlatformMessageBox(message, ICON_EXCLAMATION);
            continue;
        }
        snprintf(message, sizeof message,
                 "Do you want to load original calibration\nfile \"%s\" for channel %d?",
                 DisplayFileName(stored), c + 1);
        if (!PlatformAskYesNo(message)) continue;
        WriteSetting(KeyCalibrationFile[c], stored);
        ReadCalFile(stored, c);
        BuildChannelLookup(c);
    }
}

void ReconcileOnSave() {
    if (!(statusFlags & STATUS_CHECK_STORED)) return;
    char message[MessageSize];
    for (int c = 0; c < 4; c++) {
        char current[PathSize];
        CurrentCalFileName(c, current);
        char* stored = recordingParams.calFileName[c];
        if (strcmp(current, stored) == 0) continue;
        if (stored[0] != '\0') {
            snprintf(message, sizeof message,
                     "Current channel %d calibration file\n'%s'\ndoes not match the calibration "
                     "filename\n'%s'\nstored in the data file"
                     "\n\nDo you want to update the data file?",
                     c + 1, DisplayFileName(current), DisplayFileName(stored));
            if (!PlatformAskYesNo(message)) continue;
        }
        snprintf(stored, PathSize, "%s", current);
    }

    if ((int32_t)recordingParams.inputChannel != currentInputChannel) {
        snprintf(message, sizeof message,
                 "Current TZR4100 input channel [%lld]\ndoes not match the stored channel [%d]\n"
                 " in the data file"
                 "\n\nDo you want to update the data file?",
                 (long long)currentInputChannel + 1, (int)recordingParams.inputChannel + 1);
        if (PlatformAskYesNo(message))
            recordingParams.inputChannel = (uint16_t)(currentInputChannel & 0xFFFF);
    }
}
