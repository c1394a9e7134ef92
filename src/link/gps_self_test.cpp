#include <stdio.h>
#include <string.h>

#include "link/gps_commands.h"
#include "base/platform.h"
#include "base/status_log.h"

namespace {

struct FaultLine {
    unsigned mask;
    const char* text;
};

// In bit order; a line is listed once when any bit of its mask is set.
const FaultLine Kind6Lines[] = {
    {0x0001, "Channel 1 correlation test\n"}, {0x0002, "Channel 2 correlation test\n"},
    {0x0004, "Channel 3 correlation test\n"}, {0x0008, "Channel 4 correlation test\n"},
    {0x0010, "Channel 5 correlation test\n"}, {0x0020, "Channel 6 correlation test\n"},
    {0x0040, "1 KHz presence\n"},             {0x0180, "Read only memory (ROM)\n"},
    {0x0600, "Random access memory (RAM)\n"}, {0x0800, "EEPROM\n"},
    {0x1000, "DCXO SPI Comm\n"},              {0x2000, "Real time clock communications or time\n"},
};

const FaultLine Kind8Lines[] = {
    {0x0001, "Channel 1 correlation test\n"}, {0x0002, "Channel 2 correlation test\n"},
    {0x0004, "Channel 3 correlation test\n"}, {0x0008, "Channel 4 correlation test\n"},
    {0x0010, "Channel 5 correlation test\n"}, {0x0020, "Channel 6 correlation test\n"},
    {0x0040, "Channel 7 correlation test\n"}, {0x0080, "Channel 8 correlation test\n"},
    {0x0100, "1 KHz presence\n"},             {0x0200, "Read only memory (ROM)\n"},
    {0x0400, "Random access memory (RAM)\n"}, {0x1000, "Temprature sensor\n"},
    {0x2000, "Real time clock communications or time\n"},
};

void Append(char* buffer, size_t size, const char* text) {
    size_t used = strlen(buffer);
    if (used + 1 >= size) return;
    snprintf(buffer + used, size - used, "%s", text);
}

}  // namespace

void ReportSelfTest(const char* text) {
    int kind = 0, code = 0;
    if (text == nullptr || sscanf(text, "%d %d", &kind, &code) < 1) return;
    int dialogOpen = PlatformWindowExists(WINDOW_GPS);
    if (kind == 0) {
        LogStatus("GPS self test failed (No GPS comms)");
        if (dialogOpen)
            PlatformMessageBox("GPS self test failed\nNo communications with GPS", ICON_INFORMATION);
        return;
    }
    if (kind != 6 && kind != 8) return;
    if (code == 0) {
        LogStatus("GPS self test passed");
        if (dialogOpen) PlatformMessageBox("GPS self test passed", ICON_INFORMATION);
        return;
    }
    LogStatus("GPS self test failed (Code 0x%04X)", (unsigned)code);
    if (!dialogOpen) return;
    char report[1024] = "GPS self test failure(s):\n\n";
    unsigned bits = (unsigned)code;
    const FaultLine* lines = kind == 6 ? Kind6Lines : Kind8Lines;
    size_t count = kind == 6 ? sizeof Kind6Lines / sizeof Kind6Lines[0]
                             : sizeof Kind8Lines / sizeof Kind8Lines[0];
    for (size_t i = 0; i < count; i++) {
        if (bits & lines[i].mask) Append(report, sizeof report, lines[i].text);
    }
    if (kind == 8) {
        if (bits & 0x8000) Append(report, sizeof report, "Antenna short\n");
        else if (bits & 0x4000) Append(report, sizeof report, "Antenna open circuit\n");
    }
    PlatformMessageBox(report, ICON_INFORMATION);
}
