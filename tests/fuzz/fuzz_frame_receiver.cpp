// Feeds arbitrary bytes to the frame receiver in pieces of arbitrary size, as
// the serial reader would, with the link state checked after every piece.
#include <stdlib.h>
#include <string.h>

#include "fuzz_input.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fake = FakePlatform();  // what the last input left in the fake
    ResetFrameCodec();
    fake.portOpen = true;
    statusFlags = (size > 0 && (data[0] & 1)) ? (STATUS_RECORDING | STATUS_AVERAGING) : 0;

    // The first byte of each chunk gives the length of the piece behind it.
    char piece[1025 + 1];
    size_t pos = 0;
    while (pos < size) {
        size_t length = data[pos++] * 4u + 1;
        if (length > 1025) length = 1025;
        if (length > size - pos) length = size - pos;
        memcpy(piece, data + pos, length);
        pos += length;
        ReceiveBytes(piece, (int)length);
        if (strlen(receiveBuffer) > 1023) abort();
        if (retransmitCount < 0 || retransmitCount > 5) abort();
        if (averageHistory.readingHistoryCount > 3 || averageHistory.positionHistoryCount > 3)
            abort();
    }
    // Everything sent back must be whole frames.
    for (const std::string& w : fake.writes) {
        if (w.size() < 5 || w[0] != '#' || w[w.size() - 1] != '\r') abort();
    }
    return 0;
}
