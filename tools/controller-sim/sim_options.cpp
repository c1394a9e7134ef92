#include "sim_options.h"

#include <errno.h>
#include <math.h>
#include <stdlib.h>

namespace ctlsim {

namespace {

bool ToInt64(const std::string& text, int64_t lo, int64_t hi, int64_t* value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    const long long v = strtoll(text.c_str(), &end, 0);
    if (errno != 0 || *end != '\0' || v < lo || v > hi) return false;
    *value = v;
    return true;
}

bool ToDouble(const std::string& text, double lo, double hi, double* value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    const double v = strtod(text.c_str(), &end);
    if (errno != 0 || *end != '\0' || !isfinite(v) || v < lo || v > hi) return false;
    *value = v;
    return true;
}

bool ToSeed(const std::string& text, uint64_t* value) {
    if (text.empty() || text[0] == '-') return false;
    char* end = nullptr;
    errno = 0;
    const unsigned long long v = strtoull(text.c_str(), &end, 0);
    if (errno != 0 || *end != '\0') return false;
    *value = v;
    return true;
}

}  // namespace

std::string UsageText() {
    return "usage: controller-sim [options]\n"
           "  --link PATH            make PATH a symlink to the pty slave\n"
           "  --device PATH          use a serial device instead of a pty\n"
           "  --period-ms N          streaming period (default 1000)\n"
           "  --start-lat N          start latitude, ms of arc (default 185400000)\n"
           "  --start-lon N          start longitude, ms of arc (default -3600000)\n"
           "  --speed M/S            vehicle speed (default 10)\n"
           "  --lanes N              lanes of the pattern (default 8)\n"
           "  --lane-length M        length of a lane east-west (default 600)\n"
           "  --lane-spacing M       distance between lanes (default 50)\n"
           "  --level N              channel 1 at 5 m from the transmitter (default 220)\n"
           "  --fall N               fall of the level per decade of distance (default 60)\n"
           "  --replay SURVEY.DAT    play the records of a saved survey at its interval,\n"
           "                         divided by --speed N (default 1), then only answer\n"
           "  --seed N               seed of noise and faults (default 1)\n"
           "  --duration S           exit after S seconds (default: run until a signal)\n"
           "  --log FILE             log every frame received and sent\n"
           "  --record-file FILE     write each sample sent: lat lon c1 c2 c3 c4 acc\n"
           "  --self-test \"K C\"      answer OS with ET K C (default \"8 0\")\n"
           "  --gps-status N         ES value while tracking (default 48)\n"
           "  --keep-alive-ms N      KA after N ms without sending (default 5000)\n"
           "  --no-st                no ST text answers\n"
           "  --bad-check-every N    every Nth frame written gets a wrong check\n"
           "  --garbage-every N      every Nth frame written gets garbage before it\n"
           "  --split                write frames in random pieces with small delays\n"
           "  --lf-after-cr          a line feed after each frame's carriage return\n"
           "  --silence-after S      after S s of streaming, write nothing ...\n"
           "  --silence-for T        ... for T s (default 0)\n"
           "  --flood-na N           send N NA frames after the first OP 1\n"
           "  --verbose              copy the log to stderr\n"
           "  --help                 this text\n";
}

bool ParseOptions(int argc, const char* const* argv, Options* options, std::string* error) {
    Options result;
    SimConfig& sim = result.sim;
    uint64_t seed = 1;
    double speed = -1.0;
    for (int i = 1; i < argc; i++) {
        std::string name = argv[i];
        std::string value;
        bool hasValue = false;
        const size_t eq = name.find('=');
        if (name.compare(0, 2, "--") == 0 && eq != std::string::npos) {
            value = name.substr(eq + 1);
            name.resize(eq);
            hasValue = true;
        }
        // Flags without a value.
        if (name == "--help" || name == "-h") {
            result.help = true;
            continue;
        }
        if (name == "--no-st" || name == "--split" || name == "--lf-after-cr" ||
            name == "--verbose") {
            if (hasValue) {
                *error = name + " takes no value";
                return false;
            }
            if (name == "--no-st") sim.statusReplies = false;
            if (name == "--split") sim.faults.split = true;
            if (name == "--lf-after-cr") sim.faults.lfAfterCr = true;
            if (name == "--verbose") result.verbose = true;
            continue;
        }
        if (!hasValue) {
            if (i + 1 >= argc) {
                *error = "unknown option or missing value: " + name;
                return false;
            }
            value = argv[++i];
        }
        int64_t n = 0;
        double d = 0.0;
        bool ok = true;
        if (name == "--link") {
            result.link = value;
            ok = !value.empty();
        } else if (name == "--device") {
            result.device = value;
            ok = !value.empty();
        } else if (name == "--log") {
            result.logFile = value;
            ok = !value.empty();
        } else if (name == "--record-file") {
            result.recordFile = value;
            ok = !value.empty();
        } else if (name == "--period-ms") {
            ok = ToInt64(value, 10, 3600000, &n);
            sim.route.periodMs = n;
        } else if (name == "--start-lat") {
            ok = ToInt64(value, -324000000, 324000000, &n);
            sim.route.startLatitude = static_cast<int32_t>(n);
        } else if (name == "--start-lon") {
            ok = ToInt64(value, -648000000, 648000000, &n);
            sim.route.startLongitude = static_cast<int32_t>(n);
        } else if (name == "--speed") {
            ok = ToDouble(value, 0.0, 1000.0, &d);
            speed = d;
        } else if (name == "--lanes") {
            ok = ToInt64(value, 1, 1000, &n);
            sim.route.lanes = static_cast<int>(n);
        } else if (name == "--lane-length") {
            ok = ToDouble(value, 1.0, 1e6, &sim.route.laneLengthM);
        } else if (name == "--lane-spacing") {
            ok = ToDouble(value, 0.0, 1e6, &sim.route.laneSpacingM);
        } else if (name == "--level") {
            ok = ToDouble(value, 0.0, 1000.0, &sim.route.nearLevel);
        } else if (name == "--fall") {
            ok = ToDouble(value, 0.0, 1000.0, &sim.route.fallPerDecade);
        } else if (name == "--replay") {
            result.replayFile = value;
            ok = !value.empty();
        } else if (name == "--seed") {
            ok = ToSeed(value, &seed);
        } else if (name == "--duration") {
            ok = ToDouble(value, 0.0, 1e7, &d);
            result.durationS = d;
        } else if (name == "--self-test") {
            char* end = nullptr;
            errno = 0;
            const long kind = strtol(value.c_str(), &end, 0);
            const char* rest = end;
            const long code = strtol(rest, &end, 0);
            while (*end == ' ') end++;
            ok = errno == 0 && end != rest && *end == '\0' && kind >= 0 && kind <= 255 &&
                 code >= 0 && code <= 0xFFFF;
            sim.selfTestKind = static_cast<int>(kind);
            sim.selfTestCode = static_cast<int>(code);
        } else if (name == "--gps-status") {
            ok = ToInt64(value, 0, 255, &n);
            sim.gpsStatus = static_cast<int>(n);
        } else if (name == "--keep-alive-ms") {
            ok = ToInt64(value, 10, 3600000, &n);
            sim.keepAliveMs = n;
        } else if (name == "--bad-check-every") {
            ok = ToInt64(value, 0, 1000000, &n);
            sim.faults.badCheckEvery = static_cast<int>(n);
        } else if (name == "--garbage-every") {
            ok = ToInt64(value, 0, 1000000, &n);
            sim.faults.garbageEvery = static_cast<int>(n);
        } else if (name == "--silence-after") {
            ok = ToDouble(value, 0.0, 1e7, &d);
            sim.silenceAfterMs = static_cast<int64_t>(llround(d * 1000.0));
        } else if (name == "--silence-for") {
            ok = ToDouble(value, 0.0, 1e7, &d);
            sim.silenceForMs = static_cast<int64_t>(llround(d * 1000.0));
        } else if (name == "--flood-na") {
            ok = ToInt64(value, 0, 1000, &n);
            sim.floodNa = static_cast<int>(n);
        } else {
            *error = "unknown option: " + name;
            return false;
        }
        if (!ok) {
            *error = "bad value for " + name + ": '" + value + "'";
            return false;
        }
    }
    if (!result.link.empty() && !result.device.empty()) {
        *error = "--link and --device exclude each other";
        return false;
    }
    sim.route.seed = seed;
    if (!result.replayFile.empty() && speed == 0.0) {
        *error = "--speed must be above 0 with --replay";
        return false;
    }
    if (!result.replayFile.empty()) result.replaySpeed = speed > 0.0 ? speed : 1.0;
    else if (speed >= 0.0) sim.route.speedMps = speed;
    *options = result;
    return true;
}

}  // namespace ctlsim
