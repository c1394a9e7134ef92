// A saved survey (.DAT, v1.0 to v1.4) played back as the controller: the
// positions and readings of its records in order, and its interval. Read
// here with the simulator's own code, as an independent peer of the program.
#ifndef CONTROLLER_SIM_SIM_REPLAY_H
#define CONTROLLER_SIM_SIM_REPLAY_H

#include <stdint.h>

#include <string>
#include <vector>

#include "sim_route.h"

namespace ctlsim {

struct ReplaySurvey {
    int64_t intervalMs = 5000;       // "Record Interval Seconds" of the survey
    std::vector<Sample> samples;     // one per record
    std::vector<int> accessory;      // the record's accessory channel, 0 for none
};

// Reads the records of a data file; false with *error set when the file
// can't be read or has no known magic.
bool ReadReplaySurvey(const std::string& path, ReplaySurvey* survey, std::string* error);

}  // namespace ctlsim

#endif
