// Loads arbitrary bytes as a data file and checks that the store and the tag
// table stay within their bounds with every text terminated. A file that
// loads is saved and loaded again and must come back the same.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "fuzz_input.h"
#include "storage/data_file.h"

static const std::string inputPath = FuzzFilePath("input.dat");
static const std::string againPath = FuzzFilePath("again.dat");

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

// Everything a data file holds: the records as they lie in memory.
static std::string Survey() {
    const RecordingParams& p = recordingParams;
    char line[128];
    snprintf(line, sizeof line, "%u %d %d %d %d\n", p.startTime, p.intervalSeconds,
             p.intervalMeters, p.distanceMode, p.inputChannel);
    std::string s = line;
    for (int c = 0; c < 4; c++) s += std::string(p.calFileName[c]) + "|" + channelLabels[c] + "\n";
    s.append((const char*)recordStore.rows, sizeof(Record) * (size_t)recordCount);
    for (int i = 0; i < tagCount; i++) s += std::to_string(tagRecord[i]) + "|" + tagText[i] + "\n";
    return s;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fake = FakePlatform();  // what the last input left in the fake
    statusFlags = 0;
    if (!WriteFileBytes(inputPath, std::string((const char*)data, size))) return 0;
    snprintf(dataFileName, PathSize, "%s", inputPath.c_str());
    int loaded = LoadDataFile();
    remove(inputPath.c_str());
    CheckInvariants();
    if (!loaded) return 0;

    const std::string first = Survey();
    snprintf(dataFileName, PathSize, "%s", againPath.c_str());
    Check(SaveDataFile() == 1);
    Check(LoadDataFile() == 1);
    remove(againPath.c_str());
    CheckInvariants();
    Check(Survey() == first);
    return 0;
}
