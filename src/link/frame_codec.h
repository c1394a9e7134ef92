// Frames on the controller line: "#<body>:<check>" and a carriage return,
// the check being the CRC-8/MAXIM of the body in two hexadecimal digits.
#ifndef VELDOR_LINK_FRAME_CODEC_H
#define VELDOR_LINK_FRAME_CODEC_H

#include <stdint.h>

constexpr int ReceiveBufferSize = 1024;
constexpr int LastFrameSize = 1024;
constexpr int MaxFrameBody = 122;
constexpr int MaxRetransmissions = 5;

// Bytes received that do not yet end in a carriage return.
extern char receiveBuffer[ReceiveBufferSize];
// The complete last frame sent, '#' to carriage return.
extern char lastFrame[LastFrameSize];
extern int32_t retransmitCount;
extern int32_t keepAliveTicks;

// CRC-8/MAXIM: reflected polynomial 0x8C, initial 0, no final XOR. 0 for a
// length below 1.
uint8_t Crc8(const char* bytes, int length);

// Frames the body (at most 122 characters; '#' and carriage return in it are
// replaced by blanks, in place) and writes it to the port. Returns 0 when the
// port is closed or the body is null or empty.
int SendFrame(char* body);
// The same for a constant body, copied first.
int SendFrameText(const char* body);
// printf-style body.
int SendFramef(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

// Feeds a piece read from the port. data must have room for one byte behind
// length (the piece is terminated there). The body of each frame whose check
// holds goes to handleBody; any other frame is answered with "NA". Always
// returns 1.
int ReceiveBytes(char* data, int length, int (*handleBody)(const char* body));
// The same with the controller's messages as the handler
// (HandleControllerMessage, controller_messages.cpp).
int ReceiveBytes(char* data, int length);

// Empties the receive buffer and the last frame; called at each port open.
void ResetFrameCodec();

#endif
