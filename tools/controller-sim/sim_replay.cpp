#include "sim_replay.h"

#include <stdio.h>
#include <string.h>

namespace ctlsim {

namespace {

int32_t Little32(const unsigned char* b) {
    return static_cast<int32_t>(static_cast<uint32_t>(b[0]) | (static_cast<uint32_t>(b[1]) << 8) |
                                (static_cast<uint32_t>(b[2]) << 16) |
                                (static_cast<uint32_t>(b[3]) << 24));
}

}  // namespace

bool ReadReplaySurvey(const std::string& path, ReplaySurvey* survey, std::string* error) {
    FILE* file = fopen(path.c_str(), "rb");
    if (file == nullptr) {
        *error = "cannot read " + path;
        return false;
    }
    std::vector<unsigned char> bytes;
    unsigned char chunk[65536];
    for (size_t n; (n = fread(chunk, 1, sizeof chunk, file)) > 0;) bytes.insert(bytes.end(), chunk, chunk + n);
    fclose(file);
    // Version 0..4 from the magic; where the record count stands in each.
    static const size_t kCountAt[5] = {1070, 1076, 1081, 1081, 1209};
    int version = -1;
    for (int v = 0; v < 5; v++) {
        char magic[32];
        snprintf(magic, sizeof magic, "[VELDOR - data file v1.%d]", v);
        if (bytes.size() >= 26 && memcmp(bytes.data(), magic, 26) == 0) version = v;
    }
    if (version < 0 || bytes.size() < kCountAt[version] + 4) {
        *error = path + " is no survey data file";
        return false;
    }
    ReplaySurvey result;
    if (version >= 1) result.intervalMs = 1000 * static_cast<int64_t>(Little32(&bytes[30]));
    if (result.intervalMs < 1000) result.intervalMs = 1000;
    const size_t size = version >= 3 ? 18 : 14;
    const int32_t count = Little32(&bytes[kCountAt[version]]);
    for (int32_t i = 0; i < count && i < 16000; i++) {
        const size_t at = kCountAt[version] + 4 + size * static_cast<size_t>(i);
        if (at + size > bytes.size()) break;
        const unsigned char* r = &bytes[at];
        Sample sample;
        for (int c = 0; c < 4; c++) sample.readings[c] = r[2 + c];
        sample.latitude = Little32(r + 6);
        sample.longitude = Little32(r + 10);
        result.samples.push_back(sample);
        result.accessory.push_back((r[0] & 0x08) != 0 ? r[1] : 0);
    }
    *survey = result;
    return true;
}

}  // namespace ctlsim
