// What the fuzz targets share: the fake world made once, and a file of this
// process for an input, in a memory folder where there is one (a run is
// about 30 times faster there than on disk).
#pragma once

#include <stdint.h>
#include <unistd.h>

#include <string>

#include "fake_platform.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    ResetFakeWorld();
    return 0;
}

inline std::string FuzzFilePath(const char* name) {
    const char* folder = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    return std::string(folder) + "/veldor-fuzz-" + std::to_string(getpid()) + "-" + name;
}
