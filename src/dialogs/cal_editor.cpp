#include "dialogs/cal_editor.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/app_paths.h"
#include "base/platform.h"
#include "link/frame_codec.h"
#include "storage/cal_file.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

namespace {

const char* const QuestionText =
    "Current data for channel %d\nhas been changed\n\nDo you want to save it?";

int ValidChannel(int channel) { return channel >= 0 && channel < CalChannels; }

// Inserts a line after every line that sorts before or equal to it; returns
// its index, -1 when the list is full.
int InsertLine(CalEditorState* s, const char* text) {
    if (s->count >= CalMaxPoints) return -1;
    int at = s->count;
    while (at > 0 && strcmp(s->lines[at - 1], text) > 0) at--;
    memmove(s->lines[at + 1], s->lines[at], (size_t)(s->count - at) * CalEditorLineSize);
    snprintf(s->lines[at], CalEditorLineSize, "%s", text);
    s->count++;
    return at;
}

void RemoveLine(CalEditorState* s, int index) {
    memmove(s->lines[index], s->lines[index + 1],
            (size_t)(s->count - index - 1) * CalEditorLineSize);
    s->count--;
}

int FindLine(const CalEditorState* s, const char* prefix) {
    size_t length = strlen(prefix);
    for (int i = 0; i < s->count; i++)
        if (strncmp(s->lines[i], prefix, length) == 0) return i;
    return -1;
}

void FileKey(int channel, char* out, int size) {
    ReadSettingWithDefault(KeyCalibrationFile[channel], "", out, size);
}

// "Add" and "Change": the checks, then the new line.
int EnterPoint(CalEditorState* s, const CalEditorFields* fields, int change) {
    int power = atoi(fields->power);
    if (power < 0 || power > 255) {
        PlatformMessageBox("Invalid power\n(Range 0 - 255)", ICON_STOP);
        return 0;
    }
    float value = (float)atof(fields->value);
    char old[CalEditorLineSize] = "";
    if (change) {
        if (s->selected < 0 || s->selected >= s->count) {
            PlatformMessageBox("No entry highlighted to change", ICON_EXCLAMATION);
            return 0;
        }
        snprintf(old, sizeof old, "%s", s->lines[s->selected]);
        RemoveLine(s, s->selected);
        s->selected = -1;
    }
    char prefix[8];
    snprintf(prefix, sizeof prefix, "%03d", power);
    if (FindLine(s, prefix) >= 0) {
        if (change) InsertLine(s, old);
        s->selected = FindLine(s, prefix);
        char text[96];
        snprintf(text, sizeof text, "An entry already exist for a power of %03d", power);
        PlatformMessageBox(text, ICON_EXCLAMATION);
        return 0;
    }
    char line[CalEditorLineSize];
    snprintf(line, sizeof line, "%03d\t%.3f", power, (double)value);
    s->selected = InsertLine(s, line);
    CalEditorRedraw();
    s->calEditorDirty = 1;
    return 1;
}

}  // namespace

int CalEditorOpen(CalEditorState* s) {
    SendFrameText("CA 1");
    s->calEditorDirty = 0;
    s->calEditorChannel = 0;
    s->count = 0;
    s->selected = -1;
    return CAL_REQUEST_REFILL | CAL_REQUEST_CAPTION;
}

void CalEditorRefill(CalEditorState* s) {
    s->count = 0;
    s->selected = -1;
    const CalTableData& table = CalTable[s->calEditorChannel];
    int count = table.count < CalMaxPoints ? table.count : CalMaxPoints;
    for (int i = 0; i < count; i++) {
        char line[CalEditorLineSize];
        snprintf(line, sizeof line, "%03d\t%.3f", table.points[i].power,
                 (double)table.points[i].value);
        InsertLine(s, line);
    }
}

void CalEditorCaption(int channel, char* out, int size) {
    char name[PathSize + 16];
    FileKey(channel, name, sizeof name);
    if (name[0] == '\0') snprintf(name, sizeof name, "%s\\Default.cal", appDirectory);
    snprintf(out, (size_t)size, "%s - Calibration [ %s ]", "VELDOR", DisplayFileName(name));
}

void CalEditorShowCaption(const CalEditorState* s) {
    char caption[PathSize + 80];
    CalEditorCaption(s->calEditorChannel, caption, sizeof caption);
    PlatformSetWindowCaption(WINDOW_CALIBRATION, caption);
}

int CalEditorSaveList(CalEditorState* s, int channel) {
    if (!ValidChannel(channel)) return 0;
    CalTableData& table = CalTable[channel];
    table.count = 0;
    for (int i = 0; i < s->count && i < CalMaxPoints; i++) {
        CalPoint& point = table.points[table.count++];
        memset(&point, 0, sizeof point);
        point.power = (uint8_t)atoi(s->lines[i]);
        const char* tab = strchr(s->lines[i], '\t');
        point.value = (float)atof(tab != nullptr ? tab + 1 : "");
    }
    char name[PathSize];
    char fallback[32];
    snprintf(fallback, sizeof fallback, "Chan_%d.cal", channel + 1);
    ReadSettingWithDefault(KeyCalibrationFile[channel], fallback, name, sizeof name);
    if (name[0] == '\0') snprintf(name, sizeof name, "%s", fallback);
    int written = WriteCalFile(name, channel);
    BuildChannelLookup(channel);
    return written;
}

int CalEditorAdd(CalEditorState* s, const CalEditorFields* fields) {
    if (s->count >= CalEditorMaxEntries) {
        PlatformMessageBox("Maximum number of entires (255)\nhas been reached", ICON_STOP);
        return 0;
    }
    return EnterPoint(s, fields, 0);
}

int CalEditorChange(CalEditorState* s, const CalEditorFields* fields) {
    return EnterPoint(s, fields, 1);
}

int CalEditorDelete(CalEditorState* s) {
    if (s->selected < 0 || s->selected >= s->count) {
        PlatformMessageBox("No entry highlighted to delete", ICON_EXCLAMATION);
        return 0;
    }
    RemoveLine(s, s->selected);
    s->selected = -1;
    CalEditorRedraw();
    s->calEditorDirty = 1;
    return 1;
}

void CalEditorPickLine(CalEditorState* s, int index, CalEditorFields* fields) {
    if (index < 0 || index >= s->count) return;
    s->selected = index;
    const char* line = s->lines[index];
    snprintf(fields->power, sizeof fields->power, "%.3s", line);
    snprintf(fields->value, sizeof fields->value, "%s", strlen(line) > 4 ? line + 4 : "");
}

void CalEditorInsertPower(const CalEditorState* s, CalEditorFields* fields) {
    snprintf(fields->power, sizeof fields->power, "%03d",
             liveState.liveReadings[s->calEditorChannel]);
}

void CalEditorAskToSave(CalEditorState* s, int clear) {
    if (s->calEditorDirty) {
        char text[160];
        snprintf(text, sizeof text, QuestionText, s->calEditorChannel + 1);
        if (PlatformAskYesNo(text)) CalEditorSaveAs(s);
    }
    if (clear) s->calEditorDirty = 0;
}

int CalEditorChooseChannel(CalEditorState* s, int channel) {
    if (!ValidChannel(channel)) return 0;
    CalEditorAskToSave(s, 1);
    s->calEditorChannel = channel;
    return CAL_REQUEST_REFILL | CAL_REQUEST_CAPTION;
}

int CalEditorSave(CalEditorState* s) {
    int written = CalEditorSaveList(s, s->calEditorChannel);
    s->calEditorDirty = 0;
    return written;
}

int CalEditorSaveAs(CalEditorState* s) {
    if (s->count == 0) {
        PlatformMessageBox("No data to save", ICON_STOP);
        return 0;
    }
    char path[PathSize];
    FileKey(s->calEditorChannel, path, sizeof path);
    if (!ChooseFile(path, sizeof path, CHOOSE_SAVE_CALIBRATION) || path[0] == '\0') return 0;
    WriteSetting(KeyCalibrationFile[s->calEditorChannel], path);
    CalEditorShowCaption(s);
    CalEditorSaveList(s, s->calEditorChannel);
    s->calEditorDirty = 0;
    return 1;
}

int CalEditorOpenFile(CalEditorState* s, const char* path) {
    if (path == nullptr || path[0] == '\0') {
        PlatformMessageBox("Invalid filename, data not saved", ICON_STOP);
        return 0;
    }
    WriteSetting(KeyCalibrationFile[s->calEditorChannel], path);
    ReadCalFile(path, s->calEditorChannel);
    return CAL_REQUEST_REFILL | CAL_REQUEST_CAPTION;
}

int CalEditorNewFile(CalEditorState* s, const char* path) {
    if (path == nullptr || path[0] == '\0') {
        PlatformMessageBox("Invalid filename, data not saved", ICON_STOP);
        return 0;
    }
    WriteSetting(KeyCalibrationFile[s->calEditorChannel], path);
    CalTable[s->calEditorChannel].count = 0;
    return CAL_REQUEST_REFILL | CAL_REQUEST_CAPTION | CAL_REQUEST_SAVE_LIST;
}

void CalEditorClose(CalEditorState* s) {
    CalEditorAskToSave(s, 0);
    for (int c = 0; c < CalChannels; c++) BuildChannelLookup(c);
    SendFrameText("OP 1");
}

void CalEditorRedraw() { PlatformRepaint(WINDOW_CALIBRATION, AREA_LIVE_READING, 0); }

int PaintCalGraph(const CalEditorState* s, ViewRect client, int raw, DrawList* list) {
    int left = client.left;
    int right = client.left + (client.right - client.left) / 2;
    int top = client.top + (client.bottom - client.top) / 4;
    int bottom = client.bottom;
    left += 10, top += 10, right -= 10, bottom -= 10;
    AddSunkenFrame(list, ViewRect{left, top, right, bottom}, 2);
    AddBox(list, ViewRect{left - 1, top - 1, right + 1, bottom + 1}, ColourWhite);
    right -= 1, bottom -= 1;
    int x = left + (int)(((float)raw / 255.0f) * (float)(right - left));
    AddLine(list, x, bottom, x, top, Rgb(192, 0, 0), PEN_DOTTED);
    if (s->count < 2) return 1;
    float power[CalMaxPoints], value[CalMaxPoints];
    float greatest = 0.0f, least = 0.0f;
    for (int i = 0; i < s->count; i++) {
        if (sscanf(s->lines[i], "%f\t%f", &power[i], &value[i]) != 2) {
            PlatformMessageBox("Error reading values from list box", ICON_EXCLAMATION);
            return 0;
        }
        if (i == 0 || value[i] > greatest) greatest = value[i];
        if (i == 0 || value[i] < least) least = value[i];
    }
    if (greatest == least) return 1;
    const uint32_t curve = Rgb(0, 0, 128);
    int fromX = left, fromY = bottom;
    for (int i = 0; i < s->count; i++) {
        int toX = left + (int)((float)(right - left) * (power[i] / 255.0f));
        int toY = top + (int)(((greatest - value[i]) / (greatest - least)) * (float)(bottom - top));
        AddLine(list, fromX, fromY, toX, toY, curve, PEN_SOLID);
        fromX = toX, fromY = toY;
    }
    AddLine(list, fromX, fromY, right, top, curve, PEN_SOLID);
    return 1;
}
