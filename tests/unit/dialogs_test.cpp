// The dialog boxes' portable halves: what each shows when it opens, what its
// spins do and what its OK checks, stores and sends.
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <vector>

#include "dialogs/cal_editor.h"
#include "dialogs/general_dialogs.h"
#include "dialogs/instrument_dialogs.h"
#include "dialogs/make_file_box.h"
#include "dialogs/tag_dialogs.h"
#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"
#include "views/display_format.h"
#include "views/plot_view.h"
#include "views/tags_view.h"

namespace {

using Texts = std::vector<std::string>;

struct Dialogs : ::testing::Test {
    void SetUp() override { ResetFakeWorld(); }
};

// The message shown and its icon, "" when there was none.
std::string Shown() {
    if (fake.messageBoxes.empty()) return "";
    return fake.messageBoxes[0] + " icon " + std::to_string(fake.messageIcons[0]);
}

std::string WithIcon(const char* message, int icon) {
    return message ? message + std::string(" icon ") + std::to_string(icon) : "";
}

TEST_F(Dialogs, DisplayBoxShowsUnknownModesAsTheFirstButtonAndStoresRawAsMinusOne) {
    const struct { int32_t latLong, sign, reading; std::vector<int> shown; const char* stored; } cases[] = {
        {2, 1, 1, {1, 0, 1}, "2 1 1"},
        {3, 2, 3, {2, 1, 2}, "3 2 3"},
        {0, 7, 2, {0, 0, 0}, "1 1 0"},  // no button of their own: Deg, North/South, "0"
        {5, -1, 9, {0, 0, 0}, "1 1 0"},
    };
    for (auto& c : cases) {
        ScreenFormat = {c.latLong, c.sign, c.reading};
        DisplayBoxValues v = {-5, -5, -5};
        DisplayBoxOpen(&v);
        EXPECT_EQ(c.shown, (std::vector<int>{v.latLong, v.sign, v.reading})) << c.stored;
        DisplayBoxStore(&v);
        EXPECT_EQ(c.stored, std::to_string(ReadSetting(KeyListingLatLong)) + " " + std::to_string(ReadSetting(KeyListingSign)) +
                                " " + std::to_string(ScreenFormat.readingMode));
        EXPECT_EQ(ReadSetting(KeyListingDecimalPlaces), ScreenFormat.readingMode);
    }
}

void FillColours(ColoursBoxValues* v, const char* b1, const char* b2, const char* b3, const char* dot) {
    strcpy(v->breaks[0], b1);
    strcpy(v->breaks[1], b2);
    strcpy(v->breaks[2], b3);
    strcpy(v->dotSize, dot);
}

TEST_F(Dialogs, ColoursBoxSpinsKeepTheBreaksFallingAndTheDotSizeInRange) {
    const struct { const char *b1, *b2, *b3, *dot; int control, delta; const char* after; } cases[] = {
        {"80", "40", "39", "5", 2, 1, "39.000"},   // 40 reaches the second: one below it
        {"61", "60", "40", "5", 0, -1, "61.000"},  // 60 reaches the second: one above it
        {"80", "60", "40", "5", 0, -1, "79.000"},
        {"80", "79.5", "40", "5", 1, 1, "79.000"},
        {"80", "60", "59.5", "5", 1, -1, "60.500"},
        {"80", "60", "40", "5", 2, -1, "39.000"},
        {"80", "60", "x", "5", 2, 1, "1.000"},
        {"80", "60", "40", "50", 3, 1, "50"},
        {"80", "60", "40", "60", 3, -1, "59"},
        {"80", "60", "40", "49", 3, 1, "50"},
        {"80", "60", "40", "2", 3, -1, "1"},
        {"80", "60", "40", "1", 3, -1, "1"},
    };
    for (auto& c : cases) {
        ColoursBoxValues v;
        FillColours(&v, c.b1, c.b2, c.b3, c.dot);
        ColoursBoxSpin(&v, c.control, c.delta);
        const char* moved = c.control == COLOURS_DOT_SIZE ? v.dotSize : v.breaks[c.control];
        EXPECT_STREQ(c.after, moved) << c.control << " " << c.delta;
    }
}

TEST_F(Dialogs, ColoursBoxOkTestsTheOrderBeforeTheDotSize) {
    const struct { const char *b1, *b2, *b3, *dot, *message; } cases[] = {
        {"3", "2", "1", "1", nullptr},
        {"80.5", "80.25", "-1", "50", nullptr},
        {"80", "80", "40", "5", "Error in number sequance"},
        {"40", "60", "80", "0", "Error in number sequance"},
        {"80", "60", "40", "0", "Invalid dot size\n(Range 1 - 50)"},
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        powerBreak[1] = 2;
        dotSize = 9;
        ColoursBoxValues v;
        FillColours(&v, c.b1, c.b2, c.b3, c.dot);
        EXPECT_EQ(c.message ? 0 : 1, ColoursBoxStore(&v)) << c.b1 << " " << c.dot;
        EXPECT_EQ(WithIcon(c.message, ICON_EXCLAMATION), Shown());
        // A refusal changes and writes nothing.
        EXPECT_FLOAT_EQ(c.message ? 2.0f : (float)atof(c.b2), powerBreak[1]);
        EXPECT_EQ(c.message ? 9 : atoi(c.dot), dotSize);
        EXPECT_EQ(c.message ? 5 : atoi(c.dot), ReadSettingNumber(KeyPlotDotSize));
        char text[32];
        ReadSetting(KeyPlotPowerBreak2, text, sizeof text);
        EXPECT_TRUE(c.message || strchr(text, '.')) << text;
        EXPECT_DOUBLE_EQ(c.message ? 60.0 : atof(c.b2), atof(text));
    }
}

TEST_F(Dialogs, RecSettingsTakesNumbersBelowOneAsOneAndRefusesDistanceInTzrMode) {
    const struct { uint32_t flags; int distance; const char* seconds; int result, storedSeconds; } cases[] = {
        {0, 1, "7", 1, 7},
        {0, 0, "-4", 1, 1},
        {0, 0, "abc", 1, 1},
        {STATUS_TZR_MODE, 1, "9", 0, 5},  // refused: nothing at all changes
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        statusFlags = c.flags;
        recordIntervalSeconds = 5;
        autosaveMinutes = 5;
        strcpy(channelLabels[2], "old");
        RecSettingsValues v = {};
        v.distance = c.distance;
        v.autosave = 1;
        v.averaging = 1;
        strcpy(v.seconds, c.seconds);
        strcpy(v.meters, "x");
        strcpy(v.minutes, "12");
        strcpy(v.labels[2], "new");
        EXPECT_EQ(c.result, RecSettingsStore(&v)) << c.seconds;
        EXPECT_STREQ(c.result ? "new" : "old", channelLabels[2]);
        const int distance = c.result && c.distance;
        EXPECT_EQ((std::vector<int>{c.storedSeconds, !c.result, c.result ? 12 : 5, c.result, distance,
                                    c.storedSeconds, c.result ? 1 : 500}),
                  (std::vector<int>{recordIntervalSeconds, (int)fake.messageBoxes.size(), autosaveMinutes,
                                    (statusFlags & STATUS_AVERAGING) != 0, (statusFlags & STATUS_DISTANCE_INTERVAL) != 0,
                                    ReadSetting(KeyRecordIntervalSeconds), ReadSetting(KeyRecordIntervalMeters)}))
            << c.seconds;
    }
}

// Tags on the given records, with texts "a", "b", ... in that order.
void Tags(std::initializer_list<int> records) {
    tagCount = 0;
    for (int r : records) {
        tagRecord[tagCount] = r;
        snprintf(tagText[tagCount], TagTextSize, "%c", 'a' + tagCount);
        tagCount++;
    }
}

std::string TagTable() {
    std::string out;
    for (int i = 0; i < tagCount; i++) out += std::to_string(tagRecord[i]) + tagText[i] + " ";
    return out;
}

TEST_F(Dialogs, TagOkStoresOnlyARecordOfTheStoreWithText) {
    const struct { int inHand; const char *index, *text; int result; const char* table; } cases[] = {
        {-1, "6", "new", 0, "1a 3b "},
        {-1, "abc", "new", 0, "1a 3b "},
        {-1, "5", "", 0, "1a 3b "},
        {-1, "1x", "new", 1, "1a 3b 0new "},  // atoi
        {1, "0", "bad", 0, "1a 3b "},
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        recordCount = 5;
        Tags({1, 3});
        TagDialogValues v;
        strcpy(v.index, c.index);
        strcpy(v.text, c.text);
        EXPECT_EQ(c.result, TagDialogStore(c.inHand, &v)) << c.index << " " << c.text;
        EXPECT_EQ(c.table, TagTable()) << c.index << " " << c.text;
    }
    char line[64];
    TagLineText(1, line, sizeof line);  // the Text Tags window's line: records count from 1
    EXPECT_STREQ("4 - b", line);
    // At the limit an edit still opens, a new tag does not.
    tagCount = MaxTextTags;
    TagDialogValues offered;
    EXPECT_EQ(1, TagDialogOpen(1, &offered));
    EXPECT_EQ(TagDialogRefused, TagDialogOpen(-1, &offered));
    EXPECT_EQ("Maximum number of text tags reached", fake.messageBoxes.back());
}

TEST_F(Dialogs, ManualReadingOpensWithLiveOrAveragedValuesAndOkCutsReadings) {
    const struct { uint32_t flags; int count; const char *lat, *ch1, *ch4; int countAfter; } cases[] = {
        {0, 2, "500", "7", "8", 2},
        {STATUS_AVERAGING, 0, "500", "7", "8", 0},
        {STATUS_AVERAGING, 1, "-7", "30", "31", 0},
        {STATUS_AVERAGING, 2, "-3", "20", "21", 0},  // (-7 + 1) / 2
        {STATUS_AVERAGING, 3, "-1", "20", "20", 0},  // (-7 + 1 + 2) / 3 toward zero
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        statusFlags = c.flags;
        liveState.liveLatitude = 500;
        liveState.liveReadings[0] = 7;
        liveState.liveReadings[3] = 8;
        int32_t history[3] = {-7, 1, 2};
        memcpy(averageHistory.latitudeHistory, history, sizeof history);
        averageHistory.positionHistoryCount = c.count;
        averageHistory.readingHistoryCount = c.count;
        const uint8_t first[3] = {30, 10, 20};
        const uint8_t fourth[3] = {31, 11, 20};
        memcpy(averageHistory.readingHistory[0], first, 3);
        memcpy(averageHistory.readingHistory[3], fourth, 3);
        ManualReadingValues v;
        ManualReadingOpen(&v);
        EXPECT_EQ((Texts{c.lat, c.ch1, c.ch4}), (Texts{v.latitude, v.readings[0], v.readings[3]}))
            << c.count;
        EXPECT_EQ(c.countAfter, averageHistory.positionHistoryCount) << c.count;
        EXPECT_EQ(c.countAfter, averageHistory.readingHistoryCount) << c.count;
    }
    ManualReadingValues typed = {"-400000000", "12x", {"300", "-1", "255", "abc"}};
    ManualReadingStore(&typed);
    EXPECT_TRUE(manualReading.latitude == -400000000 && manualReading.longitude == 12);
    const uint8_t want[4] = {44, 255, 255, 0};
    EXPECT_EQ(0, memcmp(want, manualReading.readings, 4));
}

struct CalEditor : Dialogs {
    CalEditorState s;
    void SetUp() override {
        ResetFakeWorld();
        memset(&s, 0, sizeof s);
        s.selected = -1;
    }
    // Lines given, or `fill` lines with powers 0, 1, 2, ...
    void Lines(std::vector<std::string> lines, int fill = 0) {
        char line[24];
        for (int i = 0; i < fill; i++) {
            snprintf(line, sizeof line, "%03d\t1.000", i);
            lines.push_back(line);
        }
        s.count = (int)lines.size();
        for (size_t i = 0; i < lines.size(); i++) snprintf(s.lines[i], CalEditorLineSize, "%s", lines[i].c_str());
    }
    std::string Joined() {
        std::string out;
        for (int i = 0; i < s.count && i < 3; i++) out += std::string(s.lines[i]) + "|";
        return out;
    }
};

TEST_F(CalEditor, AddChangeDeleteCheckAndKeepTheListInOrder) {
    const std::vector<std::string> two = {"010\t1.000", "020\t2.000"};
    const char* const exists = "An entry already exist for a power of ";
    const char* const badPower = "Invalid power\n(Range 0 - 255)";
    const int E = ICON_EXCLAMATION;
    const int S = ICON_STOP;
    const struct { const char* op; std::vector<std::string> lines; int fill, selected;
                   const char *power, *value, *result; std::string message; int icon, selectedAfter, dirty; } cases[] = {
        {"add", {"010\t1.000"}, 0, -1, "7", "1.23456", "007\t1.235|010\t1.000|", "", 0, 0, 1},
        {"add", {}, 0, -1, "abc", "-2", "000\t-2.000|", "", 0, 0, 1},
        {"add", {"007\t1.000", "010\t1.000"}, 0, -1, "10", "3", "007\t1.000|010\t1.000|", exists + std::string("010"), E, 1, 0},
        {"add", {}, 0, -1, "256", "3", "", badPower, S, -1, 0},
        {"add", {}, 0, -1, "-1", "3", "", badPower, S, -1, 0},
        {"add", {}, 255, -1, "255", "3", "000\t1.000|001\t1.000|002\t1.000|",
         "Maximum number of entires (255)\nhas been reached", S, -1, 0},
        {"change", two, 0, -1, "30", "3", "010\t1.000|020\t2.000|", "No entry highlighted to change", E, -1, 0},
        {"change", two, 0, 1, "020", "9", "010\t1.000|020\t9.000|", "", 0, 1, 1},
        {"change", two, 0, 1, "5", "9", "005\t9.000|010\t1.000|", "", 0, 0, 1},
        {"change", two, 0, 0, "20", "9", "010\t1.000|020\t2.000|", exists + std::string("020"), E, 1, 0},
        {"change", {}, 256, 0, "0", "4", "000\t4.000|001\t1.000|002\t1.000|", "", 0, 0, 1},
        {"delete", two, 0, -1, "", "", "010\t1.000|020\t2.000|", "No entry highlighted to delete", E, -1, 0},
        {"delete", two, 0, 0, "", "", "020\t2.000|", "", 0, -1, 1},
    };
    for (auto& c : cases) {
        SetUp();
        Lines(c.lines, c.fill);
        s.selected = c.selected;
        CalEditorFields f = {};
        snprintf(f.power, sizeof f.power, "%s", c.power);
        snprintf(f.value, sizeof f.value, "%s", c.value);
        std::string op = c.op;
        int changed = op == "add" ? CalEditorAdd(&s, &f) : op == "change" ? CalEditorChange(&s, &f) : CalEditorDelete(&s);
        SCOPED_TRACE(op + " " + c.power + " sel " + std::to_string(c.selected));
        EXPECT_EQ(c.dirty, changed);
        EXPECT_EQ(c.result, Joined());
        EXPECT_EQ(c.selectedAfter, s.selected);
        EXPECT_EQ(c.dirty, s.calEditorDirty);
        EXPECT_EQ(WithIcon(c.message.empty() ? nullptr : c.message.c_str(), c.icon), Shown());
    }
}

TEST_F(CalEditor, TheQuestionSavesOnYesAndClearsTheFlagUnlessClosing) {
    const struct { int dirty, answer; const char* chosen; int clear, written, dirtyAfter; } cases[] = {
        {0, 1, "x.cal", 1, 0, 0},
        {1, 0, "x.cal", 1, 0, 0},
        {1, 1, "", 1, 0, 0},  // Save as cancelled: the flag still goes
        {1, 1, "x.cal", 1, 1, 0},
        {1, 0, "x.cal", 0, 0, 1},  // closing keeps the flag
    };
    for (auto& c : cases) {
        SetUp();
        std::string path = c.chosen[0] ? TempTestPath(c.chosen) : "";
        remove(path.c_str());
        Lines({"000\t1.000", "255\t2.000"});
        s.calEditorChannel = 3;
        s.calEditorDirty = (int16_t)c.dirty;
        fake.answers = {c.answer};
        fake.chosenFiles = {path};
        CalEditorAskToSave(&s, c.clear);
        SCOPED_TRACE(std::to_string(c.dirty) + std::to_string(c.answer) + c.chosen);
        Texts asked;
        if (c.dirty) asked.push_back("Current data for channel 4\nhas been changed\n\nDo you want to save it?");
        EXPECT_EQ(asked, fake.questions);
        EXPECT_EQ(c.written ? CalFileBytes(2, {{0, 1.0f}, {255, 2.0f}}) : "<missing>", ReadFileBytes(path));
        EXPECT_EQ(c.written ? path : "<absent>", StoredSetting("Calibration", "Ch4 filename"));
        EXPECT_EQ(c.dirtyAfter, s.calEditorDirty);
    }
}

TEST_F(CalEditor, OpenTakesEffectOnClosingWithoutASave) {
    std::string path = TempTestPath("cal_editor_open.cal");
    ASSERT_TRUE(WriteFileBytes(path, CalFileBytes(2, {{20, 7.0f}, {10, 3.0f}})));
    CalEditorOpen(&s);
    EXPECT_EQ(CAL_REQUEST_REFILL | CAL_REQUEST_CAPTION, CalEditorOpenFile(&s, path.c_str()));
    CalEditorRefill(&s);
    EXPECT_EQ("010\t3.000|020\t7.000|", Joined());  // the list sorts a file's points
    EXPECT_EQ(FloatBits(0.0f), FloatBits(ChannelLookup[0][20]));
    CalEditorClose(&s);
    EXPECT_EQ(FloatBits(7.0f), FloatBits(ChannelLookup[0][0]));  // file order: 20 then 10
    EXPECT_EQ(0, CalEditorOpenFile(&s, ""));
    EXPECT_EQ("Invalid filename, data not saved", fake.messageBoxes.back());
}

TEST_F(CalEditor, GraphScalesPowerAcrossAndValuesBetweenLeastAndGreatest) {
    // Client 400 by 400: the graph is (10, 110)-(189, 389) after the box.
    const struct { std::vector<std::string> lines; int raw, liveX, curveLines, lastX, lastY; } cases[] = {
        {{}, 0, 10, 0, 0, 0},
        {{"000\t0.000"}, 255, 189, 0, 0, 0},
        {{"010\t5.000", "200\t5.000"}, 128, 99, 0, 0, 0},
        {{"000\t0.000", "255\t100.000"}, 51, 45, 3, 189, 110},
        {{"051\t-2.000", "102\t8.000", "204\t3.000"}, 0, 10, 4, 153, 249},
    };
    static DrawList list;
    for (auto& c : cases) {
        SetUp();
        Lines(c.lines);
        DrawListClear(&list);
        EXPECT_EQ(1, PaintCalGraph(&s, ViewRect{0, 0, 400, 400}, c.raw, &list));
        ASSERT_EQ(3 + c.curveLines, list.count) << c.raw;
        EXPECT_EQ(DRAW_SUNKEN, list.ops[0].kind);
        EXPECT_EQ(391, list.ops[1].rect.bottom);
        EXPECT_EQ(c.liveX, list.ops[2].rect.left) << c.raw;
        EXPECT_EQ(PEN_DOTTED, list.ops[2].pen);
        if (c.curveLines == 0) continue;
        // From the lower left corner to the upper right one.
        const ViewRect& first = list.ops[3].rect;
        const ViewRect& last = list.ops[list.count - 2].rect;
        const ViewRect& end = list.ops[list.count - 1].rect;
        EXPECT_EQ((std::vector<int32_t>{10, 389, c.lastX, c.lastY, 189, 110}),
                  (std::vector<int32_t>{first.left, first.top, last.right, last.bottom, end.right, end.bottom}))
            << c.raw;
    }
}

TEST_F(Dialogs, PortNamesAndBusyPortsAreListed) {
    const struct { int n, opened; unsigned long error; const char* name; int listed; } cases[] = {
        {1, 1, 0, "COM1", 1},
        {9, 0, 5, "COM9", 1},
        {10, 0, 31, "\\\\.\\COM10", 1},
        {30, 0, 32, "\\\\.\\COM30", 1},
        {2, 0, 121, "COM2", 1},
        {3, 0, 2, "COM3", 0},
    };
    for (auto& c : cases) {
        char name[PortNameSize];
        PortDeviceName(c.n, name, sizeof name);
        EXPECT_STREQ(c.name, name);
        EXPECT_EQ(c.listed, PortListed(c.opened, c.error)) << c.n << " " << c.error;
    }
}

// The spins stop at their bounds: a size of the Preferences at 1 and 100 (a
// text that is no number stays going down), TzrBox's initial channel at the
// number of channels, which stays at or above it, and the input at 1..4.
TEST_F(Dialogs, SpinsStopAtTheirBounds) {
    const int PREF = 3;
    const struct { int field; const char *initial, *count, *input; int delta; const char* shown; } cases[] = {
        {PREF, "12", "", "", -1, "11"}, {PREF, "100", "", "", 1, "100"}, {PREF, "1", "", "", -1, "1"},
        {PREF, "2", "", "", -1, "1"},   {PREF, "abc", "", "", 1, "1"},   {PREF, "abc", "", "", -1, "abc"},
        {TZR_INITIAL, "05", "10", "1", +1, "06"},
        {TZR_INITIAL, "07", "07", "1", +1, "07"},
        {TZR_INITIAL, "01", "10", "1", -1, "01"},
        {TZR_COUNT, "05", "06", "1", -1, "05"},
        {TZR_COUNT, "05", "05", "1", -1, "05"},
        {TZR_COUNT, "00", "01", "1", -1, "01"},
        {TZR_INPUT, "01", "10", "4", +1, "4"},
        {TZR_INPUT, "01", "10", "2", -1, "1"},
        {TZR_INPUT, "01", "10", "1", -1, "1"},
    };
    for (auto& c : cases) {
        TzrValues v = {};
        strcpy(v.initialChannel, c.initial);
        strcpy(v.channelCount, c.count);
        strcpy(v.inputChannel, c.input);
        char size[GeneralEditSize];
        strcpy(size, c.initial);
        if (c.field == PREF) {
            PrefBoxSizeSpin(size, c.delta);
        } else {
            TzrSpin(&v, c.field, c.delta);
        }
        const char* got[] = {v.initialChannel, v.channelCount, v.inputChannel, size};
        EXPECT_STREQ(c.shown, got[c.field]) << c.field << ": " << c.initial << " " << c.count << " " << c.delta;
    }
}

TEST_F(Dialogs, TzrOkClampsStoresAndSwitches) {
    const struct { int enable; uint32_t flags; const char *count, *input; int result;
                   const char *storedCount, *storedInput; Texts frames; } cases[] = {
        {1, 0, "0", "0", 1, "1", "1", {"MS 1", "MN 1", "MC 3", "MI 1"}},
        {0, STATUS_TZR_MODE, "12", "2", 1, "12", "2", {"MS 0"}},
        {1, STATUS_DISTANCE_INTERVAL, "12", "2", 0, "<absent>", "<absent>", {}},
        {0, STATUS_DISTANCE_INTERVAL, "12", "2", 1, "12", "2", {"MS 0"}},
    };
    for (auto& c : cases) {
        ResetFakeWorld();
        fake.portOpen = true;
        statusFlags = c.flags;
        TzrValues v = {c.enable, "3", "", 1, ""};
        strcpy(v.channelCount, c.count);
        strcpy(v.inputChannel, c.input);
        SCOPED_TRACE(c.count);
        EXPECT_EQ(c.result, TzrBoxStore(&v));
        EXPECT_EQ(c.storedCount, StoredSetting("TZR4100", "Number of channels"));
        EXPECT_EQ(c.storedInput, StoredSetting("TZR4100", "Input channel"));
        EXPECT_EQ(c.frames, FramesSent());
        EXPECT_EQ(c.result ? 0u : 1u, fake.messageBoxes.size());
        if (!c.result) continue;
        EXPECT_EQ(c.enable ? STATUS_TZR_MODE : 0u, statusFlags & STATUS_TZR_MODE);
        EXPECT_EQ(std::string(c.storedCount) + " " + c.storedInput,
                  std::to_string(tzrChannelCount) + " " + std::to_string(currentInputChannel + 1));
    }
}

TEST_F(Dialogs, Ar3000aBodyKeepsTypedTextsAndGpsDiffOffers4800) {
    fake.portOpen = true;
    Ar3000aValues ar;
    Ar3000aBoxOpen(&ar);
    ar.enable = 1;
    ar.attOn[2] = 1;
    strcpy(ar.freq[1], "145.5x");
    strcpy(ar.mode[3], "USB");
    strcpy(ar.baudRate, "9600");
    Ar3000aBoxStore(&ar);
    EXPECT_EQ((Texts{"AC T88.0W,T145.5xW,R90.0W,T91.0U,9600", "AS 1"}), FramesSent());
    GpsDiffValues gd;
    GpsDiffBoxOpen(&gd);
    EXPECT_STREQ("4800", gd.baudRate);
}

// Stored "Listing File" values, the buttons they check when the box opens,
// and what OK then stores: each group's fallback button for a value outside
// its list, and "Decimal places" whose buttons are not in value order. The
// box offers Listing.txt in the folder given.
TEST_F(Dialogs, MakeFileBoxOffersListingTxtButtonsAndStoredValues) {
    const struct { int stored[4], buttons[4], written[4]; const char *folder, *offered; } cases[] = {
        // Lat/Long, Sign, Decimal places, Separator
        {{4, 2, -1, 3}, {3, 1, 3, 2}, {4, 2, -1, 3}, "C:\\op", "C:\\op\\Listing.txt"},
        {{2, 1, 0, 1}, {1, 0, 0, 0}, {2, 1, 0, 1}, "D:\\", "D:\\Listing.txt"},
        {{5, 0, 2, 7}, {0, 0, 0, 0}, {1, 1, 0, 1}, "", "Listing.txt"},
        {{0, 3, -2, 0}, {0, 0, 0, 0}, {1, 1, 0, 1}, nullptr, "Listing.txt"},
    };
    const IntSetting* keys[4] = {&KeyListingFileLatLong, &KeyListingFileSign, &KeyListingFileDecimalPlaces,
                                 &KeyListingFileSeparator};
    for (const auto& c : cases) {
        ResetFakeWorld();
        for (int k = 0; k < 4; k++) WriteSettingInt(*keys[k], c.stored[k]);
        MakeFileValues values = OpenMakeFileBox(c.folder);
        EXPECT_STREQ(c.offered, values.path);
        EXPECT_EQ(std::vector<int>(c.buttons, c.buttons + 4),
                  (std::vector<int>{values.latLong, values.sign, values.decimals, values.separator}));
        std::string path = fake.settingsFile + ".txt";
        snprintf(values.path, sizeof values.path, "%s", path.c_str());
        recordCount = 1;
        EXPECT_EQ(1, MakeFileBoxOk(values));
        for (int k = 0; k < 4; k++) EXPECT_EQ(c.written[k], ReadSetting(*keys[k])) << "group " << k;
        EXPECT_NE("<missing>", ReadFileBytes(path));
        remove(path.c_str());
    }
    std::string longFolder(300, 'x');
    EXPECT_EQ(MakeFilePathSize - 1, (int)strlen(OpenMakeFileBox(longFolder.c_str()).path));
}

}  // namespace
