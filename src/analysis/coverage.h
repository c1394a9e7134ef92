// Is the area covered? The drive-test answer to a survey: local means over
// stretches of route, square tiles judged by the local means in them, the
// share of tiles that reach a level (area reliability) with its lower bound,
// and the tile-by-tile difference of two surveys.
//
// Portable and free of the program's state: it takes rows and a channel's
// lookup table, so that veldor-export uses it and the program could.
#ifndef VELDOR_ANALYSIS_COVERAGE_H
#define VELDOR_ANALYSIS_COVERAGE_H

#include <stdint.h>

#include "survey/survey_state.h"

constexpr int COVERAGE_MEDIAN = 0;
constexpr int COVERAGE_P10 = 1;

struct CoverageSettings {
    double windowMetres;  // path length of one local mean
    int minSamples;       // fewer samples: the window is under-sampled
    double tileMetres;    // side of a tile
    int statistic;        // COVERAGE_MEDIAN or COVERAGE_P10 decides a tile's pass
    double threshold;     // a tile passes when its statistic is at or above it
    double confidence;    // of the one-sided lower bound, 0.5 .. 0.9999
    int linear;           // 1: values averaged as they stand; 0: as dB (power)
};

// A flat frame in metres: east and north of the south-west corner of the
// surveys' fixed positions, with metres per degree at their mean latitude.
struct CoverageGrid {
    int32_t southLatitude;  // milliseconds of arc
    int32_t westLongitude;
    double metresPerMasNorth;
    double metresPerMasEast;
    double meanLatitudeDegrees;
};

struct LocalMean {
    double east, north;  // the centre (mean of its samples' positions), metres
    int32_t samples;
    int32_t firstRecord;  // index in the rows given
    double mean;
    int32_t tileX, tileY;
    uint8_t undersampled;
};

struct CoverageTile {
    int32_t tileX, tileY;
    int32_t windows, samples, undersampled;
    double median, p10;
    uint8_t pass;
    // With a comparison: 1 when the other survey tested the tile too, and this
    // survey's statistic less the other's.
    uint8_t compared;
    double difference;
};

struct Coverage {
    int32_t windowCount;
    int32_t undersampledCount;
    LocalMean windows[MaxRecords];
    int32_t tileCount;  // tested tiles, in order of tileY then tileX
    int32_t passed;
    CoverageTile tiles[MaxRecords];
    double reliability;  // passed / tested, 0 .. 1
    double lowerBound;
};

// The grid of one survey, or of two on one grid (other may be null); 0 when
// no row has a GPS fix. earthRadiusKm as the program's setting.
int CoverageGridOf(const Record* rows, int32_t count, const Record* other, int32_t otherCount,
                   double earthRadiusKm, CoverageGrid* grid);

// Metres east and north of the grid's corner.
void GridMetres(const CoverageGrid& grid, int32_t latitude, int32_t longitude, double* east,
                double* north);

// The local means of the fixed rows in order (lookup: the channel's 256
// calibrated values), then the tiles, the pass flags and the reliability.
void ComputeLocalMeans(const Record* rows, int32_t count, int channel, const float* lookup,
                       const CoverageGrid& grid, const CoverageSettings& settings, Coverage* out);
void ComputeTiles(const CoverageSettings& settings, Coverage* out);

// Mean of n values: as power (10^(v/10), back to dB) or as they stand.
double MeanOfValues(const double* values, int32_t n, int linear);
// The q-quantile (0..1) of n sorted values, linear between closest ranks.
double Quantile(const double* sorted, int32_t n, double q);
// The one-sided lower Wilson bound of passed out of tested at confidence.
double WilsonLowerBound(int32_t passed, int32_t tested, double confidence);
// The standard normal quantile.
double NormalQuantile(double p);

struct CoverageComparison {
    int32_t better, worse, within;  // tiles tested in both
    int32_t onlyHere, onlyOther;
};

// Sets compared and difference on the tiles of here tested in other too, on
// one grid; a difference over delta is better, under -delta worse.
void CompareCoverage(Coverage* here, const Coverage& other, const CoverageSettings& settings,
                     double delta, CoverageComparison* counts);

// The statistic that decides a tile.
double TileStatistic(const CoverageTile& tile, int statistic);

#endif
