#include "link/frame_codec.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include "base/platform.h"
#include "base/status_log.h"

char receiveBuffer[ReceiveBufferSize];
char lastFrame[LastFrameSize];
int32_t retransmitCount;
int32_t keepAliveTicks;

uint8_t Crc8(const char* bytes, int length) {
    uint8_t crc = 0;
    if (bytes == nullptr) return 0;
    for (int i = 0; i < length; i++) {
        uint8_t byte = (uint8_t)bytes[i];
        for (int bit = 0; bit < 8; bit++) {
            uint8_t mix = (uint8_t)((byte ^ crc) & 1);
            crc = (uint8_t)(crc >> 1);
            if (mix) crc ^= 0x8C;
            byte = (uint8_t)(byte >> 1);
        }
    }
    return crc;
}

int SendFrame(char* body) {
    if (!PlatformPortIsOpen() || body == nullptr || body[0] == '\0') return 0;
    for (char* p = body; *p; p++) {
        if (*p == '#' || *p == '\r') *p = ' ';
    }
    uint8_t check = Crc8(body, (int)strlen(body));
    char frame[128];
    int n = snprintf(frame, sizeof frame, "#%s:%02X\r", body, check);
    if (n < 0) return 0;
    if (n >= (int)sizeof frame) n = (int)sizeof frame - 1;  // over-long body: cut
    PlatformPortWrite(frame, n);
    keepAliveTicks = 5;
    retransmitCount = 0;
    memcpy(lastFrame, frame, (size_t)n + 1);
    return 1;
}

int SendFrameText(const char* body) {
    if (body == nullptr) return 0;
    char copy[MaxFrameBody + 1];
    snprintf(copy, sizeof copy, "%s", body);
    return SendFrame(copy);
}

int SendFramef(const char* format, ...) {
    char body[MaxFrameBody + 1];
    va_list args;
    va_start(args, format);
    int n = vsnprintf(body, sizeof body, format, args);
    va_end(args);
    if (n < 0) return 0;
    return SendFrame(body);
}

void ResetFrameCodec() {
    receiveBuffer[0] = '\0';
    lastFrame[0] = '\0';
    retransmitCount = 0;
}

// Reads up to two hexadecimal digits; stops at the first non-digit.
static unsigned ReadHex(const char* text) {
    unsigned value = 0;
    for (int i = 0; i < 2 && text[i]; i++) {
        char c = text[i];
        unsigned digit;
        if (c >= '0' && c <= '9') digit = (unsigned)(c - '0');
        else if (c >= 'A' && c <= 'F') digit = (unsigned)(c - 'A' + 10);
        else if (c >= 'a' && c <= 'f') digit = (unsigned)(c - 'a' + 10);
        else break;
        value = value * 16 + digit;
    }
    return value;
}

static int LineIsGood(char* line) {
    int n = (int)strlen(line);
    if (n < 3 || line[0] != '#' || line[n - 3] != ':') return 0;
    line[n - 3] = '\0';
    unsigned check = ReadHex(line + n - 2);
    const char* body = line + 1;
    return Crc8(body, (int)strlen(body)) == (uint8_t)(check & 0xFF);
}

int ReceiveBytes(char* data, int length, int (*handleBody)(const char* body)) {
    if (data == nullptr || length < 0) return 1;
    data[length] = '\0';
    size_t pieceLength = strlen(data);
    size_t held = strlen(receiveBuffer);
    if (held + (size_t)length > ReceiveBufferSize - 1) {
        LogStatus("<< Port Overflow >>");
        receiveBuffer[0] = '\0';
        held = 0;
    }
    size_t room = ReceiveBufferSize - 1 - held;
    if (pieceLength > room) pieceLength = room;
    memcpy(receiveBuffer + held, data, pieceLength);
    receiveBuffer[held + pieceLength] = '\0';

    char line[ReceiveBufferSize];
    for (;;) {
        memcpy(line, receiveBuffer, sizeof line);
        char* cr = strchr(line, '\r');
        if (cr == nullptr) return 1;
        *cr = '\0';
        // Keep what follows the carriage return for the next round.
        size_t rest = strlen(cr + 1);
        memmove(receiveBuffer, receiveBuffer + (cr + 1 - line), rest + 1);
        if (LineIsGood(line)) {
            handleBody(line + 1);
        } else {
            SendFrameText("NA");
            LogStatus("Received invalid data from controller");
        }
    }
}
