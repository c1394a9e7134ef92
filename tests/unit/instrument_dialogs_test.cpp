#include "dialogs/instrument_dialogs.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

namespace {

using Frames = std::vector<std::string>;

struct InstrumentDialogs : ::testing::Test {
    void SetUp() override {
        ResetFakeWorld();
        fake.portOpen = true;
    }
};

TEST_F(InstrumentDialogs, PortNamesAndBusyPortsAreListed) {
    struct { int n, opened; unsigned long error; const char* name; int listed; } cases[] = {
        {1, 1, 0, "COM1", 1},         {9, 0, 5, "COM9", 1},
        {10, 0, 31, "\\\\.\\COM10", 1}, {30, 0, 32, "\\\\.\\COM30", 1},
        {2, 0, 121, "COM2", 1},       {3, 0, 2, "COM3", 0},
        {4, 0, 87, "COM4", 0},
    };
    for (auto& c : cases) {
        char name[PortNameSize];
        PortDeviceName(c.n, name, sizeof name);
        EXPECT_STREQ(c.name, name);
        EXPECT_EQ(c.listed, PortListed(c.opened, c.error)) << c.n << " " << c.error;
    }
}

TEST_F(InstrumentDialogs, TzrSpinsStopAtTheirBounds) {
    struct { const char *initial, *count, *input; int field, delta; const char* shown; } cases[] = {
        {"05", "10", "1", TZR_INITIAL, +1, "06"},
        {"07", "07", "1", TZR_INITIAL, +1, "07"},  // the number of channels shown
        {"99", "99", "1", TZR_INITIAL, +1, "99"},
        {"01", "10", "1", TZR_INITIAL, -1, "01"},
        {"05", "99", "1", TZR_COUNT, +1, "99"},
        {"05", "06", "1", TZR_COUNT, -1, "05"},
        {"05", "05", "1", TZR_COUNT, -1, "05"},    // not below the initial channel
        {"00", "01", "1", TZR_COUNT, -1, "01"},
        {"01", "10", "4", TZR_INPUT, +1, "4"},
        {"01", "10", "2", TZR_INPUT, -1, "1"},
        {"01", "10", "1", TZR_INPUT, -1, "1"},
    };
    for (auto& c : cases) {
        TzrValues v = {};
        strcpy(v.initialChannel, c.initial), strcpy(v.channelCount, c.count);
        strcpy(v.inputChannel, c.input);
        TzrSpin(&v, c.field, c.delta);
        const char* got[] = {v.initialChannel, v.channelCount, v.inputChannel};
        EXPECT_STREQ(c.shown, got[c.field]) << c.initial << " " << c.count << " " << c.delta;
    }
}

TEST_F(InstrumentDialogs, TzrOkClampsStoresAndSwitches) {
    struct { int enable; uint32_t flags; const char *count, *input; int result;
             const char *storedCount, *storedInput; Frames frames; } cases[] = {
        {1, 0, "0", "0", 1, "1", "1", {"MS 1", "MN 1", "MC 3", "MI 1"}},
        {0, STATUS_TZR_MODE, "12", "2", 1, "12", "2", {"MS 0"}},
        {1, STATUS_DISTANCE_INTERVAL, "12", "2", 0, "<absent>", "<absent>", {}},
        {0, STATUS_DISTANCE_INTERVAL, "12", "2", 1, "12", "2", {"MS 0"}},
    };
    for (auto& c : cases) {
        SetUp();
        statusFlags = c.flags;
        TzrValues v = {c.enable, "3", "", 1, ""};
        strcpy(v.channelCount, c.count), strcpy(v.inputChannel, c.input);
        EXPECT_EQ(c.result, TzrBoxStore(&v)) << c.count;
        EXPECT_EQ(c.storedCount, StoredSetting("TZR4100", "Number of channels")) << c.count;
        EXPECT_EQ(c.storedInput, StoredSetting("TZR4100", "Input channel")) << c.count;
        EXPECT_EQ(c.frames, FramesSent()) << c.count;
        EXPECT_EQ(c.result ? 0u : 1u, fake.messageBoxes.size()) << c.count;
        if (!c.result) continue;
        EXPECT_EQ(c.enable ? STATUS_TZR_MODE : 0u, statusFlags & STATUS_TZR_MODE);
        EXPECT_EQ(c.storedCount, std::to_string(tzrChannelCount));
        EXPECT_EQ(c.storedInput, std::to_string(currentInputChannel + 1));
    }
}

TEST_F(InstrumentDialogs, Ar3000aBodyKeepsTypedTextsAndGpsDiffOffers4800) {
    Ar3000aValues ar;
    Ar3000aBoxOpen(&ar);
    ar.enable = 1, ar.attOn[2] = 1;
    strcpy(ar.freq[1], "145.5x"), strcpy(ar.mode[3], "USB"), strcpy(ar.baudRate, "9600");
    Ar3000aBoxStore(&ar);
    EXPECT_EQ((Frames{"AC T88.0W,T145.5xW,R90.0W,T91.0U,9600", "AS 1"}), FramesSent());

    GpsDiffValues gd;
    GpsDiffBoxOpen(&gd);
    EXPECT_STREQ("4800", gd.baudRate);
}

}  // namespace
