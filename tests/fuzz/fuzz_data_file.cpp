// Loads arbitrary bytes as a data file and checks that the store and the tag
// table stay within their bounds with every text terminated. A file that
// loads is saved and loaded again and must come back the same.
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "storage/data_file.h"

static std::string inputPath;
static std::string againPath;

static void RemoveFiles() {
    remove(inputPath.c_str());
    remove(againPath.c_str());
}

static void Check(bool condition) {
    if (!condition) abort();
}

static bool Terminated(const char* text, size_t size) {
    return memchr(text, 0, size) != nullptr;
}

static void CheckInvariants() {
    Check(recordCount >= 0 && recordCount <= MaxRecords);
    Check(tagCount >= 0 && tagCount <= MaxTextTags);
    for (int i = 0; i < tagCount; i++) Check(Terminated(tagText[i], TagTextSize));
    for (int c = 0; c < 4; c++) {
        Check(Terminated(recordingParams.calFileName[c], PathSize));
        Check(Terminated(channelLabels[c], ChannelLabelSize));
    }
    Check(Terminated(dataFileName, PathSize));
    Check(fake.busy == 0);
}

struct Snapshot {
    RecordingParams params;
    std::vector<Record> rows;
    std::vector<int32_t> tagRecords;
    std::vector<std::string> tagTexts;
    std::vector<std::string> labels;
};

static Snapshot Take() {
    Snapshot s;
    s.params = recordingParams;
    s.rows.assign(recordStore.rows, recordStore.rows + recordCount);
    for (int i = 0; i < tagCount; i++) {
        s.tagRecords.push_back(tagRecord[i]);
        s.tagTexts.push_back(tagText[i]);
    }
    for (int c = 0; c < 4; c++) s.labels.push_back(channelLabels[c]);
    return s;
}

static bool Same(const Snapshot& a, const Snapshot& b) {
    if (a.params.startTime != b.params.startTime ||
        a.params.intervalSeconds != b.params.intervalSeconds ||
        a.params.intervalMeters != b.params.intervalMeters ||
        a.params.distanceMode != b.params.distanceMode ||
        a.params.inputChannel != b.params.inputChannel)
        return false;
    for (int c = 0; c < 4; c++)
        if (strcmp(a.params.calFileName[c], b.params.calFileName[c]) != 0) return false;
    if (a.rows.size() != b.rows.size()) return false;
    for (size_t i = 0; i < a.rows.size(); i++) {
        const Record& x = a.rows[i];
        const Record& y = b.rows[i];
        if (x.flags != y.flags || x.accessoryChannel != y.accessoryChannel ||
            memcmp(x.ch, y.ch, 4) != 0 || x.latitude != y.latitude || x.longitude != y.longitude ||
            x.time != y.time)
            return false;
    }
    return a.tagRecords == b.tagRecords && a.tagTexts == b.tagTexts && a.labels == b.labels;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (inputPath.empty()) {
        ResetFakeWorld();
        // A memory file system when there is one: every run writes two files.
        struct stat shm;
        const char* folder = stat("/dev/shm", &shm) == 0 ? "/dev/shm" : "/tmp";
        char name[64];
        snprintf(name, sizeof name, "%s/veldor-fuzz-%d.dat", folder, (int)getpid());
        inputPath = name;
        againPath = inputPath + ".again";
        atexit(RemoveFiles);
    }
    fake.statusLines.clear();
    fake.messageBoxes.clear();
    fake.messageIcons.clear();
    fake.repaints.clear();
    fake.notifications.clear();
    fake.scrollPositions.clear();
    statusFlags = 0;

    FILE* f = fopen(inputPath.c_str(), "wb");
    if (f == nullptr) return 0;
    fwrite(data, 1, size, f);
    fclose(f);

    snprintf(dataFileName, PathSize, "%s", inputPath.c_str());
    int loaded = LoadDataFile();
    CheckInvariants();
    if (!loaded) return 0;

    const Snapshot first = Take();
    snprintf(dataFileName, PathSize, "%s", againPath.c_str());
    Check(SaveDataFile() == 1);
    Check(LoadDataFile() == 1);
    CheckInvariants();
    Check(Same(first, Take()));
    return 0;
}
