// The calibration lookup: each channel's curve of (power, value)
// points and the table of 256 floats built from it, so that a reading costs
// one indexed load: ChannelLookup[c][raw].
#ifndef VELDOR_SURVEY_CAL_LOOKUP_H
#define VELDOR_SURVEY_CAL_LOOKUP_H

#include <stdint.h>

constexpr int CalChannels = 4;
constexpr int CalMaxPoints = 256;   // the capacity of a table
constexpr int CalLookupSize = 256;  // one entry for each raw byte

// One point of a curve. The three bytes behind `power` have no meaning but
// are kept, so that they go back to a calibration file as they came from
// one; a table made by the editor holds 0 there. Only `power` is the
// raw byte.
struct CalPoint {
    uint8_t power;     // 0..255, the raw byte at which the point lies
    uint8_t spare[3];  // no meaning; read and written with the point
    float value;       // the calibrated value at that raw byte
};
static_assert(sizeof(CalPoint) == 8, "a CalPoint is the 8 bytes of a file point");

struct CalTableData {
    int32_t count;  // points in use
    CalPoint points[CalMaxPoints];
};

// The four channels' curves, for the life of the process.
extern CalTableData CalTable[CalChannels];

// ChannelLookup[c][r]: the calibrated value of raw byte r on channel c.
extern float ChannelLookup[CalChannels][CalLookupSize];

// Rebuilds ChannelLookup[channel] from CalTable[channel] in single precision,
// with a rounding after each operation. count 0 gives the identity; a count
// above 256 is cut to 256 and stored back. Entries below the first point and
// above the last are flat; a point's own entry holds its value bit for bit;
// a table out of order gives a shifted curve. The build never writes past the
// channel's 256 entries. A build with points runs between BeginBusy and
// EndBusy. A channel outside 0..3 is ignored.
void BuildChannelLookup(int channel);


// The default curve (0, 0.0)-(255, 100.0) into CalTable[channel], for a
// channel whose file can't be read; the caller builds the lookup.
void SetDefaultCalTable(int channel);

// Puts the four tables and lookups back to their state at process start
// (count 0, all zero). For tests.
void ResetCalibration();

#endif
