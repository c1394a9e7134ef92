#include "sim_frame.h"

#include <stdio.h>

namespace ctlsim {

namespace {

const char kBannerFirstLine[] = "VELDOR (Software)";

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

std::string StripLineFeeds(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        if (c != '\n') out.push_back(c);
    }
    return out;
}

}  // namespace

uint8_t Crc8(const char* bytes, size_t length) {
    uint8_t crc = 0;
    if (bytes == nullptr) return 0;
    for (size_t i = 0; i < length; i++) {
        uint8_t byte = static_cast<uint8_t>(bytes[i]);
        for (int bit = 0; bit < 8; bit++) {
            const bool mix = ((byte ^ crc) & 1) != 0;
            crc = static_cast<uint8_t>(crc >> 1);
            if (mix) crc ^= 0x8C;
            byte = static_cast<uint8_t>(byte >> 1);
        }
    }
    return crc;
}

uint8_t Crc8(const std::string& text) {
    return Crc8(text.data(), text.size());
}

std::string FormatFrame(const std::string& body) {
    std::string clean = body;
    for (char& c : clean) {
        if (c == '#' || c == '\r') c = ' ';
    }
    char check[8];
    snprintf(check, sizeof check, ":%02X\r", Crc8(clean));
    return "#" + clean + check;
}

bool ParseFrameLine(const std::string& line, std::string* body) {
    const size_t n = line.size();
    if (n < 4 || line[0] != '#' || line[n - 3] != ':') return false;
    const int high = HexValue(line[n - 2]);
    const int low = HexValue(line[n - 1]);
    if (high < 0 || low < 0) return false;
    std::string text = line.substr(1, n - 4);
    for (char c : text) {
        const unsigned char u = static_cast<unsigned char>(c);
        if (u < 0x20 || u > 0x7E || c == '#') return false;
    }
    if (Crc8(text) != static_cast<uint8_t>(high * 16 + low)) return false;
    if (body != nullptr) *body = text;
    return true;
}

std::string EscapeText(const std::string& text) {
    std::string out;
    for (char c : text) {
        const unsigned char u = static_cast<unsigned char>(c);
        if (c == '\\') {
            out += "\\\\";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (u >= 0x20 && u <= 0x7E) {
            out.push_back(c);
        } else {
            char hex[8];
            snprintf(hex, sizeof hex, "\\x%02X", u);
            out += hex;
        }
    }
    return out;
}

void LineReceiver::Reset() {
    buffer_.clear();
    bannerPhase_ = true;
}

void LineReceiver::Feed(const char* data, size_t length, std::vector<InboundLine>* out) {
    for (size_t i = 0; i < length; i++) {
        const char c = data[i];
        if (c == '\r') {
            std::string line;
            line.swap(buffer_);
            HandleLine(line, out);
            continue;
        }
        if (buffer_.size() >= kMaxLine) {
            // No carriage return for too long: drop what is buffered as one
            // bad line and start afresh with this byte.
            std::string line;
            line.swap(buffer_);
            out->push_back(InboundLine{InboundLine::kBad, line});
        }
        buffer_.push_back(c);
    }
}

void LineReceiver::HandleLine(const std::string& line, std::vector<InboundLine>* out) {
    const std::string stripped = StripLineFeeds(line);
    if (stripped.empty()) return;
    const std::string lead = line.substr(line.find_first_not_of('\n'));
    if (bannerPhase_ && lead[0] != '#') {
        out->push_back(InboundLine{InboundLine::kBanner, stripped});
        return;
    }
    if (!bannerPhase_ && stripped == kBannerFirstLine) {
        bannerPhase_ = true;
        out->push_back(InboundLine{InboundLine::kBanner, stripped});
        return;
    }
    // In the banner phase the first frame may still carry the banner's line
    // feeds in front of its '#'; they belong to the banner.
    const std::string& candidate = bannerPhase_ ? lead : line;
    bannerPhase_ = false;
    std::string body;
    if (ParseFrameLine(candidate, &body)) {
        out->push_back(InboundLine{InboundLine::kGood, body});
    } else {
        out->push_back(InboundLine{InboundLine::kBad, line});
    }
}

}  // namespace ctlsim
