// Command line of controller-sim.
#ifndef CONTROLLER_SIM_SIM_OPTIONS_H
#define CONTROLLER_SIM_SIM_OPTIONS_H

#include <string>

#include "sim_controller.h"

namespace ctlsim {

struct Options {
    std::string link;        // --link: symlink to the pty slave
    std::string device;      // --device: a real serial device instead of a pty
    std::string logFile;     // --log
    std::string recordFile;  // --record-file
    double durationS = 0.0;  // --duration; 0: run until a signal
    bool verbose = false;    // --verbose: log lines to stderr too
    bool help = false;
    std::string replayFile;   // --replay: a saved survey instead of the route
    double replaySpeed = 1.0;  // --speed with --replay: the survey's interval divided by it
    SimConfig sim;
};

// Parses argv[1..argc-1]. Options take their value as the next argument or
// after '='. Returns false with *error set on a mistake.
bool ParseOptions(int argc, const char* const* argv, Options* options, std::string* error);

std::string UsageText();

}  // namespace ctlsim

#endif
