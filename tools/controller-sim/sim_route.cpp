#include "sim_route.h"

#include <math.h>

#include "sim_rng.h"

namespace ctlsim {

namespace {

const double kPi = 3.14159265358979323846;
const double kNearDistanceM = 5.0;
const double kChannelOffset[4] = {0.0, -12.0, -24.0, -36.0};
// Slow fading: two waves along the route; fast fading: Gaussian per sample.
const double kSlowAmplitude[2] = {5.0, 3.0};
const double kSlowWavelengthM[2] = {137.0, 41.0};
const double kFastSigma = 3.0;

}  // namespace

RouteModel::RouteModel(const RouteConfig& config)
    : config_(config), metresPerDegreeEast_(0.0), transmitter_(), phase_() {
    if (config_.lanes < 1) config_.lanes = 1;
    if (config_.laneLengthM < 1.0) config_.laneLengthM = 1.0;
    if (config_.laneSpacingM < 0.0) config_.laneSpacingM = 0.0;
    if (config_.periodMs < 1) config_.periodMs = 1;
    double cosLat = cos(config_.startLatitude / kMasPerDegree * kPi / 180.0);
    if (cosLat < 0.01) cosLat = 0.01;
    metresPerDegreeEast_ = kMetresPerDegree * cosLat;
    transmitter_.northM = (config_.lanes - 1) * config_.laneSpacingM / 2.0;
    transmitter_.eastM = config_.laneLengthM / 2.0;
    Rng rng(HashSeed(config_.seed, 0x51F0));
    for (auto& channel : phase_) {
        for (double& phase : channel) phase = rng.Unit() * 2.0 * kPi;
    }
}

double RouteModel::PatternLength() const {
    return config_.lanes * config_.laneLengthM + (config_.lanes - 1) * config_.laneSpacingM;
}

Offset RouteModel::OffsetAt(double distanceM) const {
    const double length = PatternLength();
    if (distanceM < 0.0) distanceM = 0.0;
    // Forth and back: fold the distance into one pass of the pattern.
    double s = fmod(distanceM, 2.0 * length);
    if (s > length) s = 2.0 * length - s;
    const double legPair = config_.laneLengthM + config_.laneSpacingM;
    int lane = static_cast<int>(s / legPair);
    if (lane >= config_.lanes) lane = config_.lanes - 1;
    double along = s - lane * legPair;
    Offset offset;
    if (along <= config_.laneLengthM) {
        offset.northM = lane * config_.laneSpacingM;
        offset.eastM = (lane % 2 == 0) ? along : config_.laneLengthM - along;
    } else {
        // On the short leg north to the next lane.
        offset.northM = lane * config_.laneSpacingM + (along - config_.laneLengthM);
        offset.eastM = (lane % 2 == 0) ? config_.laneLengthM : 0.0;
    }
    return offset;
}

Offset RouteModel::OffsetOfSample(uint64_t index) const {
    const double distance = static_cast<double>(index) * config_.speedMps *
                            static_cast<double>(config_.periodMs) / 1000.0;
    return OffsetAt(distance);
}

int32_t RouteModel::LatitudeOf(const Offset& offset) const {
    return static_cast<int32_t>(
        llround(config_.startLatitude + offset.northM / kMetresPerDegree * kMasPerDegree));
}

int32_t RouteModel::LongitudeOf(const Offset& offset) const {
    return static_cast<int32_t>(
        llround(config_.startLongitude + offset.eastM / metresPerDegreeEast_ * kMasPerDegree));
}

double RouteModel::DistanceToTransmitter(const Offset& offset) const {
    const double dn = offset.northM - transmitter_.northM;
    const double de = offset.eastM - transmitter_.eastM;
    return sqrt(dn * dn + de * de);
}

double RouteModel::MeanLevel(double distanceM, int channel) const {
    if (channel < 0 || channel > 3) channel = 0;
    const double d = distanceM > kNearDistanceM ? distanceM : kNearDistanceM;
    return config_.nearLevel - config_.fallPerDecade * log10(d / kNearDistanceM) +
           kChannelOffset[channel];
}

int RouteModel::Reading(double distanceM, int channel, uint64_t index) const {
    if (channel < 0 || channel > 3) channel = 0;
    const double travelled = static_cast<double>(index) * config_.speedMps *
                             static_cast<double>(config_.periodMs) / 1000.0;
    double level = MeanLevel(distanceM, channel);
    for (int k = 0; k < 2; k++) {
        level += kSlowAmplitude[k] *
                 sin(2.0 * kPi * travelled / kSlowWavelengthM[k] + phase_[channel][k]);
    }
    Rng fast(HashSeed(config_.seed, index, static_cast<uint64_t>(channel) + 1));
    level += kFastSigma * fast.Gaussian();
    long value = lround(level);
    if (value < 0) value = 0;
    if (value > 255) value = 255;
    return static_cast<int>(value);
}

Sample RouteModel::SampleAt(uint64_t index) const {
    const Offset offset = OffsetOfSample(index);
    Sample sample;
    sample.latitude = LatitudeOf(offset);
    sample.longitude = LongitudeOf(offset);
    const double distance = DistanceToTransmitter(offset);
    for (int channel = 0; channel < 4; channel++) {
        sample.readings[channel] = Reading(distance, channel, index);
    }
    return sample;
}

}  // namespace ctlsim
