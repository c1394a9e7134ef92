// Reads arbitrary bytes as a calibration file: the input is written to a
// temporary file and read back with ReadCalFile, then the lookup is built
// from whatever table resulted. The table never holds more than 256 points,
// a point is stored only when the file holds all 8 of its bytes, a failed
// read leaves the table as it was, and the busy count comes back to 0.
// An input whose first byte is odd gets the right magic in front of the rest,
// so that the fuzzer spends half its time behind the magic without seeds.
#include <stdlib.h>

#include "base/busy.h"
#include "fuzz_input.h"
#include "storage/cal_file.h"
#include "survey/cal_lookup.h"

static const std::string path = FuzzFilePath("cal");

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fake = FakePlatform();  // what the last input left in the fake
    std::string bytes;
    if (size > 0 && (data[0] & 1)) {
        bytes.assign(CalFileMagic, CalFileMagicSize);
        data++;
        size--;
    }
    bytes.append((const char*)data, size);
    if (!WriteFileBytes(path, bytes)) return 0;

    // Channel 3 is the last table and the last lookup row: a store past
    // either end is caught by AddressSanitizer.
    CalTable[3].count = -7;  // a marker that only a failed read keeps
    int ok = ReadCalFile(path.c_str(), 3);
    remove(path.c_str());  // libFuzzer may end the process without running atexit
    const int count = CalTable[3].count;
    if (count > CalMaxPoints || BusyCount() != 0) abort();
    // A read that succeeds stores whole points only (29 + 8 per point bytes must have been
    // there) and says nothing; one that fails keeps the marker and shows one message.
    if (ok && (count < 0 || !fake.messageBoxes.empty() ||
               (count > 0 && CalFileHeaderSize + CalFilePointSize * (size_t)count > bytes.size())))
        abort();
    if (!ok && (count != -7 || fake.messageBoxes.size() != 1)) abort();
    if (!ok) CalTable[3].count = 0;

    BuildChannelLookup(3);
    if (CalTable[3].count > CalMaxPoints || BusyCount() != 0) abort();
    return 0;
}
