#include "fake_platform.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include <algorithm>
#include <atomic>

#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "base/app_paths.h"
#include "base/busy.h"
#include "base/local_time.h"
#include "base/platform.h"
#include "views/plot_geometry.h"
#include "survey/cal_lookup.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

#ifdef _WIN32
#include <process.h>
#define getpid _getpid
#else
#include <unistd.h>
#endif

FakePlatform fake;

static std::string TempFolder() {
    const char* dir = getenv("TMPDIR");
#ifdef _WIN32
    if (dir == nullptr) dir = getenv("TEMP");
#endif
    if (dir == nullptr) dir = "/tmp";
    return dir;
}

void ResetFakeWorld() {
    static std::atomic<int> serial{0};
    fake = FakePlatform();
    ResetBusy();
    ResetSurveyState();
    ResetRecordingEngine();
    ResetCalibration();
    ResetPlotView();
    ResetFrameCodec();
    keepAliveTicks = 5;
    ResetLinkTimers();
    char name[260];
    snprintf(name, sizeof name, "%s/veldor-test-%d-%d.ini", TempFolder().c_str(), (int)getpid(),
             serial++);
    remove(name);
    fake.settingsFile = name;
    snprintf(settingsPath, sizeof settingsPath, "%s", name);
    snprintf(appDirectory, sizeof appDirectory, "%s", TempFolder().c_str());
}

std::string TempTestPath(const std::string& name) {
    char path[512];
    snprintf(path, sizeof path, "%s/veldor-%d-%s", TempFolder().c_str(), (int)getpid(),
             name.c_str());
    return path;
}

uint32_t FloatBits(float value) {
    uint32_t bits;
    memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::string ReadFileBytes(const std::string& path, const char* mode) {
    FILE* f = fopen(path.c_str(), mode);
    if (f == nullptr) return "<missing>";
    std::string bytes;
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
    fclose(f);
    return bytes;
}

int WriteFileBytes(const std::string& path, const std::string& bytes) {
    FILE* f = fopen(path.c_str(), "wb");
    if (f == nullptr) return 0;
    size_t written = fwrite(bytes.data(), 1, bytes.size(), f);
    return fclose(f) == 0 && written == bytes.size() ? 1 : 0;
}

std::string CalFileBytes(int32_t count, const std::vector<std::pair<int, float>>& points) {
    std::string bytes("[VELDOR - cal file v1.0]\0", 25);
    for (int k = 0; k < 4; k++) bytes.push_back((char)((uint32_t)count >> (8 * k)));
    for (const auto& p : points) {
        bytes.push_back((char)p.first);
        bytes.append(3, '\0');
        uint32_t b = FloatBits(p.second);
        for (int k = 0; k < 4; k++) bytes.push_back((char)(b >> (8 * k)));
    }
    return bytes;
}

std::string StoredSetting(const char* section, const char* key) {
    char text[300];
    ProfileGetString(section, key, "<absent>", text, sizeof text, settingsPath);
    return text;
}

std::vector<std::string> FramesSent() {
    std::vector<std::string> frames;
    size_t pos = 0;
    const std::string& w = fake.wire;
    while (pos < w.size()) {
        size_t cr = w.find('\r', pos);
        if (cr == std::string::npos) cr = w.size();
        std::string line = w.substr(pos, cr - pos);
        if (line.size() >= 4 && line[0] == '#' && line[line.size() - 3] == ':')
            line = line.substr(1, line.size() - 4);
        frames.push_back(line);
        pos = cr + 1;
    }
    return frames;
}

int CountStatus(const char* text) {
    return (int)std::count(fake.statusLines.begin(), fake.statusLines.end(), text);
}

void Receive(std::string text) {
    ReceiveBytes(&text[0], (int)text.size());
}

std::string Frame(const std::string& body) {
    char check[8];
    snprintf(check, sizeof check, "%02X", Crc8(body.c_str(), (int)body.size()));
    return "#" + body + ":" + check + "\r";
}

// ---- The seam ---------------------------------------------------------------------

int PlatformPortIsOpen() { return fake.portOpen ? 1 : 0; }

int PlatformPortWrite(const char* data, int length) {
    if (!fake.portOpen || data == nullptr || length < 0) return 0;
    fake.wire.append(data, (size_t)length);
    fake.writes.emplace_back(data, (size_t)length);
#ifndef _WIN32
    int done = 0;
    while (fake.portFd >= 0 && done < length) {
        ssize_t n = write(fake.portFd, data + done, (size_t)(length - done));
        if (n <= 0) return 0;
        done += (int)n;
    }
#endif
    return 1;
}

void PlatformSetStatusPane(int pane, const char* text) {
    if (pane == 0) fake.statusLines.push_back(text);
}

int PlatformAskYesNo(const char* text) {
    fake.questions.push_back(text);
    if (fake.answers.empty()) return 0;
    int answer = fake.answers.front();
    fake.answers.pop_front();
    return answer;
}

void PlatformMessageBox(const char* text, int icon) {
    fake.messageBoxes.push_back(text);
    fake.messageIcons.push_back(icon);
}

int PlatformWindowExists(int window) {
    return window >= 0 && window < 8 && fake.windowExists[window] ? 1 : 0;
}

void PlatformRepaint(int window, int area, int erase) {
    if (!PlatformWindowExists(window)) return;
    fake.repaints.push_back({window, area, erase});
}

void PlatformSetVerticalScroll(int window, int position) {
    if (!PlatformWindowExists(window)) return;
    if (window == WINDOW_LISTING) fake.scrollPositions.push_back(position);
}

// No window of the fake has a size.
int PlatformClientSize(int window, int* width, int* height) {
    *width = *height = 0;
    return PlatformWindowExists(window);
}

void PlatformNotifyWindow(int window, int) {
    if (PlatformWindowExists(window)) fake.notifications.push_back(window);
}

void PlatformSetFrameCaption(const char* text) { fake.caption = text; }

void PlatformFrameCommand(int commandId) { fake.frameCommands.push_back(commandId); }

uint32_t PlatformTime() { return fake.now; }

int PlatformLocalTime(uint32_t seconds, LocalTime* out) {
    if (out == nullptr) return 0;
    struct tm parts;
#ifdef _WIN32
    // The program's 32-bit time functions, which refuse times past 0x7FFFFFFF.
    __time32_t t = (__time32_t)seconds;
    if (_gmtime32_s(&parts, &t) != 0) return 0;
#else
    if (seconds > (uint32_t)INT32_MAX) return 0;  // as the 32-bit time functions
    time_t t = (time_t)seconds;
    if (gmtime_r(&t, &parts) == nullptr) return 0;
#endif
    return LocalTimeFromTm(&parts, out);
}

void PlatformBusyChanged(int busyCount) { fake.busy = busyCount; }

int ChooseFile(char* path, int size, int mode) {
    fake.chooseModes.push_back(mode);
    std::string chosen;
    if (!fake.chosenFiles.empty()) {
        chosen = fake.chosenFiles.front();
        fake.chosenFiles.pop_front();
    }
    if (chosen.empty() || (int)chosen.size() >= size) {
        if (size > 0) path[0] = '\0';
        return 0;
    }
    memcpy(path, chosen.c_str(), chosen.size() + 1);
    return 1;
}

void UseDefaultCurves() {
    for (int c = 0; c < CalChannels; c++) {
        SetDefaultCalTable(c);
        BuildChannelLookup(c);
    }
}
