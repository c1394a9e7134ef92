// Helpers for the simulator's tests: drive a Controller with a fake clock and
// decode what it wrote.
#ifndef CONTROLLER_SIM_TESTS_SIM_TEST_UTIL_H
#define CONTROLLER_SIM_TESTS_SIM_TEST_UTIL_H

#include <string>
#include <vector>

#include "sim_controller.h"
#include "sim_frame.h"

namespace ctlsim {

// Splits written bytes at carriage returns; each line must be a good frame,
// else "!BAD <line>" stands in its place.
inline std::vector<std::string> DecodeWire(const std::string& wire) {
    std::vector<std::string> bodies;
    std::string line;
    for (char c : wire) {
        if (c != '\r') {
            line.push_back(c);
            continue;
        }
        std::string body;
        bodies.push_back(ParseFrameLine(line, &body) ? body : "!BAD " + line);
        line.clear();
    }
    return bodies;
}

class Harness {
public:
    explicit Harness(const SimConfig& config = SimConfig()) : controller(config) {
        controller.Start(0);
    }

    // Sends raw bytes at the current time.
    void Raw(const std::string& bytes) {
        std::vector<Action> actions;
        controller.OnBytes(bytes.data(), bytes.size(), now, &actions);
        Take(actions);
    }
    // Sends a framed body.
    void Frame(const std::string& body) { Raw(FormatFrame(body)); }
    // Moves the clock on in steps of `stepMs`, ticking at each.
    void Advance(int64_t ms, int64_t stepMs = 10) {
        const int64_t end = now + ms;
        while (now < end) {
            now += stepMs;
            if (now > end) now = end;
            std::vector<Action> actions;
            controller.OnTick(now, &actions);
            Take(actions);
        }
    }
    // Bodies written since the last call.
    std::vector<std::string> Sent() {
        std::vector<std::string> bodies = DecodeWire(wire);
        wire.clear();
        return bodies;
    }
    // Bodies that start with `code`.
    static std::vector<std::string> WithCode(const std::vector<std::string>& bodies,
                                             const std::string& code) {
        std::vector<std::string> out;
        for (const std::string& body : bodies) {
            if (body.compare(0, code.size(), code) == 0) out.push_back(body);
        }
        return out;
    }

    Controller controller;
    int64_t now = 0;
    std::string wire;
    std::vector<std::string> logs;
    std::vector<std::string> records;

private:
    void Take(const std::vector<Action>& actions) {
        for (const Action& action : actions) {
            if (!action.log.empty()) logs.push_back(action.log);
            for (const Piece& piece : action.pieces) wire += piece.bytes;
            if (!action.record.empty()) records.push_back(action.record);
        }
    }
};

}  // namespace ctlsim

#endif
