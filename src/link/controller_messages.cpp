#include "link/controller_messages.h"

#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "link/frame_codec.h"
#include "link/gps_commands.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "survey/survey_state.h"

int32_t commsWatchdogTicks = 12;

void ResetLinkTimers() {
    commsWatchdogTicks = 12;
    keepAliveTicks = 5;
    liveState.dataValidTicks = 0;
    liveState.gpsStatus = 0;
}

// Reads up to count decimal numbers separated by blanks; returns how many were
// read. Fields that are missing keep their old values.
static int ReadNumbers(const char* text, long* values, int count) {
    int got = 0;
    const char* p = text;
    while (got < count) {
        while (*p == ' ' || *p == '\t') p++;
        char* end = nullptr;
        long v = strtol(p, &end, 10);
        if (end == p) break;
        values[got++] = v;
        p = end;
    }
    return got;
}

// The field text of ST, RA, RP, VI and DB starts at the fourth character; a
// body of two letters has none.
static const char* FieldText(const char* body) {
    return strlen(body) >= 3 ? body + 3 : body + strlen(body);
}

static void HandleReadings(const char* body) {
    long values[5];
    int got = ReadNumbers(FieldText(body), values, 5);
    for (int c = 0; c < 4 && c < got; c++) liveState.liveReadings[c] = (uint8_t)values[c];
    if (got >= 5) liveState.liveAccessoryChannel = (uint8_t)values[4];
    PlatformRepaint(WINDOW_CALIBRATION, AREA_LIVE_READING, 0);
    liveState.dataValidTicks = 10;
    PlatformRepaint(WINDOW_LISTING, AREA_LISTING_LIVE_ROW, 0);
    if (statusFlags & STATUS_PLOT_POSITION) PlatformRepaint(WINDOW_PLOT, AREA_PLOT_RECT, 1);
    UpdateReadingHistory();
}

static void HandlePosition(const char* body) {
    long values[2];
    int got = ReadNumbers(FieldText(body), values, 2);
    if (got >= 1) liveState.liveLatitude = (int32_t)values[0];
    if (got >= 2) liveState.liveLongitude = (int32_t)values[1];
    liveState.dataValidTicks = 10;
    PlatformRepaint(WINDOW_LISTING, AREA_LISTING_LIVE_ROW, 0);
    UpdatePositionHistory();
}

static void HandleGpsStatus(const char* body) {
    long value = 0;
    ReadNumbers(body + 2, &value, 1);
    uint8_t old = liveState.gpsStatus;
    uint8_t now = (uint8_t)value;
    liveState.gpsStatus = now;
    uint8_t rose = (uint8_t)(now & ~old);
    uint8_t fell = (uint8_t)(old & ~now);
    if (rose & 0x01) LogStatus("GPS insufficient visable satellites");
    if (rose & 0x08) LogStatus("GPS acquiring satellites/position hold");
    if (!(old & 0x30) && (now & 0x30)) LogStatus("GPS giving position fixes");
    if ((old & 0x30) && !(now & 0x30)) LogStatus("GPS not giving position fixes");
    if (rose & 0x04) LogStatus("GPS differential correction active");
    if (fell & 0x04) LogStatus("GPS differential correction inactive");
}

static void HandleNegativeAcknowledge() {
    if (!PlatformPortIsOpen() || retransmitCount >= MaxRetransmissions || lastFrame[0] == '\0')
        return;
    // Copy first: another thread may send a new frame meanwhile.
    char frame[LastFrameSize];
    memcpy(frame, lastFrame, sizeof frame);
    frame[LastFrameSize - 1] = '\0';
    PlatformPortWrite(frame, (int)strlen(frame));
    retransmitCount++;
    keepAliveTicks = 5;
}

static void HandleVersion(const char* body) {
    long v[3] = {0, 0, 0};
    ReadNumbers(FieldText(body), v, 3);
    LogStatus("Controller firmware version: v%d.%d.%d", (int)v[0], (int)v[1], (int)v[2]);
}

int HandleControllerMessage(const char* body) {
    if (body == nullptr || body[0] == '\0' || body[1] == '\0') return 0;
    char a = (char)toupper((unsigned char)body[0]);
    char b = (char)toupper((unsigned char)body[1]);
    if (a == 'S' && b == 'T') {
        LogStatus("Controller: %s", FieldText(body));
    } else if (a == 'R' && b == 'A') {
        HandleReadings(body);
    } else if (a == 'R' && b == 'P') {
        HandlePosition(body);
    } else if (a == 'E' && b == 'S') {
        HandleGpsStatus(body);
    } else if (a == 'E' && b == 'T') {
        ReportSelfTest(body + 2);
    } else if (a == 'N' && b == 'A') {
        HandleNegativeAcknowledge();
    } else if (a == 'K' && b == 'A') {
        // Keep-alive: only the watchdog below.
    } else if (a == 'V' && b == 'I') {
        HandleVersion(body);
    } else if (a == 'D' && b == 'B') {
        LogStatus("Controller debug: %s", FieldText(body));
    } else {
        return 0;
    }
    if (commsWatchdogTicks == 0) LogStatus("Communication from controller returned");
    commsWatchdogTicks = 12;
    return 1;
}

void LinkTick() {
    if (PlatformPortIsOpen()) {
        if (commsWatchdogTicks > 0) {
            commsWatchdogTicks--;
            if (commsWatchdogTicks == 0) LogStatus("No communications from controller");
        }
        if (keepAliveTicks > 0) {
            keepAliveTicks--;
            if (keepAliveTicks == 0) SendFrameText("KA");
        }
    }
    if (liveState.dataValidTicks > 0) {
        liveState.dataValidTicks--;
        if (liveState.dataValidTicks == 0) {
            PlatformRepaint(WINDOW_LISTING, AREA_LISTING_LIVE_ROW, 1);
            if (statusFlags & STATUS_PLOT_POSITION) PlatformRepaint(WINDOW_PLOT, AREA_PLOT_RECT, 1);
        }
    } else {
        SendFrameText("OP 1");
    }
}

int ReceiveBytes(char* data, int length) {
    return ReceiveBytes(data, length, HandleControllerMessage);
}
