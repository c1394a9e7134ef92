// Frame code of the controller simulator: its own implementation of the
// "#<body>:<check>\r" format, written from the protocol, independent of the
// program's sources. Pure logic, no I/O.
#ifndef CONTROLLER_SIM_SIM_FRAME_H
#define CONTROLLER_SIM_SIM_FRAME_H

#include <stddef.h>
#include <stdint.h>

#include <string>
#include <vector>

namespace ctlsim {

// CRC-8/MAXIM (Dallas 1-Wire): reflected polynomial 0x8C, initial value 0,
// no final XOR. "123456789" gives 0xA1; an empty text gives 0.
uint8_t Crc8(const char* bytes, size_t length);
uint8_t Crc8(const std::string& text);

// "#%s:%02X\r" with the check of the body. '#' and carriage return in the body
// are replaced by blanks first, and the check covers the replaced text.
std::string FormatFrame(const std::string& body);

// Strict check of one line (carriage return already removed): '#', a body of
// printable ASCII without '#', ':', two hexadecimal digits (either case) that
// equal the check of the body. On success *body gets the body.
bool ParseFrameLine(const std::string& line, std::string* body);

// Printable text for the log: printable ASCII as is, backslash doubled, CR, LF
// and tab as \r \n \t, anything else as \xHH.
std::string EscapeText(const std::string& text);

// What the receiver made of one line.
struct InboundLine {
    enum Kind {
        kGood,    // a good frame; text is its body
        kBad,     // a bad line (bad check, garbage, wrong format, overflow); text is the raw line
        kBanner,  // unframed text taken as the PC's banner; text has its line feeds removed
    };
    Kind kind;
    std::string text;
};

// Rebuilds lines from arbitrary pieces. Lines end at a carriage return; a
// line of nothing but line feeds (or nothing) is ignored in any phase.
//
// Banner phase: at the start, after Reset() and after AllowBanner(). In it, a
// line that does not start with '#' (line feeds in front skipped) is banner
// text, given with its line feeds removed. The first line that does start
// with '#' ends the phase and is handled as a frame, the line feeds in front
// of it skipped. Outside the banner phase a line is a good frame or a bad
// line, taken exactly as received (a line feed in front of '#' makes it bad),
// except that a line reading "VELDOR (Software)" (the first line of the PC's
// banner, sent again each time the PC opens its port) is banner text and
// starts the banner phase again.
class LineReceiver {
public:
    static constexpr size_t kMaxLine = 1023;

    void Feed(const char* data, size_t length, std::vector<InboundLine>* out);
    // Empties the buffer and starts the banner phase.
    void Reset();
    void AllowBanner() { bannerPhase_ = true; }
    bool InBannerPhase() const { return bannerPhase_; }
    size_t Buffered() const { return buffer_.size(); }

private:
    void HandleLine(const std::string& line, std::vector<InboundLine>* out);

    std::string buffer_;
    bool bannerPhase_ = true;
};

}  // namespace ctlsim

#endif
