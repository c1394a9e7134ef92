#include "link/accessory_modes.h"

#include <stdio.h>
#include <string.h>

#include "link/frame_codec.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

static const char* const TzrOverAr3000a =
    "Enabling TZR4100 mode will disable AR3000A scan mode.\nDo you want to continue?";
static const char* const TzrOverGpsDiff =
    "Enabling TRZ scan mode will disable AR3000A differential mode.\nDo you want to continue?";
static const char* const Ar3000aOverTzr =
    "Enabling AR3000A scan mode will disable TZR4100 mode.\nDo you want to continue?";
static const char* const Ar3000aOverGpsDiff =
    "Enabling AR3000A scan mode will disable GPS differential mode.\nDo you want to continue?";
static const char* const GpsDiffOverAr3000a =
    "Enabling GPS differential mode will disable AR3000A scan mode.\nDo you want to continue?";
static const char* const GpsDiffOverTzr =
    "Enabling GPS differential scan mode will disable TZR4100 mode.\nDo you want to continue?";

int ApplyTzrMode() {
    int on = ReadSettingWithDefault(KeyTzrEnable, TzrEnableDefaultAtPortOpen) != 0;
    if (on && (statusFlags & STATUS_AR3000A_MODE) && !PlatformAskYesNo(TzrOverAr3000a)) return 0;
    if (on && (statusFlags & STATUS_GPS_DIFF_MODE) && !PlatformAskYesNo(TzrOverGpsDiff)) return 0;
    int sent = SendFramef("MS %d", on ? 1 : 0);
    if (!on) {
        statusFlags &= ~STATUS_TZR_MODE;
        return sent;
    }
    statusFlags |= STATUS_TZR_MODE;
    statusFlags &= ~(STATUS_AR3000A_MODE | STATUS_GPS_DIFF_MODE);
    WriteSetting(KeyGpsDiffEnable, "0");
    WriteSetting(KeyAr3000aEnable, "0");
    int all = sent;
    all &= SendFramef("MN %d", tzrChannelCount);
    all &= SendFramef("MC %d", ReadSetting(KeyTzrInitialChannel));
    all &= SendFramef("MI %d", ReadSetting(KeyTzrIncrementChannel));
    return all ? 1 : 0;
}

void BuildAr3000aConfiguration(char* body, int size) {
    if (body == nullptr || size < 1) return;
    char text[128] = "AC ";
    for (int c = 0; c < 4; c++) {
        char freq[32], mode[16];
        ReadSetting(KeyAr3000aFreq[c], freq, sizeof freq);
        ReadSetting(KeyAr3000aMode[c], mode, sizeof mode);
        size_t used = strlen(text);
        snprintf(text + used, sizeof text - used, "%c%s%c,",
                 ReadSetting(KeyAr3000aAttOn[c]) ? 'R' : 'T', freq, mode[0]);
    }
    char baud[16];
    ReadSetting(KeyAr3000aBaudRate, baud, sizeof baud);
    size_t used = strlen(text);
    snprintf(text + used, sizeof text - used, "%s", baud);
    snprintf(body, (size_t)size, "%s", text);
}

int ApplyAr3000aMode() {
    int on = ReadSettingWithDefault(KeyAr3000aEnable, 1) != 0;
    if (on && (statusFlags & STATUS_TZR_MODE) && !PlatformAskYesNo(Ar3000aOverTzr)) return 0;
    if (!on) {
        if (!SendFrameText("AS 0")) return 0;
        statusFlags &= ~STATUS_AR3000A_MODE;
        return 1;
    }
    if ((statusFlags & STATUS_GPS_DIFF_MODE) && !PlatformAskYesNo(Ar3000aOverGpsDiff)) return 0;
    char body[128];
    BuildAr3000aConfiguration(body, sizeof body);
    if (!SendFrame(body)) return 0;
    if (!SendFrameText("AS 1")) return 0;
    statusFlags |= STATUS_AR3000A_MODE;
    statusFlags &= ~(STATUS_TZR_MODE | STATUS_GPS_DIFF_MODE);
    WriteSetting(KeyGpsDiffEnable, "0");
    WriteSetting(KeyTzrEnable, "0");
    return 1;
}

void ApplyGpsDiffMode() {
    static const char* const Failure = "<< Error setting GPS differential configuration >>";
    int on = ReadSetting(KeyGpsDiffEnable) != 0;
    if (on && (statusFlags & STATUS_AR3000A_MODE) && !PlatformAskYesNo(GpsDiffOverAr3000a)) {
        LogStatus("%s", Failure);
        return;
    }
    if (on && (statusFlags & STATUS_TZR_MODE) && !PlatformAskYesNo(GpsDiffOverTzr)) {
        LogStatus("%s", Failure);
        return;
    }
    char body[MaxFrameBody + 1];
    if (on) {
        char baud[16];
        ReadSetting(KeyGpsDiffBaudRate, baud, sizeof baud);
        snprintf(body, sizeof body, "GD 1 %s", baud);
        statusFlags |= STATUS_GPS_DIFF_MODE;
        statusFlags &= ~(STATUS_TZR_MODE | STATUS_AR3000A_MODE);
        WriteSetting(KeyAr3000aEnable, "0");
        WriteSetting(KeyTzrEnable, "0");
    } else {
        snprintf(body, sizeof body, "GD 0 0");
        statusFlags &= ~STATUS_GPS_DIFF_MODE;
    }
    if (!SendFrame(body)) LogStatus("%s", Failure);
}

int TzrStepping() {
    return (statusFlags & STATUS_TZR_MODE) && (statusFlags & STATUS_INCREMENT_CHANNEL);
}

void StepTzrChannel() {
    if (!TzrStepping() || recordIntervalSeconds < 2) return;
    int next = liveState.liveAccessoryChannel + 1;
    if (next > tzrChannelCount) next = 1;
    SendFramef("MC %d", next);
}
