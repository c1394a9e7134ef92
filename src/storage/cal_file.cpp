#include "storage/cal_file.h"

#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include "base/busy.h"
#include "base/app_paths.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

static uint32_t GetLittle32(const unsigned char* bytes) {
    return (uint32_t)bytes[0] | ((uint32_t)bytes[1] << 8) | ((uint32_t)bytes[2] << 16) |
           ((uint32_t)bytes[3] << 24);
}

static void PutLittle32(unsigned char* bytes, uint32_t value) {
    bytes[0] = (unsigned char)(value & 0xFF);
    bytes[1] = (unsigned char)((value >> 8) & 0xFF);
    bytes[2] = (unsigned char)((value >> 16) & 0xFF);
    bytes[3] = (unsigned char)((value >> 24) & 0xFF);
}

int ReadCalFile(const char* path, int channel) {
    if (path == nullptr || channel < 0 || channel >= CalChannels) return 0;
    char message[1024];

    // 1. Open.
    FILE* file = fopen(path, "rb");
    if (file == nullptr) {
        snprintf(message, sizeof message, "Error opening calibration file\n'%s'", path);
        PlatformMessageBox(message, ICON_EXCLAMATION);
        return 0;
    }

    // 2.
    BeginBusy();
    LogStatus("Reading calibration file '%s'", DisplayFileName(path));

    // 3. The magic, compared as a NUL-terminated string; a file too short to
    // hold it fails the same way. The table is untouched so far.
    char magic[CalFileMagicSize + 1];
    memset(magic, 0, sizeof magic);
    size_t got = fread(magic, 1, CalFileMagicSize, file);
    if (got != (size_t)CalFileMagicSize || strcmp(magic, CalFileMagic) != 0) {
        snprintf(message, sizeof message, "Calibration file '%s'\nIncorrect format", path);
        PlatformMessageBox(message, ICON_EXCLAMATION);
        fclose(file);
        EndBusy();
        return 0;
    }

    // 4. N and the points. A missing N reads as 0; storing stops at the
    // table's capacity and at the end of the file, so a short file never
    // yields a point it does not hold whole.
    CalTableData& table = CalTable[channel];
    unsigned char bytes[CalFilePointSize];
    int32_t declared = 0;
    if (fread(bytes, 1, 4, file) == 4) declared = (int32_t)GetLittle32(bytes);
    table.count = 0;
    while (table.count < declared && table.count < CalMaxPoints) {
        if (fread(bytes, 1, CalFilePointSize, file) != (size_t)CalFilePointSize) break;
        CalPoint& point = table.points[table.count];
        point.power = bytes[0];
        point.spare[0] = bytes[1];
        point.spare[1] = bytes[2];
        point.spare[2] = bytes[3];
        uint32_t bits = GetLittle32(bytes + 4);
        memcpy(&point.value, &bits, sizeof point.value);
        table.count++;
    }

    // 5.
    fclose(file);
    LogStatus("Read calibration file '%s'", DisplayFileName(path));
    EndBusy();
    return 1;
}

int WriteCalFile(const char* path, int channel) {
    if (path == nullptr || channel < 0 || channel >= CalChannels) return 0;

    // 1. Open, truncating.
    FILE* file = fopen(path, "wb");
    if (file == nullptr) {
        char message[1024];
        snprintf(message, sizeof message, "Error opening file\n'%s'", path);
        PlatformMessageBox(message, ICON_EXCLAMATION);
        return 0;
    }

    // 2.
    BeginBusy();
    LogStatus("Writing calibration file '%s'", DisplayFileName(path));

    // 3. Magic, count, points, field by field.
    const CalTableData& table = CalTable[channel];
    int32_t count = table.count;
    if (count < 0) count = 0;
    if (count > CalMaxPoints) count = CalMaxPoints;
    fwrite(CalFileMagic, 1, CalFileMagicSize, file);
    unsigned char bytes[CalFilePointSize];
    PutLittle32(bytes, (uint32_t)count);
    fwrite(bytes, 1, 4, file);
    for (int n = 0; n < count; n++) {
        const CalPoint& point = table.points[n];
        bytes[0] = point.power;
        bytes[1] = point.spare[0];
        bytes[2] = point.spare[1];
        bytes[3] = point.spare[2];
        uint32_t bits;
        memcpy(&bits, &point.value, sizeof bits);
        PutLittle32(bytes + 4, bits);
        fwrite(bytes, 1, CalFilePointSize, file);
    }

    // 4.
    fclose(file);
    LogStatus("Written calibration file '%s'", DisplayFileName(path));
    EndBusy();
    return 1;
}

void CopyCalibrationToText(int channel) {
    if (channel < 0 || channel >= CalChannels) return;
    static const char* const menuLines[CalChannels] = {
        "Calibration text file (Ch1)", "Calibration text file (Ch2)", "Calibration text file(Ch3)",
        "Calibration text file (Ch4)"};
    LogStatus("%s", menuLines[channel]);

    // 1. A name, starting from none.
    char path[PathSize];
    path[0] = '\0';
    if (!ChooseFile(path, sizeof path, CHOOSE_SAVE_TEXT) || path[0] == '\0') {
        LogStatus("No file name selected");
        return;
    }

    // 2., 3.
    BeginBusy();
    FILE* file = fopen(path, "wt");
    if (file == nullptr) {
        LogStatus("Error opening file");
        EndBusy();
        return;
    }

    // 4. Times are the text of _ctime32_s (FormatDateText), which
    // ends in a line feed of its own. One buffer serves the times and the
    // file name, as the lines leave it: the "Lookup table created" line shows
    // what the last of them put there (the "Last edited" time, or the file
    // name when there is no such line).
    char buffer[261];
    static_assert(sizeof buffer >= DateTextSize, "a date text fits the buffer");
    fprintf(file, "%s calibration data for channel %d\n", "VELDOR", channel + 1);
    FormatDateText(PlatformTime(), buffer);
    fprintf(file, "Created %s\n", buffer);
    ReadSetting(KeyCalibrationFile[channel], buffer, sizeof buffer);
    fprintf(file, "Calibration file %s\n", buffer);
    struct stat status;
    if (buffer[0] != '\0' && stat(buffer, &status) == 0) {
        FormatDateText((uint32_t)status.st_mtime, buffer);
        fprintf(file, "Last edited %s\n", buffer);
    }
    fprintf(file, "Power\tValue\n");
    const CalTableData& table = CalTable[channel];
    int count = table.count;
    if (count > CalMaxPoints) count = CalMaxPoints;
    for (int n = 0; n < count; n++)
        fprintf(file, "%03d\t%.3f\n", table.points[n].power, (double)table.points[n].value);
    fprintf(file, "\nLookup table created: %s\n\n", buffer);
    fprintf(file, "Index\tValue\n");
    for (int i = 0; i < CalLookupSize; i++)
        fprintf(file, "%03d\t%.3f\n", i, (double)ChannelLookup[channel][i]);

    // 5.
    fclose(file);
    EndBusy();
}

void LoadStartupCalibration() {
    for (int channel = 0; channel < CalChannels; channel++) {
        char name[261];
        ReadSetting(KeyCalibrationFile[channel], name, sizeof name);
        if (name[0] == '\0') {
            int n = snprintf(name, sizeof name, "%s\\Default.cal", appDirectory);
            if (n < 0) name[0] = '\0';
        }
        if (!ReadCalFile(name, channel)) SetDefaultCalTable(channel);
        BuildChannelLookup(channel);
    }
}
