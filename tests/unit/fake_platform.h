// A fake of the platform seam for the unit tests: it records every call and
// answers questions and file choosers from a script.
#ifndef VELDOR_TESTS_FAKE_PLATFORM_H
#define VELDOR_TESTS_FAKE_PLATFORM_H

#include <stdint.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "base/platform.h"
#include "survey/survey_state.h"

struct RepaintRequest {
    int window;
    int area;
    int erase;
};

struct FakePlatform {
    bool portOpen = false;
    std::string wire;                 // every byte written, in order
    std::vector<std::string> writes;  // one entry per write call
    int portFd = -1;                  // when set, writes also go to this descriptor
    std::vector<std::string> statusLines;  // pane 0, in order
    // Questions: answers are taken from the front; an unscripted question
    // is answered No.
    std::deque<int> answers;
    std::vector<std::string> questions;
    std::vector<std::string> messageBoxes;
    std::vector<int> messageIcons;
    bool windowExists[8] = {false, false, false, false, false, false, false, false};
    std::vector<RepaintRequest> repaints;
    std::vector<int> scrollPositions;  // vertical scroll of the Listing
    std::vector<int> notifications;    // windows notified
    std::string caption = "VELDOR";
    std::vector<int> frameCommands;
    uint32_t now = 1700000000u;  // the clock, seconds since 1970
    int busy = 0;                // the busy count last reported
    // File chooser: each call takes the next path; "" means cancel.
    std::deque<std::string> chosenFiles;
    std::vector<int> chooseModes;
    // Settings file (a temporary file used through the portable stand-in)
    std::string settingsFile;
};

extern FakePlatform fake;

// Resets the fake and the whole survey, link and engine state, and points
// settingsPath at a fresh, absent file in a temporary folder.
void ResetFakeWorld();

// The frames written to the port, each without '#', check and carriage
// return; bytes that are no frame are returned as they are.
std::vector<std::string> FramesSent();
// How many times the status line was exactly text.
int CountStatus(const char* text);
// Feeds text to the receiver as one piece.
void Receive(std::string text);
// Builds a frame with a good check around body.
std::string Frame(const std::string& body);

// Every channel on the default curve (0, 0.0) to (255, 100.0), its lookup built.
void UseDefaultCurves();

// A file name in the temporary folder, unique to this process.
std::string TempTestPath(const std::string& name);

// The bit pattern of a float, for exact comparisons.
uint32_t FloatBits(float value);

// The whole of a file, or "<missing>" when it cannot be opened.
std::string ReadFileBytes(const std::string& path, const char* mode = "rb");
// Makes a file of exactly these bytes; 0 when it cannot be made.
int WriteFileBytes(const std::string& path, const std::string& bytes);
// A calibration file: magic, count and (power, value) points with spare bytes of 0.
std::string CalFileBytes(int32_t count, const std::vector<std::pair<int, float>>& points);
// A key of the settings file as stored, "<absent>" when it is not there.
std::string StoredSetting(const char* section, const char* key);

// A path below tests/data, where the hand-made test files are kept.
#ifdef VELDOR_TEST_DATA_DIR
inline std::string TestDataPath(const std::string& relative) {
    return VELDOR_TEST_DATA_DIR "/" + relative;
}
#endif

#endif
