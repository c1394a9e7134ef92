// Reads arbitrary bytes as a calibration file: the input is written to a
// temporary file and read back with ReadCalFile, then the lookup is built
// from whatever table resulted. The table never holds more than 256 points,
// a point is stored only when the file holds all 8 of its bytes, a failed
// read leaves the table as it was, and the busy count comes back to 0.
// An input whose first byte is odd gets the right magic in front of the rest,
// so that the fuzzer spends half its time behind the magic without seeds.
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/busy.h"
#include "fake_platform.h"
#include "storage/cal_file.h"
#include "survey/cal_lookup.h"

#ifdef _WIN32
#include <process.h>
#define getpid _getpid
#else
#include <unistd.h>
#endif

static char path[260];

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (path[0] == '\0') {
        ResetFakeWorld();
        // Memory-backed /dev/shm where there is one: a run is ~30
        // times faster there than on disk.
        const char* dir = "/dev/shm";
        snprintf(path, sizeof path, "%s/veldor-fuzz-cal-%d.cal", dir, (int)getpid());
        FILE* probe = fopen(path, "wb");
        if (probe != nullptr) {
            fclose(probe);
        } else {
            dir = getenv("TMPDIR");
            if (dir == nullptr || dir[0] == '\0') dir = "/tmp";
            snprintf(path, sizeof path, "%s/veldor-fuzz-cal-%d.cal", dir, (int)getpid());
        }
    }
    fake.statusLines.clear();
    fake.messageBoxes.clear();
    fake.messageIcons.clear();

    size_t fileSize = size;
    FILE* f = fopen(path, "wb");
    if (f == nullptr) return 0;
    if (size > 0 && (data[0] & 1)) {
        fwrite(CalFileMagic, 1, CalFileMagicSize, f);
        data++;
        size--;
        fileSize = (size_t)CalFileMagicSize + size;
    }
    if (size > 0 && fwrite(data, 1, size, f) != size) {
        fclose(f);
        return 0;
    }
    fclose(f);

    // Channel 3 is the last table and the last lookup row: a store past
    // either end is caught by AddressSanitizer.
    const int channel = 3;
    CalTable[channel].count = -7;  // a marker that only a failed read keeps
    int ok = ReadCalFile(path, channel);
    remove(path);  // libFuzzer may end the process without running atexit
    if (CalTable[channel].count > CalMaxPoints) abort();
    if (ok) {
        if (CalTable[channel].count < 0) abort();
        // Whole points only: 29 + 8 per point bytes must have been there.
        if ((size_t)CalFileHeaderSize + (size_t)CalFilePointSize * (size_t)CalTable[channel].count >
                fileSize &&
            CalTable[channel].count > 0)
            abort();
        if (!fake.messageBoxes.empty()) abort();
    } else {
        if (CalTable[channel].count != -7) abort();
        if (fake.messageBoxes.size() != 1) abort();
        CalTable[channel].count = 0;
    }
    if (BusyCount() != 0) abort();

    BuildChannelLookup(channel);
    if (CalTable[channel].count > CalMaxPoints) abort();
    if (BusyCount() != 0) abort();
    return 0;
}
