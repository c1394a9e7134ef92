#include "dialogs/cal_editor.h"

#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "storage/settings_file.h"

namespace {

struct CalEditor : ::testing::Test {
    CalEditorState s;
    void SetUp() override {
        ResetFakeWorld();
        memset(&s, 0, sizeof s);
        s.selected = -1;
    }
    // Lines given, or `fill` lines with powers 0, 1, 2, ...
    void Lines(std::vector<std::string> lines, int fill = 0) {
        char line[24];
        for (int i = 0; i < fill; i++) snprintf(line, sizeof line, "%03d\t1.000", i), lines.push_back(line);
        s.count = (int)lines.size();
        for (size_t i = 0; i < lines.size(); i++)
            snprintf(s.lines[i], CalEditorLineSize, "%s", lines[i].c_str());
    }
    std::string Joined() {
        std::string out;
        for (int i = 0; i < s.count && i < 3; i++) out += std::string(s.lines[i]) + "|";
        return out;
    }
};

TEST_F(CalEditor, AddChangeDeleteCheckAndKeepTheListInOrder) {
    struct { const char* op; std::vector<std::string> lines; int fill, selected;
             const char *power, *value, *result, *message; int icon, selectedAfter, dirty; } cases[] = {
        {"add", {"010\t1.000"}, 0, -1, "7", "1.23456", "007\t1.235|010\t1.000|", nullptr, 0, 0, 1},
        {"add", {}, 0, -1, "abc", "-2", "000\t-2.000|", nullptr, 0, 0, 1},
        {"add", {"007\t1.000", "010\t1.000"}, 0, -1, "10", "3", "007\t1.000|010\t1.000|",
         "An entry already exist for a power of 010", ICON_EXCLAMATION, 1, 0},
        {"add", {}, 0, -1, "256", "3", "", "Invalid power\n(Range 0 - 255)", ICON_STOP, -1, 0},
        {"add", {}, 0, -1, "-1", "3", "", "Invalid power\n(Range 0 - 255)", ICON_STOP, -1, 0},
        {"add", {}, 255, -1, "255", "3", "000\t1.000|001\t1.000|002\t1.000|",
         "Maximum number of entires (255)\nhas been reached", ICON_STOP, -1, 0},
        {"change", {"010\t1.000", "020\t2.000"}, 0, -1, "30", "3", "010\t1.000|020\t2.000|",
         "No entry highlighted to change", ICON_EXCLAMATION, -1, 0},
        {"change", {"010\t1.000", "020\t2.000"}, 0, 1, "020", "9", "010\t1.000|020\t9.000|", nullptr, 0, 1, 1},
        {"change", {"010\t1.000", "020\t2.000"}, 0, 1, "5", "9", "005\t9.000|010\t1.000|", nullptr, 0, 0, 1},
        {"change", {"010\t1.000", "020\t2.000"}, 0, 0, "20", "9", "010\t1.000|020\t2.000|",
         "An entry already exist for a power of 020", ICON_EXCLAMATION, 1, 0},
        {"change", {}, 256, 0, "0", "4", "000\t4.000|001\t1.000|002\t1.000|", nullptr, 0, 0, 1},
        {"delete", {"010\t1.000", "020\t2.000"}, 0, -1, "", "", "010\t1.000|020\t2.000|",
         "No entry highlighted to delete", ICON_EXCLAMATION, -1, 0},
        {"delete", {"010\t1.000", "020\t2.000"}, 0, 0, "", "", "020\t2.000|", nullptr, 0, -1, 1},
    };
    for (auto& c : cases) {
        SetUp();
        Lines(c.lines, c.fill);
        s.selected = c.selected;
        CalEditorFields f = {};
        snprintf(f.power, sizeof f.power, "%s", c.power);
        snprintf(f.value, sizeof f.value, "%s", c.value);
        std::string op = c.op;
        int changed = op == "add" ? CalEditorAdd(&s, &f) : op == "change" ? CalEditorChange(&s, &f)
                                                                           : CalEditorDelete(&s);
        std::string what = op + " " + c.power + " sel " + std::to_string(c.selected);
        EXPECT_EQ(c.dirty, changed) << what;
        EXPECT_EQ(c.result, Joined()) << what;
        EXPECT_EQ(c.selectedAfter, s.selected) << what;
        EXPECT_EQ(c.dirty, s.calEditorDirty) << what;
        ASSERT_EQ(c.message ? 1u : 0u, fake.messageBoxes.size()) << what;
        if (!c.message) continue;
        EXPECT_EQ(c.message, fake.messageBoxes[0]) << what;
        EXPECT_EQ(c.icon, fake.messageIcons[0]) << what;
    }
}

TEST_F(CalEditor, TheQuestionSavesOnYesAndClearsTheFlagUnlessClosing) {
    struct { int dirty, answer; const char* chosen; int clear, asked, written, dirtyAfter; } cases[] = {
        {0, 1, "x.cal", 1, 0, 0, 0},
        {1, 0, "x.cal", 1, 1, 0, 0},
        {1, 1, "", 1, 1, 0, 0},      // Save as cancelled: the flag still goes
        {1, 1, "x.cal", 1, 1, 1, 0},
        {1, 0, "x.cal", 0, 1, 0, 1},  // closing keeps the flag
    };
    for (auto& c : cases) {
        SetUp();
        std::string path = c.chosen[0] ? TempTestPath(c.chosen) : "";
        remove(path.c_str());
        Lines({"000\t1.000", "255\t2.000"});
        s.calEditorChannel = 3, s.calEditorDirty = (int16_t)c.dirty;
        fake.answers.push_back(c.answer);
        fake.chosenFiles.push_back(path);
        CalEditorAskToSave(&s, c.clear);
        std::string what = std::to_string(c.dirty) + std::to_string(c.answer) + c.chosen;
        ASSERT_EQ((size_t)c.asked, fake.questions.size()) << what;
        if (c.asked) {
            EXPECT_EQ("Current data for channel 4\nhas been changed\n\nDo you want to save it?",
                      fake.questions[0]);
        }
        EXPECT_EQ(c.written ? CalFileBytes(2, {{0, 1.0f}, {255, 2.0f}}) : "<missing>",
                  ReadFileBytes(path)) << what;
        EXPECT_EQ(c.written ? path : "<absent>", StoredSetting("Calibration", "Ch4 filename")) << what;
        EXPECT_EQ(c.dirtyAfter, s.calEditorDirty) << what;
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
    struct { std::vector<std::string> lines; int raw, liveX, curveLines, lastX, lastY; } cases[] = {
        {{}, 0, 10, 0, 0, 0},
        {{"000\t0.000"}, 255, 189, 0, 0, 0},
        {{"010\t5.000", "200\t5.000"}, 128, 99, 0, 0, 0},
        {{"000\t0.000", "255\t100.000"}, 51, 45, 3, 189, 110},
        {{"051\t-2.000", "102\t8.000", "204\t3.000"}, 0, 10, 4, 153, 249},
    };
    for (auto& c : cases) {
        SetUp();
        Lines(c.lines);
        static DrawList list;
        DrawListClear(&list);
        EXPECT_EQ(1, PaintCalGraph(&s, ViewRect{0, 0, 400, 400}, c.raw, &list));
        ASSERT_GE(list.count, 3);
        EXPECT_EQ(DRAW_SUNKEN, list.ops[0].kind);
        EXPECT_EQ(391, list.ops[1].rect.bottom);
        const DrawOp& live = list.ops[2];
        EXPECT_EQ(c.liveX, live.rect.left) << c.raw;
        EXPECT_EQ(PEN_DOTTED, live.pen);
        ASSERT_EQ(3 + c.curveLines, list.count) << c.raw;
        if (c.curveLines == 0) continue;
        EXPECT_EQ(10, list.ops[3].rect.left);
        EXPECT_EQ(389, list.ops[3].rect.top);  // from the lower left corner
        const DrawOp& last = list.ops[list.count - 2];
        EXPECT_EQ(c.lastX, last.rect.right) << c.raw;
        EXPECT_EQ(c.lastY, last.rect.bottom) << c.raw;
        EXPECT_EQ(189, list.ops[list.count - 1].rect.right);
        EXPECT_EQ(110, list.ops[list.count - 1].rect.bottom);
    }
}

}  // namespace
