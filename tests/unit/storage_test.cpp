// The files of the program: the settings file, data files, calibration files
// and their reconciliation with the settings, listing files and colours.
#include <gtest/gtest.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "base/app_paths.h"
#include "base/busy.h"
#include "storage/cal_file.h"
#include "storage/colours_file.h"
#include "storage/data_file.h"
#include "storage/ini_file.h"
#include "storage/listing_file.h"
#include "storage/reconciliation.h"
#include "storage/settings_file.h"
#include "survey/cal_lookup.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

#ifdef _WIN32
#include <direct.h>
#define MakeFolder(path) _mkdir(path)
#else
#include <unistd.h>
#define MakeFolder(path) mkdir(path, 0755)
#endif

namespace {

// Most tests start from a fresh fake world: no survey, no settings file.
struct FreshWorld : ::testing::Test {
    void SetUp() override { ResetFakeWorld(); }
};

// A literal with NUL bytes in it.
template <size_t N>
std::string Bytes(const char (&text)[N]) {
    return std::string(text, N - 1);
}

void Put(const std::string& path, const std::string& bytes) {
    ASSERT_EQ(1, WriteFileBytes(path, bytes));
}

// The text read; the count returned must be its length.
std::string Text(const char* section, const char* key, const char* def, int size,
                 const std::string& path) {
    char buffer[256];
    memset(buffer, '*', sizeof buffer);
    int n = IniGetString(section, key, def, buffer, size, path.c_str());
    EXPECT_EQ(n, static_cast<int>(strlen(buffer)));
    return buffer;
}

TEST(IniFile, NumbersReadAsTheProfileCallsGiveThem) {
    std::string path = TempTestPath("numbers.ini");
    Put(path,
        "[N]\r\na=-1\r\nb=12abc\r\nc=abc\r\nd=0x10\r\ne=0X10\r\nf=+5\r\ng=-0x10\r\n"
        "h=4294967295\r\ni=2147483648\r\nj=99999999999\r\nk=\"12\"\r\nl=\r\nm\r\n"
        "n=123456789012345678901234567890123\r\no=0b101\r\np=- 5\r\nq= 42 \r\n"
        "r=0xAf\r\ns=0xa1G\r\nt=0o17\r\n");
    const struct {
        const char* key;
        int expected;
    } cases[] = {
        {"a", -1},         {"b", 12},       {"c", 0},
        {"d", 16},         {"e", 0},        {"f", 5},
        {"g", -16},        {"h", -1},       {"i", -2147483647 - 1},
        {"j", 1215752191}, {"k", 12},       {"l", -7},
        {"m", -7},         {"missing", -7}, {"n", 1849262357},
        {"o", 5},          {"p", 0},        {"q", 42},
        {"r", 175},        {"s", 161},  // hex digits of either case; G ends the number
        {"t", 15},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IniGetInt("N", c.key, -7, path.c_str()), c.expected) << c.key;
    }
    EXPECT_EQ(IniGetInt("N", "a", 3, TempTestPath("absent.ini").c_str()), 3);
    Put(path, "\xEF\xBB\xBF[N]\r\na=4\r\n");  // a UTF-8 mark before the first section
    EXPECT_EQ(IniGetInt("N", "a", -7, path.c_str()), 4);
    remove(path.c_str());
}

TEST(IniFile, TextReadsWithNamesTrimmedQuotesDroppedAndCut) {
    std::string path = TempTestPath("text.ini");
    Put(path,
        Bytes("Top=before\r\n; comment\r\n[Main Window]\r\n  Font Name  =  Courier New  \r\n"
              "Key=first\r\nKEY=second\r\nQ=\"quoted\"\r\nOne='\r\nTwo=''\r\nEmpty=\r\nBare\r\n"
              ";Hidden=1\r\nZ=\x1a z\x1a\r\nLong=") +
            std::string(3000, 'x') +
            Bytes("\r\nAfter=long\r\nNul=a\0b\r\n[Broken\r\nInBroken=2\r\n[main window]\r\n"
                  "Other=1\r\n[Lf]\nA=lf\rB=cr"));
    const struct {
        const char* section;
        const char* key;
        const char* def;
        int size;
        const char* expected;
    } reads[] = {
        {" main window ", "font name", "d", 64, "Courier New"},
        {"Main window", "key", "d", 64, "first"},
        {"Main window", "Q", "d", 64, "quoted"},
        {"Main window", "One", "d", 64, "'"},
        {"Main window", "Two", "d", 64, ""},
        {"Main window", "Empty", "d", 64, ""},
        {"Main window", "Bare", "d", 64, "d"},
        {"Main window", "Nul", "d", 64, "a"},
        {"", "Top", "d", 64, "before"},             // before the first section
        {"Main window", ";Hidden", "d", 64, "1"},   // no comment inside a section
        {"Main window", "Z", "d", 64, "z"},         // ^Z is white space
        {"Main window", "After", "d", 64, "long"},  // behind a line of 3000 bytes
        {"Main window", "Other", "d", 64, "d"},  // second section of the name
        {"Main window", "InBroken", "d", 64, "2"},
        {"Lf", "A", "d", 64, "lf"},
        {"Lf", "B", "d", 64, "cr"},
        // Cut to size-1; a cut quoted value keeps the opening quote only when
        // the closing one does not fit either.
        {"Main window", "Font name", "d", 5, "Cour"},
        {"Main window", "Key", "d", 7, "first"},
        {"Main window", "Q", "d", 8, "quoted"},
        {"Main window", "Q", "d", 7, "quote"},
        {"Main window", "Q", "d", 1, ""},
        // Defaults lose trailing spaces and quotes.
        {"Main window", "Nope", "def  ", 64, "def"},
        {"Nope", "Key", "'COM1'", 64, "COM1"},
    };
    for (const auto& r : reads) {
        EXPECT_EQ(Text(r.section, r.key, r.def, r.size, path), r.expected) << r.key << " " << r.size;
    }
    EXPECT_EQ(Text("Main window", "Key", "d", 64, TempTestPath("absent.ini")), "d");
    char untouched[2] = {'*', '*'};
    EXPECT_EQ(IniGetString("Main window", "Key", "d", untouched, 0, path.c_str()), 0);
    EXPECT_EQ(untouched[0], '*');
    remove(path.c_str());
}

TEST(IniFile, WriteChangesOnlyItsKey) {
    std::string path = TempTestPath("write.ini");
    EXPECT_EQ(IniWriteString("Main window", "Width", "640", path.c_str()), 1);
    EXPECT_EQ(ReadFileBytes(path), "[Main window]\r\nWidth=640\r\n");

    Put(path,
        "; VELDOR\r\n[Main window]\r\nOrigin X = 12 \r\nWidth=800\r\n\r\n"
        "[Listing]\r\nFontName=Arial\r\n\r\n");
    EXPECT_EQ(IniWriteString("main window", "WIDTH", "640", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("Main window", "Height", "480", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("Listing", "Decimal places", "-1", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("General", "Averaging", "1", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("Main window", "Origin X", " -5 ", path.c_str()), 1);
    EXPECT_EQ(ReadFileBytes(path),
              "; VELDOR\r\n[Main window]\r\nOrigin X=-5\r\nWidth=640\r\nHeight=480\r\n"
              "\r\n[Listing]\r\nFontName=Arial\r\nDecimal places=-1\r\n\r\n"
              "[General]\r\nAveraging=1\r\n");
    EXPECT_EQ(IniGetInt("Listing", "Decimal places", 1, path.c_str()), -1);

    // Line ends follow the file; a last line without one gets one first.
    Put(path, "[Plot]\nChannel=2");
    EXPECT_EQ(IniWriteString("Plot", "Dot size", "7", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("Chart", "Channel", "3", path.c_str()), 1);
    EXPECT_EQ(ReadFileBytes(path), "[Plot]\nChannel=2\nDot size=7\n[Chart]\nChannel=3\n");

    remove(path.c_str());
    std::string nowhere = TempTestPath("no-such-folder/x.ini");
    EXPECT_EQ(IniWriteString("A", "B", "C", nowhere.c_str()), 0);
    EXPECT_EQ(ReadFileBytes(nowhere), "<missing>");
}

// The keys that no scenario reads back from the settings file the program
// writes: each is found under its name, and a text is cut to its length.
TEST(SettingsFile, EveryKeyIsFoundUnderItsName) {
    ResetFakeWorld();
    Put(settingsPath,
        "[Plot]\nFontName=17\n[Plot scale]\nConfirm=17\nAspect 1:1=17\nDot size=17\n"
        "[Chart]\nFontName=17\n[General]\nLoad stored data=17\nCheck stored data=17\n"
        "Plot Current Position=17\nEarth Radius (km)=17\n[Calibration]\nCh2 filename=17\n"
        "Ch3 filename=17\n[GPS Set]\nLat N/S=17\n[AR3000A]\nCh3 Freq=17\nCh4 Freq=17\n"
        "Ch2 Mode=17\nCh3 Mode=17\nCh2 Att on=17\nCh3 Att on=17\n"
        "[TZR4100]\nIncriment channel=17\n");
    for (const IntSetting* s :
         {&KeyPlotScaleConfirm, &KeyPlotScaleAspect, &KeyPlotScaleDotSize, &KeyLoadStoredData,
          &KeyCheckStoredData, &KeyPlotCurrentPosition, &KeyEarthRadius, &KeyAr3000aAttOn[1],
          &KeyAr3000aAttOn[2], &KeyTzrIncrementChannel}) {
        EXPECT_EQ(ReadSetting(*s), 17) << s->section << "/" << s->key;
    }
    char text[300];
    for (const TextSetting* s : {&KeyPlotFontName, &KeyChartFontName, &KeyCalibrationFile[1],
                                 &KeyCalibrationFile[2], &KeyGpsLatNS, &KeyAr3000aFreq[2],
                                 &KeyAr3000aFreq[3], &KeyAr3000aMode[1], &KeyAr3000aMode[2]}) {
        ReadSetting(*s, text, sizeof text);
        EXPECT_STREQ(text, s->maxLength == 1 ? "1" : "17") << s->section << "/" << s->key;
    }
    remove(settingsPath);
}

// tests/data/datafiles/, made by make_data_files.py there.
std::string TestFile(const char* name) {
    return TestDataPath(std::string("datafiles/") + name);
}

void UseFile(const std::string& path) {
    snprintf(dataFileName, PathSize, "%s", path.c_str());
}

// A survey in memory that a failed load must or must not disturb.
void FillPreviousSurvey() {
    recordCount = 2;
    recordStore.rows[0].latitude = 42;
    tagCount = 2;
    tagRecord[0] = 1;
    snprintf(tagText[0], TagTextSize, "old tag");
    snprintf(recordingParams.calFileName[0], PathSize, "old.cal");
    snprintf(channelLabels[0], ChannelLabelSize, "Old label");
}

// The records that make_data_files.py writes, and a record as text.
const Record FileRecords[4] = {
    {0x14, 0, {10, 20, 30, 40}, 185400000, -3600000, 1600000000u},
    {0x3C, 7, {255, 0, 128, 1}, -324000000, 648000000, 1600000005u},
    {0x81, 99, {1, 2, 3, 4}, -1, 2147483647, 4294967295u},
    {0x00, 0, {200, 201, 202, 203}, 324000000, -648000000, 0u},
};

std::string Fields(const Record& r, bool withTime = true) {
    char text[96];
    snprintf(text, sizeof text, "%u %u %u %u %u %u %d %d %u", r.flags, r.accessoryChannel,
             r.ch[0], r.ch[1], r.ch[2], r.ch[3], r.latitude, r.longitude, withTime ? r.time : 0u);
    return text;
}

void ExpectFileRecords(int count, bool withTime) {
    ASSERT_EQ(count, recordCount);
    for (int i = 0; i < count; i++)
        EXPECT_EQ(Fields(FileRecords[i], withTime), Fields(recordStore.rows[i])) << i;
}

using DataFile = FreshWorld;

TEST_F(DataFile, EmptyStoreWritesTheFixedPartAtItsOffsets) {
    recordingParams.intervalSeconds = 5;
    recordingParams.intervalMeters = 500;
    std::string path = TempTestPath("empty.dat");
    UseFile(path);
    statusFlags |= STATUS_FULL_PATH;
    ASSERT_EQ(1, SaveDataFile());
    // Field for field what a fresh program saves; the reference is made
    // without the program's writer.
    EXPECT_EQ(ReadFileBytes(TestFile("v1_4_empty.dat")), ReadFileBytes(path));
    EXPECT_EQ(std::vector<std::string>(
                  {"Opening file '" + path + "'", "Data written to file '" + path + "'"}),
              fake.statusLines);
    EXPECT_EQ(0, fake.busy);
    EXPECT_EQ(ReadFileBytes(path + ".tmp"), "<missing>");

    // The numbers of the header, little-endian behind the magic.
    recordingParams.startTime = 0x01020304;
    recordingParams.intervalSeconds = -2;
    recordingParams.intervalMeters = 0x11223344;
    recordingParams.distanceMode = 1;
    recordingParams.inputChannel = 0xBEEF;
    ASSERT_EQ(1, SaveDataFile());
    EXPECT_EQ(std::string("\x04\x03\x02\x01\xFE\xFF\xFF\xFF\x44\x33\x22\x11\x01\xEF\xBE", 15),
              ReadFileBytes(path).substr(26, 15));

    // The empty file reads back as a success with no records.
    recordCount = 3;
    ASSERT_EQ(1, LoadDataFile());
    EXPECT_EQ(0, recordCount);
    remove(path.c_str());
}

TEST_F(DataFile, EveryVersionReadsWithItsOffsetsAndDefaultsAndSavesAsV14) {
    using Tags = std::vector<std::pair<int, std::string>>;
    const Tags old = {{1, "old tag"}, {0, ""}};
    const Tags all = {{0, "Start of run"}, {3, std::string(50, 'x')}, {-1, "points at no record"}};
    const struct {
        const char* file;
        uint32_t start;
        int seconds, meters, distance, input, records;
        bool times;
        Tags tags;
        const char* label;
    } versions[] = {
        // v1.0: intervals and distance supplied, the input channel kept; no times, tags, labels.
        {"v1_0.dat", 1000000000u, 5, 500, 0, 5, 3, false, old, "Old label"},
        // v1.1: the input channel behind the seconds (offset 34); bytes past the records ignored.
        {"v1_1.dat", 1100000000u, 7, 500, 0, 2, 4, false, old, "Old label"},
        // v1.2: the input channel behind distanceMode (offset 39); tags but no times.
        {"v1_2.dat", 1200000000u, 10, 250, 1, 3, 3, false, Tags(all.begin(), all.begin() + 2),
         "Old label"},
        // v1.3: times; old bytes behind every NUL and behind the trailer mean nothing.
        {"v1_3.dat", 1300000000u, 2, 1000, 0, 1, 4, true, all, "Old label"},
        {"v1_4.dat", 1400000000u, 3, 20, 1, 0, 4, true, all, "North mast"},
    };
    FillPreviousSurvey();
    currentInputChannel = 5;
    std::string path = TempTestPath("upgraded.dat");
    for (const auto& v : versions) {
        SCOPED_TRACE(v.file);
        recordingParams.distanceMode = 1;
        UseFile(TestFile(v.file));
        ASSERT_EQ(1, LoadDataFile());
        EXPECT_EQ(v.start, recordingParams.startTime);
        EXPECT_EQ(v.seconds, recordingParams.intervalSeconds);
        EXPECT_EQ(v.meters, recordingParams.intervalMeters);
        EXPECT_EQ(v.distance, recordingParams.distanceMode);
        EXPECT_EQ(v.input, recordingParams.inputChannel);
        EXPECT_EQ(v.input, currentInputChannel);
        EXPECT_STREQ("C:\\Survey\\Cal\\Dipole 3.cal", recordingParams.calFileName[2]);
        ExpectFileRecords(v.records, v.times);
        ASSERT_EQ((int)v.tags.size(), tagCount);
        for (int t = 0; t < tagCount; t++) {
            EXPECT_EQ(v.tags[t].first, tagRecord[t]) << t;
            EXPECT_EQ(v.tags[t].second, tagText[t]) << t;
        }
        EXPECT_STREQ(v.label, channelLabels[0]);
        // Saved again it is a v1.4 file that carries the supplied values as
        // if recorded; one written by another writer comes out byte for byte.
        UseFile(path);
        ASSERT_EQ(1, SaveDataFile());
        EXPECT_EQ(1223 + 18 * v.records + 55 * v.tags.size(), ReadFileBytes(path).size());
    }
    EXPECT_STREQ("Spare 4", channelLabels[3]);
    EXPECT_EQ(ReadFileBytes(TestFile("v1_4.dat")), ReadFileBytes(path));
    EXPECT_EQ(0u, fake.messageBoxes.size());
    remove(path.c_str());
}

TEST_F(DataFile, DamagedFilesAreReportedAndLeaveWhatTheyMust) {
    // One record more than the store holds, behind the v1.2 header, then
    // no tags and the trailer: too big to keep among the made files.
    const std::string tooMany = TempTestPath("record_count_16001.dat");
    ASSERT_EQ(1, WriteFileBytes(tooMany, ReadFileBytes(TestFile("v1_2.dat")).substr(0, 1081) +
                                             std::string("\x81\x3E\0\0", 4) +
                                             std::string(14 * 16001, '\1') +
                                             std::string("\0\0\0\0[End]\0", 10)));
    struct Case {
        std::string path;
        const char* words;  // the message after the path
        bool storeKept;
    };
    const Case cases[] = {
        {TestFile("wrong_magic.dat"), "Incorrect format", true},
        {TestFile("magic_without_nul.dat"), "Incorrect format", true},
        {TestFile("shorter_than_magic.dat"), "Incorrect format", true},
        {TestFile("truncated_v1_4.dat"), "File corrupted", false},
        {TestFile("truncated_v1_4_trailer.dat"), "File corrupted", false},
        {tooMany, "File corrupted", false},
        {TestFile("tag_count_1001.dat"), "File corrupted", false},
        {TestFile("name_without_nul.dat"), "File corrupted", false},
        {TestFile("label_without_nul.dat"), "File corrupted", false},
        {TestFile("tag_text_without_nul.dat"), "File corrupted", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        ResetFakeWorld();
        FillPreviousSurvey();
        for (int w : {WINDOW_LISTING, WINDOW_PLOT, WINDOW_TAGS}) fake.windowExists[w] = true;
        const std::string& path = c.path;
        UseFile(path);
        EXPECT_EQ(0, LoadDataFile());
        EXPECT_EQ(std::vector<std::string>{"File '" + path + "'\n" + c.words}, fake.messageBoxes);
        EXPECT_EQ(std::vector<int>{ICON_EXCLAMATION}, fake.messageIcons);
        EXPECT_EQ(c.storeKept ? 2 : 0, recordCount);
        EXPECT_EQ(c.storeKept ? 2 : 0, tagCount);
        EXPECT_STREQ(c.storeKept ? "old.cal" : "", recordingParams.calFileName[0]);
        for (int i = 1; i < 4; i++) EXPECT_STREQ("", recordingParams.calFileName[i]);
        EXPECT_TRUE(fake.repaints.empty() && fake.notifications.empty());
        EXPECT_EQ(0, fake.busy);
    }
    remove(tooMany.c_str());

    ResetFakeWorld();
    std::string missing = TempTestPath("no-such-file.dat");
    UseFile(missing);
    EXPECT_EQ(0, LoadDataFile());
    EXPECT_EQ(std::vector<std::string>{"Error opening file\n'" + missing + "'"}, fake.messageBoxes);
    EXPECT_TRUE(fake.statusLines.empty());
}

// A negative record count reads no records and goes on to the tags; only
// the low 16 bits of the tag count count; a v1.1 file cut inside its third
// record has no trailer to miss: its whole records are read.
TEST_F(DataFile, OddButReadableCounts) {
    FillPreviousSurvey();
    const struct {
        const char* file;
        int records, tags;
    } cases[] = {{"negative_record_count.dat", 0, 1},
                 {"tag_count_high_bits.dat", 1, 2},
                 {"truncated_v1_1.dat", 2, 2}};
    for (const auto& c : cases) {
        UseFile(TestFile(c.file));
        ASSERT_EQ(1, LoadDataFile()) << c.file;
        EXPECT_EQ(c.records, recordCount) << c.file;
        EXPECT_EQ(c.tags, tagCount) << c.file;
    }
    ExpectFileRecords(2, false);
    EXPECT_TRUE(fake.messageBoxes.empty());
}

// The name is a folder with something in it: it can't be replaced, the
// temporary file goes and the folder stays. No name: nothing is written.
TEST_F(DataFile, FailedSaveKeepsThePreviousFile) {
    std::string folder = TempTestPath("folder.dat");
    std::string inside = folder + "/inside";
    ASSERT_EQ(0, MakeFolder(folder.c_str()));
    ASSERT_EQ(1, WriteFileBytes(inside, "x"));
    UseFile(folder);
    EXPECT_EQ(0, SaveDataFile());
    EXPECT_EQ("<missing>", ReadFileBytes(folder + ".tmp"));
    EXPECT_EQ("x", ReadFileBytes(inside));
    dataFileName[0] = '\0';
    EXPECT_EQ(0, SaveDataFile());
    EXPECT_EQ((std::vector<std::string>{"Error writing file, data not saved",
                                        "Error opening file, data not saved"}),
              fake.messageBoxes);
    EXPECT_EQ(0, fake.busy);
    remove(inside.c_str());
    rmdir(folder.c_str());
}

std::string CalTestFile(const char* name) {
    return TestDataPath(std::string("cal/") + name);
}

using CalFile = FreshWorld;

TEST_F(CalFile, ReadsEachFileWithItsSpareBytesAndLeavesTheLookup) {
    const struct {
        const char* name;
        int channel;
        int count;
        std::vector<CalPoint> points;  // the first ones
    } cases[] = {
        {"good.cal",  // only the first byte of a point is the power
         2,
         3,
         {{10, {0x11, 0x22, 0x33}, 5.0f},
          {20, {0, 0, 0}, 15.0f},
          {200, {0xAA, 0xBB, 0xCC}, -2.5f}}},
        {"default_curve.cal", 1, 2, {{0, {0, 0, 0}, 0.0f}, {255, {0, 0, 0}, 100.0f}}},
        {"zero_points.cal", 0, 0, {}},
        {"negative_count.cal", 0, 0, {}},  // reads like 0
        // Short: only the whole points it holds.
        {"truncated.cal", 1, 2, {{1, {0, 0, 0}, 1.0f}, {2, {0, 0, 0}, 2.0f}}},
        {"truncated_no_count.cal", 1, 0, {}},
        // Refused, the table left: a data file offered as one, too short for
        // the magic.
        {"wrong_magic_datafile.cal", 2, -1, {}},
        {"truncated_magic.cal", 2, -1, {}},
        // 300 points: storing stops at 256. Channel 3 is the last table: a
        // store past its end would be caught by AddressSanitizer.
        {"too_many_points.cal", 3, 256, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ResetFakeWorld();
        CalTable[c.channel].count = 5;  // markers that a read must not disturb or invent from
        for (int n = 0; n < CalMaxPoints; n++)
            CalTable[c.channel].points[n] = CalPoint{0xEE, {0xEE, 0xEE, 0xEE}, -999.0f};
        for (int i = 0; i < 256; i++) ChannelLookup[c.channel][i] = 42.0f;
        std::string path = CalTestFile(c.name);
        const bool read = c.count >= 0;
        ASSERT_EQ(ReadCalFile(path.c_str(), c.channel), read ? 1 : 0);
        const CalTableData& t = CalTable[c.channel];
        ASSERT_EQ(t.count, read ? c.count : 5);
        for (size_t n = 0; n < c.points.size(); n++) {
            EXPECT_EQ(t.points[n].power, c.points[n].power) << n;
            EXPECT_EQ(0, memcmp(t.points[n].spare, c.points[n].spare, 3)) << n;
            EXPECT_EQ(FloatBits(t.points[n].value), FloatBits(c.points[n].value)) << n;
        }
        for (int i = 0; i < 256; i++) EXPECT_EQ(ChannelLookup[c.channel][i], 42.0f);
        std::string shown = DisplayFileName(path.c_str());
        std::vector<std::string> lines = {"Reading calibration file '" + shown + "'"};
        if (read) lines.push_back("Read calibration file '" + shown + "'");
        EXPECT_EQ(fake.statusLines, lines);
        std::vector<std::string> boxes;
        if (!read) boxes.push_back("Calibration file '" + path + "'\nIncorrect format");
        EXPECT_EQ(fake.messageBoxes, boxes);
        EXPECT_EQ(fake.busy, 0);
    }
}

// Channel 1: the file's curve; channel 2: a sound file with no points is the
// identity, not the default; channel 3 (a bad file) and 4 (no name: the
// missing Default.cal): the default curve, after one message each, in order.
TEST_F(CalFile, StartupReadsEachChannelsFileInTurnOrTheDefaultCurve) {
    snprintf(appDirectory, sizeof appDirectory, "%s", TempTestPath("no-such-folder").c_str());
    const std::string files[3] = {CalTestFile("good.cal"), CalTestFile("zero_points.cal"),
                                  CalTestFile("wrong_magic.cal")};
    for (int c = 0; c < 3; c++) WriteSetting(KeyCalibrationFile[c], files[c].c_str());
    LoadStartupCalibration();
    EXPECT_EQ(CalTable[0].count, 3);
    EXPECT_EQ(ChannelLookup[0][15], 10.0f);
    EXPECT_EQ(ChannelLookup[0][255], -2.5f);
    EXPECT_EQ(CalTable[1].count, 0);
    EXPECT_EQ(ChannelLookup[1][255], 255.0f);
    for (int c = 2; c < 4; c++) {
        EXPECT_EQ(FloatBits(ChannelLookup[c][1]), 0x3EC8C8CAu);
        EXPECT_EQ(ChannelLookup[c][255], 100.0f);
    }
    EXPECT_EQ(fake.messageBoxes,
              std::vector<std::string>({"Calibration file '" + files[2] + "'\nIncorrect format",
                                        std::string("Error opening calibration file\n'") +
                                            appDirectory + "\\Default.cal'"}));
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalFile, WriterLaysOutTheFormatAndReplacesTheFile) {
    // A count above 256 never writes past the table.
    std::string path = TempTestPath("layout.cal");
    CalTable[3].count = 300;
    for (int n = 0; n < 256; n++) CalTable[3].points[n] = CalPoint{(uint8_t)n, {0, 0, 0}, 1.0f};
    ASSERT_EQ(WriteCalFile(path.c_str(), 3), 1);
    std::string bytes = ReadFileBytes(path);
    ASSERT_EQ(bytes.size(), 29u + 8u * 256u);
    EXPECT_EQ(bytes.substr(25, 4), std::string("\x00\x01\x00\x00", 4));
    // Over that longer file, a curve read from a file made without the
    // program's writer comes out byte for byte, spare bytes and all.
    const std::string good = CalTestFile("good.cal");
    ASSERT_EQ(ReadCalFile(good.c_str(), 0), 1);
    ASSERT_EQ(WriteCalFile(path.c_str(), 0), 1);
    EXPECT_EQ(ReadFileBytes(path), ReadFileBytes(good));
    remove(path.c_str());

    fake.statusLines.clear();
    path = TempTestPath("no-such-folder/x.cal");
    EXPECT_EQ(WriteCalFile(path.c_str(), 0), 0);
    EXPECT_EQ(fake.messageBoxes, std::vector<std::string>{"Error opening file\n'" + path + "'"});
    EXPECT_EQ(fake.messageIcons[0], ICON_EXCLAMATION);
    EXPECT_TRUE(fake.statusLines.empty());
    EXPECT_EQ(fake.busy, 0);
}

TEST_F(CalFile, TextCopyOfAnEmptyCurveWithNoFileName) {
    std::string path = TempTestPath("empty.txt");
    fake.chosenFiles.push_back(path);
    CalTable[0].count = 0;
    BuildChannelLookup(0);
    CopyCalibrationToText(0);
    EXPECT_EQ(fake.chooseModes, std::vector<int>{CHOOSE_SAVE_TEXT});
    EXPECT_EQ(fake.statusLines, std::vector<std::string>{"Calibration text file (Ch1)"});
    // fake.now is 1700000000, broken down by the fake as UTC.
    std::string expected =
        "VELDOR calibration data for channel 1\nCreated Tue Nov 14 22:13:20 2023\n\n"
        "Calibration file \nPower\tValue\n\nLookup table created: \n\nIndex\tValue\n";
    char line[32];
    for (int i = 0; i < 256; i++) {
        snprintf(line, sizeof line, "%03d\t%d.000\n", i, i);
        expected += line;
    }
    EXPECT_EQ(ReadFileBytes(path, "r"), expected);
    EXPECT_EQ(fake.busy, 0);
    remove(path.c_str());
}

TEST_F(CalFile, TextCopyMenuLinesCancelAndFailure) {
    const char* lines[4] = {"Calibration text file (Ch1)", "Calibration text file (Ch2)",
                            "Calibration text file(Ch3)", "Calibration text file (Ch4)"};
    for (int c = 0; c < 4; c++) {
        fake.statusLines.clear();
        CopyCalibrationToText(c);  // no file scripted: the chooser is cancelled
        EXPECT_EQ(fake.statusLines, (std::vector<std::string>{lines[c], "No file name selected"}));
    }
    fake.statusLines.clear();
    CopyCalibrationToText(4);  // no such channel
    fake.chosenFiles.push_back(TempTestPath("no-such-folder/x.txt"));
    CopyCalibrationToText(1);
    EXPECT_EQ(fake.statusLines,
              (std::vector<std::string>{"Calibration text file (Ch2)", "Error opening file"}));
    EXPECT_EQ(fake.chooseModes.size(), 5u);
    EXPECT_TRUE(fake.messageBoxes.empty());
    EXPECT_EQ(fake.busy, 0);
}

std::string Key(int channel) {
    char value[PathSize];
    ReadSettingWithDefault(KeyCalibrationFile[channel], "<absent>", value, PathSize);
    return value;
}

void SetKey(int channel, const std::string& value) {
    WriteSetting(KeyCalibrationFile[channel], value.c_str());
}

void SetStored(int channel, const std::string& value) {
    snprintf(recordingParams.calFileName[channel], PathSize, "%s", value.c_str());
}

const char* const UpdateQuestion = "\n\nDo you want to update the data file?";

using Reconciliation = FreshWorld;

TEST_F(Reconciliation, LoadOffersTheSurveysCurves) {
    statusFlags = STATUS_FULL_PATH;
    const std::string mast = CalTestFile("good.cal");
    SetKey(0, mast);  // the same name: nothing to do
    SetStored(0, mast);
    SetStored(1, "");  // no key and an empty name: "Default.cal" differs, can't open
    SetKey(2, "Current.cal");
    SetStored(2, mast);
    SetKey(3, "Current.cal");
    SetStored(3, mast);
    recordingParams.inputChannel = 3;
    ReconcileOnLoad();  // both switches off: nothing is asked or changed
    ReconcileOnSave();
    EXPECT_TRUE(fake.questions.empty() && fake.messageBoxes.empty());
    EXPECT_STREQ("", recordingParams.calFileName[1]);
    EXPECT_EQ(3, recordingParams.inputChannel);

    statusFlags |= STATUS_LOAD_STORED;
    fake.answers = {1, 0};
    ReconcileOnLoad();

    EXPECT_EQ(std::vector<std::string>{"Warning:\nOriginal calibration file \"\"\n"
                                       "for channel 2 does not exist"},
              fake.messageBoxes);
    EXPECT_EQ(std::vector<int>{ICON_EXCLAMATION}, fake.messageIcons);
    EXPECT_EQ(
        std::vector<std::string>(
            {"Do you want to load original calibration\nfile \"" + mast + "\" for channel 3?",
             "Do you want to load original calibration\nfile \"" + mast + "\" for channel 4?"}),
        fake.questions);
    // Yes: the key, the curve and the lookup follow the survey. No: nothing.
    EXPECT_EQ(mast, Key(2));
    EXPECT_EQ(3, CalTable[2].count);
    EXPECT_EQ(-2.5f, ChannelLookup[2][255]);
    EXPECT_EQ("Current.cal", Key(3));
    EXPECT_EQ(0, CalTable[3].count);
    EXPECT_EQ("<absent>", Key(1));
    // The survey itself is not changed.
    EXPECT_STREQ(mast.c_str(), recordingParams.calFileName[3]);
}

TEST_F(Reconciliation, SaveBringsTheSurveyUpToDateOnYes) {
    statusFlags = STATUS_CHECK_STORED;  // names shown without their folders
    SetStored(0, "");                   // no key: becomes "Default.cal" silently
    SetKey(1, "C:\\Cal\\New.cal");      // empty name: takes the key silently
    SetStored(1, "");
    SetKey(2, "C:\\Cal\\A.cal");  // differs only in case: asked, Yes
    SetStored(2, "C:\\Cal\\a.cal");
    SetKey(3, "Now.cal");  // asked, No
    SetStored(3, "C:\\Old\\Then.cal");
    currentInputChannel = 2;
    recordingParams.inputChannel = 0;
    fake.answers = {1, 0, 1};
    ReconcileOnSave();

    auto mismatch = [](const char* channel, const char* now, const char* then) {
        return std::string("Current channel ") + channel + " calibration file\n'" + now +
               "'\ndoes not match the calibration filename\n'" + then +
               "'\nstored in the data file" + UpdateQuestion;
    };
    EXPECT_EQ(std::vector<std::string>({mismatch("3", "A.cal", "a.cal"),
                                        mismatch("4", "Now.cal", "Then.cal"),
                                        std::string("Current TZR4100 input channel [3]\ndoes not "
                                                    "match the stored channel [1]\n in the data "
                                                    "file") +
                                            UpdateQuestion}),
              fake.questions);
    EXPECT_STREQ("Default.cal", recordingParams.calFileName[0]);
    EXPECT_STREQ("C:\\Cal\\New.cal", recordingParams.calFileName[1]);
    EXPECT_STREQ("C:\\Cal\\A.cal", recordingParams.calFileName[2]);
    EXPECT_STREQ("C:\\Old\\Then.cal", recordingParams.calFileName[3]);
    EXPECT_EQ(2, recordingParams.inputChannel);
    EXPECT_EQ("<absent>", Key(0));  // the settings are not written
}

struct ListingFile : ::testing::Test {
    std::string path;

    void SetUp() override {
        ResetFakeWorld();
        UseDefaultCurves();
        ChannelLookup[1][30] = 12.0f;
        path = fake.settingsFile + ".txt";
        remove(path.c_str());
        fake.now = 1614675907u;  // Tue 2 March 2021 09:05:07; the fake's local time is UTC
        recordCount = 3;
        for (int i = 0; i < 3; i++)  // readings 45.1 12.0 0.0 3.9
            recordStore.rows[i] = {0, 0, {115, 30, 0, 10}, -115123456, 417096000, 0};
        recordStore.rows[0].time = 1614675907u;
        recordStore.rows[1].flags = RECORD_HAS_CHANNEL;
        recordStore.rows[1].accessoryChannel = 7;
        recordStore.rows[2] = {RECORD_GPS_FIX, 9, {115, 30, 0, 10}, 0, -1, 1640476741u};
        const char* tags[3] = {"first", "gate, north side", "second"};
        const int32_t records[3] = {1, 2, 1};
        for (int t = 0; t < 3; t++) {
            tagRecord[t] = records[t];
            snprintf(tagText[t], TagTextSize, "%s", tags[t]);
        }
        tagCount = 3;
    }

    void TearDown() override { remove(path.c_str()); }

    std::string Contents() const { return ReadFileBytes(path, "r"); }
};

TEST_F(ListingFile, Lines) {
    snprintf(dataFileName, PathSize, "C:\\Surveys\\route.DAT");
    EXPECT_EQ(1, WriteListingFile(path.c_str()));
    EXPECT_EQ(
        "VELDOR -Listing text file\n\nCreated from route.DAT\n"
        "Written Tue Mar 02 09:05:07 2021\n\n"
        "2/3/2021 09:05:07 31.9787369 S 115.8600006 E 45.1 12.0 0.0 3.9\n"
        "31.9787369 S 115.8600006 E 45.1 12.0 0.0 3.9 7 first\n"
        "25/12/2021 23:59:01 0.0000000 N 0.0000003 W 45.1 12.0 0.0 3.9 gate, north side\n",
        Contents());
    std::string name = DisplayFileName(path.c_str());
    ASSERT_EQ(2u, fake.statusLines.size());
    EXPECT_EQ("Opening file '" + name + "'", fake.statusLines[0]);
    EXPECT_EQ("Data written to file '" + name + "'", fake.statusLines[1]);
    EXPECT_EQ(0, BusyCount());

    dataFileName[0] = '\0';
    remove(path.c_str());
    WriteListingFileSettings({{LATLONG_MILLISECONDS, SIGN_PLUS_MINUS, READING_RAW}, 3});
    EXPECT_EQ(1, WriteListingFile(path.c_str()));
    EXPECT_EQ(
        "VELDOR -Listing text file\n\nWritten Tue Mar 02 09:05:07 2021\n\n"
        "2/3/2021,09:05:07,-115123456,417096000,115,30,0,10\n"
        "-115123456,417096000,115,30,0,10,7,first\n"
        "25/12/2021,23:59:01,0,-1,115,30,0,10,gate, north side\n",
        Contents());
}

TEST_F(ListingFile, NoDataAndAMissingFolderAreRefused) {
    recordCount = 0;
    EXPECT_EQ(0, WriteListingFile(path.c_str()));
    EXPECT_EQ("No data to save", fake.messageBoxes.back());
    EXPECT_EQ(ICON_STOP, fake.messageIcons.back());
    EXPECT_EQ("<missing>", Contents());

    recordCount = 1;
    std::string bad = fake.settingsFile + ".missing-folder/listing.txt";
    EXPECT_EQ(0, WriteListingFile(bad.c_str()));
    EXPECT_EQ("Error opening file,\nData not saved", fake.messageBoxes.back());
    EXPECT_EQ(ICON_EXCLAMATION, fake.messageIcons.back());
    EXPECT_EQ(0, BusyCount());
}

// The four colours (high, mid, low, none) after reading a file of these bytes
// over the defaults.
std::vector<uint32_t> ColoursAfterReading(const std::string& bytes) {
    SetDefaultColours();
    std::string path = TempTestPath("colours.txt");
    WriteFileBytes(path, bytes);
    EXPECT_EQ(ReadColoursFile(path.c_str()), 1);
    remove(path.c_str());
    return {PlotColourHigh, PlotColourMid, PlotColourLow, PlotColourNone};
}

TEST(ColoursFile, LinesSetTheirColourAndBadLinesChangeNothing) {
    EXPECT_EQ(MakeColour(0x12, 0x34, 0x56), 0x00563412u);
    // Blue, green, red and black.
    const std::vector<uint32_t> defaults = {0x00FF0000u, 0x0000FF00u, 0x000000FFu, 0};
    EXPECT_EQ(ReadColoursFile("/no/such/folder/Colours.txt"), 0);
    EXPECT_EQ(ColoursAfterReading(""), defaults);

    std::string lines =
        "# High band yellow\n"
        "h 255 255 0\n"
        "H 300 0 0\n"  // out of range: the whole line is ignored
        "Z 1 2 3\n"    // not a colour
        "l 9 8 7\n"
        "#L 1 2 3\n"
        "L -1 0 0\n"  // negative reads as a huge unsigned number
        "L 5 6\n"     // too few numbers
        "L 5 x 6\n"
        " N 1 2 3\n"  // the letter must be in the first column
        "m10\t20 30 tail\n"
        "n 1 2 3\n"
        "N 4 5 6";  // the later line wins; no line end at the end
    EXPECT_EQ(ColoursAfterReading(lines), std::vector<uint32_t>({MakeColour(255, 255, 0),
                                                                 MakeColour(10, 20, 30),
                                                                 MakeColour(9, 8, 7),
                                                                 MakeColour(4, 5, 6)}));

    // Lines are read in pieces of 127 characters: the tail of a long comment
    // becomes a line of its own; a colour line cut before its last number is lost.
    std::string comment = "#" + std::string(126, '-') + "M 7 8 9\n";
    std::string cut = "H 1 2" + std::string(122, ' ') + "3\n";
    EXPECT_EQ(ColoursAfterReading(comment + cut),
              std::vector<uint32_t>({defaults[0], MakeColour(7, 8, 9), defaults[2], defaults[3]}));

    std::string garbage("H\0 1 2 3\n\xff\xfeL 9", 14);
    EXPECT_EQ(ColoursAfterReading(garbage + std::string(1000, '\xb7')), defaults);
}

}  // namespace
