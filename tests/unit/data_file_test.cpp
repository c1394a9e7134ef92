#include "storage/data_file.h"

#include <gtest/gtest.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "views/plot_geometry.h"

#ifdef _WIN32
#include <direct.h>
#include <process.h>
#define getpid _getpid
#define MakeFolder(path) _mkdir(path)
#else
#include <unistd.h>
#define MakeFolder(path) mkdir(path, 0755)
#endif

namespace {

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

// The records that make_data_files.py writes.
struct ExpectedRecord {
    uint8_t flags, channel, ch[4];
    int32_t latitude, longitude;
    uint32_t time;
};
const ExpectedRecord FileRecords[4] = {
    {0x14, 0, {10, 20, 30, 40}, 185400000, -3600000, 1600000000u},
    {0x3C, 7, {255, 0, 128, 1}, -324000000, 648000000, 1600000005u},
    {0x81, 99, {1, 2, 3, 4}, -1, 2147483647, 4294967295u},
    {0x00, 0, {200, 201, 202, 203}, 324000000, -648000000, 0u},
};

void ExpectFileRecords(int count, bool withTime) {
    ASSERT_EQ(count, recordCount);
    for (int i = 0; i < count; i++) {
        const Record& r = recordStore.rows[i];
        const ExpectedRecord& e = FileRecords[i];
        EXPECT_EQ(e.flags, r.flags) << i;
        EXPECT_EQ(e.channel, r.accessoryChannel) << i;
        for (int c = 0; c < 4; c++) EXPECT_EQ(e.ch[c], r.ch[c]) << i;
        EXPECT_EQ(e.latitude, r.latitude) << i;
        EXPECT_EQ(e.longitude, r.longitude) << i;
        EXPECT_EQ(withTime ? e.time : 0u, r.time) << i;
    }
}

class DataFile : public ::testing::Test {
protected:
    void SetUp() override { ResetFakeWorld(); }
};

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
        // v1.0: intervals and distance supplied, the current input channel kept
        // and copied, no times, tags and labels untouched.
        {"v1_0.dat", 1000000000u, 5, 500, 0, 2, 3, false, old, "Old label"},
        // v1.1: the input channel directly behind the seconds (offset 34); bytes
        // behind the last record are ignored.
        {"v1_1.dat", 1100000000u, 7, 500, 0, 2, 4, false, old, "Old label"},
        // v1.2: the input channel behind distanceMode (offset 39); tags read
        // although the records have no times.
        {"v1_2.dat", 1200000000u, 10, 250, 1, 3, 3, false, Tags(all.begin(), all.begin() + 2),
         "Old label"},
        // v1.3: times; old buffer contents behind every NUL and bytes behind
        // the trailer mean nothing.
        {"v1_3.dat", 1300000000u, 2, 1000, 0, 1, 4, true, all, "Old label"},
        {"v1_4.dat", 1400000000u, 3, 20, 1, 0, 4, true, all, "North mast"},
    };
    FillPreviousSurvey();
    currentInputChannel = 2;
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

TEST_F(DataFile, OddButReadableCounts) {
    // A negative record count reads no records and goes on to the tags.
    FillPreviousSurvey();
    UseFile(TestFile("negative_record_count.dat"));
    ASSERT_EQ(1, LoadDataFile());
    EXPECT_EQ(0, recordCount);
    ASSERT_EQ(1, tagCount);
    EXPECT_STREQ("Start of run", tagText[0]);

    // Only the low 16 bits of the tag count count.
    UseFile(TestFile("tag_count_high_bits.dat"));
    ASSERT_EQ(1, LoadDataFile());
    EXPECT_EQ(1, recordCount);
    EXPECT_EQ(2, tagCount);

    // A v1.1 file cut inside its third record has no trailer to miss: the
    // whole records are read and the load succeeds.
    UseFile(TestFile("truncated_v1_1.dat"));
    ASSERT_EQ(1, LoadDataFile());
    ExpectFileRecords(2, false);
    EXPECT_TRUE(fake.messageBoxes.empty());
}

TEST_F(DataFile, FailedSaveKeepsThePreviousFile) {
    std::string path = TempTestPath("keep.dat");
    UseFile(path);
    recordCount = 1;
    ASSERT_EQ(1, SaveDataFile());
    std::string good = ReadFileBytes(path);

    // The temporary file can't be made: nothing is written.
    std::string blocker = path + ".tmp";
    ASSERT_EQ(0, MakeFolder(blocker.c_str()));
    recordCount = 3;
    EXPECT_EQ(0, SaveDataFile());
    EXPECT_EQ(std::vector<std::string>{"Error opening file, data not saved"}, fake.messageBoxes);
    EXPECT_EQ(good, ReadFileBytes(path));
    EXPECT_EQ(0, fake.busy);
    rmdir(blocker.c_str());

    // The file can't be replaced (the name is a folder with something in it):
    // the temporary file goes and the folder stays.
    fake.messageBoxes.clear();
    std::string folder = TempTestPath("folder.dat");
    ASSERT_EQ(0, MakeFolder(folder.c_str()));
    std::string inside = folder + "/inside";
    ASSERT_EQ(1, WriteFileBytes(inside, "x"));
    UseFile(folder);
    EXPECT_EQ(0, SaveDataFile());
    EXPECT_EQ(std::vector<std::string>{"Error writing file, data not saved"}, fake.messageBoxes);
    EXPECT_EQ("<missing>", ReadFileBytes(folder + ".tmp"));
    EXPECT_EQ("x", ReadFileBytes(inside));

    // No name.
    fake.messageBoxes.clear();
    dataFileName[0] = '\0';
    EXPECT_EQ(0, SaveDataFile());
    EXPECT_EQ(std::vector<std::string>{"Error opening file, data not saved"}, fake.messageBoxes);

    remove(inside.c_str());
    rmdir(folder.c_str());
    remove(path.c_str());
}

}  // namespace
