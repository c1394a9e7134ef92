// The survey, its curves and the plot settings, read through the program's
// own readers; the value, band and colour of a record as the Plot has them.
#include <stdio.h>
#include <string.h>

#include "base/app_paths.h"
#include "export_survey.h"
#include "storage/cal_file.h"
#include "storage/colours_file.h"
#include "storage/data_file.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/recording_engine.h"
#include "views/plot_view.h"

// The length of a path's folder part, its last separator included.
static size_t FolderLength(const char* path) {
    const char* slash = strrchr(path, '/');
    const char* backslash = strrchr(path, '\\');
    const char* last = slash > backslash ? slash : backslash;
    return last == nullptr ? 0 : (size_t)(last - path) + 1;
}

// The plot's breaks, channel and colours, and the earth radius: the settings
// file's values, or the defaults when none is given.
static void ReadPlotSettings(const ExportOptions& options) {
    snprintf(settingsPath, sizeof settingsPath, "%s", options.settings);
    powerBreak[0] = (float)ReadSettingNumber(KeyPlotPowerBreak1);
    powerBreak[1] = (float)ReadSettingNumber(KeyPlotPowerBreak2);
    powerBreak[2] = (float)ReadSettingNumber(KeyPlotPowerBreak3);
    EarthRadiusKm = ReadSetting(KeyEarthRadius);
    plotChannel = options.channel != ExportChannelFromSettings ? options.channel
                                                               : ReadSetting(KeyPlotChannel) - 1;
    if (plotChannel < 0 || plotChannel > PLOT_BEST) plotChannel = 0;
    SetDefaultColours();
    if (options.settings[0] != '\0') {
        char colours[2 * PathSize];
        snprintf(colours, sizeof colours, "%.*s%s", (int)FolderLength(options.settings),
                 options.settings, "Colours.txt");
        ReadColoursFile(colours);
    }
}

char exportCurvePath[4][2 * PathSize];
int exportCurveRead[4];

// Each channel's curve: the file given with --cal, else the survey's own
// file looked for beside the survey (an empty name meaning "Default.cal").
static void ReadCurves(const ExportOptions& options, FILE* warnings) {
    const size_t folder = FolderLength(options.input);
    char missing[2 * PathSize] = "";
    for (int c = 0; c < 4; c++) {
        char path[2 * PathSize];
        if (options.calPath[c][0] != '\0') {
            snprintf(path, sizeof path, "%s", options.calPath[c]);
        } else {
            const char* stored = recordingParams.calFileName[c];
            const char* name = stored + FolderLength(stored);
            snprintf(path, sizeof path, "%.*s%s", (int)folder, options.input,
                     name[0] != '\0' ? name : "Default.cal");
        }
        FILE* probe = fopen(path, "rb");
        int read = 0;
        if (probe == nullptr && c > 0 && strcmp(path, missing) == 0) {
            // Already told for the channel before.
        } else if (probe == nullptr) {
            snprintf(missing, sizeof missing, "%s", path);
            fprintf(warnings, "veldor-export: warning: no calibration file '%s' for channel %d,"
                              " the default curve is used\n", path, c + 1);
        } else {
            fclose(probe);
            read = ReadCalFile(path, c);
            if (!read)
                fprintf(warnings, "veldor-export: warning: the default curve is used for"
                                  " channel %d\n", c + 1);
        }
        snprintf(exportCurvePath[c], sizeof exportCurvePath[c], "%s", path);
        exportCurveRead[c] = read;
        if (!read) SetDefaultCalTable(c);
        BuildChannelLookup(c);
    }
}

int LoadSurveyForExport(const ExportOptions& options, FILE* warnings) {
    ResetSurveyState();
    snprintf(dataFileName, PathSize, "%s", options.input);
    if (!LoadDataFile()) return 0;
    ReadPlotSettings(options);
    ReadCurves(options, warnings);
    return 1;
}

float ExportValue(const Record& row, int channel) {
    if (channel >= 0 && channel < 4) return ChannelLookup[channel][row.ch[channel]];
    float best = ChannelLookup[0][row.ch[0]];
    for (int c = 1; c < 4; c++)
        if (ChannelLookup[c][row.ch[c]] > best) best = ChannelLookup[c][row.ch[c]];
    return best;
}

int ExportBand(const Record& row, int channel) {
    return PlotBand(ExportValue(row, channel));
}
