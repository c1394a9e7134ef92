// The core's work that a user waits for, the best of a few runs each: the
// receiver taking frames apart in pieces of 1, 16 and 1024 bytes, against the
// 960 bytes a second that a 9600-baud line delivers; a full store's data file
// saved and loaded (344223 bytes, on the user-interface thread) and its
// listing file of 16000 lines.
#include <stdio.h>
#include <string.h>

#include <string>

#include "full_store.h"
#include "link/frame_codec.h"
#include "storage/data_file.h"
#include "storage/listing_file.h"

int main() {
    ResetFakeWorld();
    fake.portOpen = true;
    std::string stream;  // 1000 frames of a survey, RP and RA in turn
    for (int i = 0; i < 1000; i++) {
        char body[64];
        if (i % 2)
            snprintf(body, sizeof body, "RA %d %d %d %d %d", i & 255, (i * 3) & 255, 7, 9, i % 10);
        else
            snprintf(body, sizeof body, "RP %d %d", 185400000 + i, -3600000 - i);
        stream += Frame(body);
    }
    for (size_t pieceSize : {1, 16, 1024}) {
        char piece[1025];
        const double ms = BestMs([&] {
            for (size_t pos = 0; pos < stream.size(); pos += pieceSize) {
                const size_t n = stream.size() - pos < pieceSize ? stream.size() - pos : pieceSize;
                memcpy(piece, stream.data() + pos, n);
                ReceiveBytes(piece, (int)n);
            }
        });
        printf("decode %d bytes in pieces of %d: %.2f ms, %.0f times as fast as the line\n",
               (int)stream.size(), (int)pieceSize, ms, stream.size() / 0.960 / ms);
    }

    FillFullStore();
    int failed = 0;
    snprintf(dataFileName, PathSize, "%s", TempTestPath("bench.dat").c_str());
    const double save = BestMs([&] { failed |= SaveDataFile() != 1; });
    const double load = BestMs([&] {
        failed |= LoadDataFile() != 1 || recordCount != MaxRecords || tagCount != MaxTextTags;
    });
    remove(dataFileName);
    // In the default format: degrees, North/South, one decimal, space.
    const std::string path = TempTestPath("bench.txt");
    const double listing = BestMs([&] {
        remove(path.c_str());
        failed |= WriteListingFile(path.c_str()) != 1;
    });
    remove(path.c_str());
    printf(
        "data file of %d records and %d tags: save %.1f ms, load %.1f ms; listing file %.1f ms\n",
        MaxRecords, MaxTextTags, save, load, listing);
    return failed;
}
