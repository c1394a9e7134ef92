#include "shell/startup.h"

#include <stdio.h>
#include <stdlib.h>

#include "base/busy.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "base/app_paths.h"
#include "base/platform.h"
#include "storage/colours_file.h"
#include "storage/settings_file.h"
#include "storage/cal_file.h"
#include "survey/cal_lookup.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "views/chart_view.h"
#include "views/display_format.h"
#include "views/plot_view.h"

void SetInitialValues() {
    recordCount = 0;
    ResetLinkTimers();  // watchdog 12, keep-alive 5, data not valid, GPS status 0
    statusFlags = 0;
    dataFileName[0] = '\0';
    BeginBusy();
}

static void SetFlag(const IntSetting& setting, uint32_t flag) {
    if (ReadSetting(setting) != 0) statusFlags |= flag;
    else statusFlags &= ~flag;
}

static float ReadFloatSetting(const TextSetting& setting) {
    return (float)ReadSettingNumber(setting);
}

void ReadStartupSettings() {
    LoadScreenFormat();
    chartChannel = ReadSetting(KeyChartChannel) - 1;
    plotChannel = ReadSetting(KeyPlotChannel) - 1;
    recordIntervalSeconds = ReadSetting(KeyRecordIntervalSeconds);
    recordIntervalMeters = ReadSetting(KeyRecordIntervalMeters);
    autosaveMinutes = ReadSetting(KeyAutosaveInterval);
    maxPlotTime = ReadSetting(KeyMaxPlotTime);
    tzrChannelCount = ReadSetting(KeyTzrNumberOfChannels);
    recordingParams.intervalSeconds = recordIntervalSeconds;
    recordingParams.intervalMeters = recordIntervalMeters;
    EarthRadiusKm = ReadSetting(KeyEarthRadius);

    SetFlag(KeyRecordIntervalInMeters, STATUS_DISTANCE_INTERVAL);
    SetFlag(KeyAutosaveEnable, STATUS_AUTOSAVE);
    SetFlag(KeyAveraging, STATUS_AVERAGING);
    SetFlag(KeyShowPath, STATUS_FULL_PATH);
    SetFlag(KeyPlotCurrentPosition, STATUS_PLOT_POSITION);
    SetFlag(KeyLoadStoredData, STATUS_LOAD_STORED);
    SetFlag(KeyCheckStoredData, STATUS_CHECK_STORED);
    SetFlag(KeyTzrIncrementChannel, STATUS_INCREMENT_CHANNEL);
    SetFlag(KeyGpsDiffEnable, STATUS_GPS_DIFF_MODE);
    SetFlag(KeyAr3000aEnable, STATUS_AR3000A_MODE);
    SetFlag(KeyTzrEnable, STATUS_TZR_MODE);

    powerBreak[0] = ReadFloatSetting(KeyPlotPowerBreak1);
    powerBreak[1] = ReadFloatSetting(KeyPlotPowerBreak2);
    powerBreak[2] = ReadFloatSetting(KeyPlotPowerBreak3);
    char text[32];
    ReadSetting(KeyPlotDotSize, text, sizeof text);
    dotSize = atoi(text);

    SetDefaultColours();
    char coloursPath[PathSize];
    if (snprintf(coloursPath, sizeof coloursPath, "%s\\Colours.txt", appDirectory) > 0)
        ReadColoursFile(coloursPath);

    currentInputChannel = ReadSetting(KeyTzrInputChannel) - 1;
    recordingParams.inputChannel = (uint16_t)(currentInputChannel & 0xFFFF);

    for (int c = 0; c < 4; c++) snprintf(channelLabels[c], ChannelLabelSize, "Ch %d", c + 1);

    LoadStartupCalibration();
}

int TakeFirstRunLayout() {
    if (ReadSetting(KeySetupStatus) != 1) return 0;
    WriteSetting(KeySetupStatus, "2");
    return 1;
}

// One axis: a negative origin becomes 0, and an origin whose window would
// reach past the screen moves back by the excess.
static int PlaceAxis(int origin, int size, int screen) {
    if (origin < 0) origin = 0;
    if ((int64_t)origin + size > screen) origin = (int)((int64_t)screen - size);
    return origin;
}

FramePlace PlaceFrame(FramePlace stored, int screenWidth, int screenHeight) {
    FramePlace place = stored;
    place.x = PlaceAxis(stored.x, stored.width, screenWidth);
    place.y = PlaceAxis(stored.y, stored.height, screenHeight);
    return place;
}

void WriteExitSettings(const FrameExitState& frame) {
    WriteSetting(KeyShowListing, PlatformWindowExists(WINDOW_LISTING) ? "1" : "0");
    WriteSetting(KeyShowPlot, PlatformWindowExists(WINDOW_PLOT) ? "1" : "0");
    WriteSetting(KeyShowChart, PlatformWindowExists(WINDOW_CHART) ? "1" : "0");
    WriteSetting(KeyShowTags, PlatformWindowExists(WINDOW_TAGS) ? "1" : "0");
    WriteSettingInt(KeyChartChannel, chartChannel + 1);
    WriteSettingInt(KeyPlotChannel, plotChannel + 1);
    if (frame.minimised) return;
    if (frame.maximised) {
        WriteSetting(KeyMainMaximised, "1");
        return;
    }
    WriteSetting(KeyMainMaximised, "0");
    WriteSettingInt(KeyMainOriginX, frame.place.x);
    WriteSettingInt(KeyMainOriginY, frame.place.y);
    WriteSettingInt(KeyMainWidth, frame.place.width);
    WriteSettingInt(KeyMainHeight, frame.place.height);
}
