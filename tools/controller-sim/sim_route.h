// Where the simulated vehicle is and what the receiver measures there.
//
// The route is a lawn-mower pattern that begins at the start point: lanes
// running east and west, each `laneSpacingM` north of the one before, the
// first one eastward; after the last lane the vehicle drives the pattern back
// to the start, and so on. Sample k is taken k * speed * period metres along
// the route, so a sample depends on its index only, not on the timing.
// The transmitter stands at the centre of the pattern; each of the four
// channels measures a level that falls with the log of the distance, plus
// slow and fast fading, clamped to 0..255.
#ifndef CONTROLLER_SIM_SIM_ROUTE_H
#define CONTROLLER_SIM_SIM_ROUTE_H

#include <stdint.h>

namespace ctlsim {

// Milliseconds of arc per degree.
constexpr double kMasPerDegree = 3600000.0;
// Metres per degree of latitude (mean).
constexpr double kMetresPerDegree = 111320.0;

struct RouteConfig {
    int32_t startLatitude = 185400000;  // 51.5 N
    int32_t startLongitude = -3600000;  // 1.0 W
    double speedMps = 10.0;
    int64_t periodMs = 1000;
    double laneLengthM = 600.0;
    double laneSpacingM = 50.0;
    int lanes = 8;
    // Level of channel 1 at 5 m and nearer (before clamping to 0..255), and
    // its fall per decade of distance.
    double nearLevel = 220.0;
    double fallPerDecade = 60.0;
    uint64_t seed = 1;
};

struct Offset {
    double northM;
    double eastM;
};

struct Sample {
    int32_t latitude;
    int32_t longitude;
    int readings[4];
};

class RouteModel {
public:
    explicit RouteModel(const RouteConfig& config);

    // Length of the pattern driven once, start to far end.
    double PatternLength() const;
    // Offset from the start point after driving `distanceM` along the route.
    Offset OffsetAt(double distanceM) const;
    Offset OffsetOfSample(uint64_t index) const;
    int32_t LatitudeOf(const Offset& offset) const;
    int32_t LongitudeOf(const Offset& offset) const;
    double DistanceToTransmitter(const Offset& offset) const;

    // Mean level of a channel (0..3) at a distance, without fading.
    double MeanLevel(double distanceM, int channel) const;
    // The reading of a channel at a distance for sample `index`: mean level
    // plus fading, rounded and clamped to 0..255.
    int Reading(double distanceM, int channel, uint64_t index) const;

    Sample SampleAt(uint64_t index) const;

private:
    RouteConfig config_;
    double metresPerDegreeEast_;
    Offset transmitter_;
    double phase_[4][2];
};

}  // namespace ctlsim

#endif
