#include "dialogs/instrument_dialogs.h"

#include <stdio.h>
#include <stdlib.h>

#include "base/platform.h"
#include "base/status_log.h"
#include "dialogs/dialog_fields.h"
#include "link/accessory_modes.h"
#include "link/frame_codec.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

// ---- PortsBox -------------------------------------------------------------------------------

void PortDeviceName(int n, char* out, int size) {
    snprintf(out, (size_t)size, n < 10 ? "COM%d" : "\\\\.\\COM%d", n);
}

int PortListed(int opened, unsigned long error) {
    if (opened) return 1;
    return error == 5 || error == 31 || error == 32 || error == 121;
}

void PortsBoxOpen(PortsValues* values) {
    ReadSetting(KeyPcPort, values->port, sizeof values->port);
}

void PortsBoxStore(const PortsValues* values) { WriteSetting(KeyPcPort, values->port); }

// ---- GpsDiffBox -----------------------------------------------------------------------------

const char* const GpsDiffBaudRates[4] = {"1200", "2400", "4800", "9600"};

void GpsDiffBoxOpen(GpsDiffValues* values) {
    values->enable = ReadSetting(KeyGpsDiffEnable) != 0;
    ReadSetting(KeyGpsDiffBaudRate, values->baudRate, sizeof values->baudRate);
}

void GpsDiffBoxStore(const GpsDiffValues* values) {
    WriteSetting(KeyGpsDiffBaudRate, values->baudRate);
    WriteSetting(KeyGpsDiffEnable, values->enable ? "1" : "0");
    ApplyGpsDiffMode();
}

// ---- AR3000aBox -----------------------------------------------------------------------------

const char* const Ar3000aModes[6] = {"NFM", "WFM", "AM", "LSB", "USB", "CW"};
const char* const Ar3000aBaudRates[2] = {"4800", "9600"};

void Ar3000aBoxOpen(Ar3000aValues* values) {
    values->enable = ReadSetting(KeyAr3000aEnable) != 0;
    for (int c = 0; c < 4; c++) {
        ReadSetting(KeyAr3000aFreq[c], values->freq[c], sizeof values->freq[c]);
        ReadSetting(KeyAr3000aMode[c], values->mode[c], sizeof values->mode[c]);
        values->attOn[c] = ReadSetting(KeyAr3000aAttOn[c]) != 0;
    }
    ReadSetting(KeyAr3000aBaudRate, values->baudRate, sizeof values->baudRate);
}

void Ar3000aBoxStore(const Ar3000aValues* values) {
    WriteSetting(KeyAr3000aEnable, values->enable ? "1" : "0");
    WriteSetting(KeyAr3000aBaudRate, values->baudRate);
    for (int c = 0; c < 4; c++) {
        WriteSetting(KeyAr3000aFreq[c], values->freq[c]);
        WriteSetting(KeyAr3000aMode[c], values->mode[c]);
        WriteSetting(KeyAr3000aAttOn[c], values->attOn[c] ? "1" : "0");
    }
    if (!ApplyAr3000aMode()) LogStatus("<< Error setting AR3000A configuration >>");
}

// ---- TzrBox ---------------------------------------------------------------------------------

static const char* const TzrWithDistanceInterval =
    "TZR mode and a distance recording interval are incompatible.\n"
    "Use one or the other, but not both at once.";

static int Clamp(int value, int low, int high) {
    return value < low ? low : value > high ? high : value;
}

void TzrBoxOpen(TzrValues* values) {
    values->enable = ReadSetting(KeyTzrEnable) != 0;
    snprintf(values->initialChannel, sizeof values->initialChannel, "%02d",
             ReadSetting(KeyTzrInitialChannel));
    snprintf(values->channelCount, sizeof values->channelCount, "%02d", (int)tzrChannelCount);
    values->increment = (statusFlags & STATUS_INCREMENT_CHANNEL) != 0;
    snprintf(values->inputChannel, sizeof values->inputChannel, "%d",
             (int)currentInputChannel + 1);
}

void TzrEnableClicked(int on) {
    WriteSetting(KeyTzrEnable, on ? "1" : "0");
    SendFramef("MS %d", on ? 1 : 0);
}

void TzrIncrementClicked(int on) {
    WriteSetting(KeyTzrIncrementChannel, on ? "1" : "0");
    SendFrameText(on ? "MI 1" : "MI 0");
}

void TzrSetChannelNow(const TzrValues* values) {
    if (!values->enable) return;
    int channel = atoi(values->initialChannel);
    SendFramef("MC %d", channel);
    LogStatus("TZR4100 channel set to %d", channel);
}

void TzrSpin(TzrValues* values, int field, int delta) {
    const int initial = atoi(values->initialChannel);
    const int count = atoi(values->channelCount);
    // Only the bound in the direction of the press applies.
    int high = 2147483647, low = -2147483647;
    char* text = values->inputChannel;
    const char* format = "%02d";
    switch (field) {
    case TZR_INITIAL:
        text = values->initialChannel;
        if (delta > 0) high = count < 99 ? count : 99;
        else low = 1;
        break;
    case TZR_COUNT:
        text = values->channelCount;
        if (delta > 0) high = 99;
        else low = initial > 1 ? initial : 1;
        break;
    default:
        format = "%d";
        if (delta > 0) high = 4;
        else low = 1;
        break;
    }
    char step[16];
    int value = SpinStep(text, delta, low, high, step, sizeof step);
    snprintf(text, 16, format, value);
}

int TzrBoxStore(const TzrValues* values) {
    if (values->enable && (statusFlags & STATUS_DISTANCE_INTERVAL)) {
        PlatformMessageBox(TzrWithDistanceInterval, ICON_EXCLAMATION);
        return 0;
    }
    WriteSetting(KeyTzrEnable, values->enable ? "1" : "0");
    WriteSetting(KeyTzrInitialChannel, values->initialChannel);
    tzrChannelCount = Clamp(atoi(values->channelCount), 1, 99);
    WriteSettingInt(KeyTzrNumberOfChannels, tzrChannelCount);
    WriteSetting(KeyTzrIncrementChannel, values->increment ? "1" : "0");
    if (values->increment) statusFlags |= STATUS_INCREMENT_CHANNEL;
    else statusFlags &= ~STATUS_INCREMENT_CHANNEL;
    currentInputChannel = Clamp(atoi(values->inputChannel) - 1, 0, 3);
    WriteSettingInt(KeyTzrInputChannel, currentInputChannel + 1);
    if (!ApplyTzrMode()) LogStatus("<< Error setting TZR4100 configuration >>");
    if (PlatformWindowExists(WINDOW_LISTING)) PlatformRepaint(WINDOW_LISTING, AREA_WHOLE, 1);
    return 1;
}

void TzrBoxCancel(int enableAtOpening) { TzrEnableClicked(enableAtOpening); }
