// Local means, tiles, area reliability and the comparison of two surveys.
#include "analysis/coverage.h"

#include <math.h>
#include <stdlib.h>
#include <string.h>

namespace {

const double Pi = 3.14159265358979323846;

void Extend(const Record* rows, int32_t count, int32_t* south, int32_t* west, double* latSum,
            int32_t* fixes) {
    for (int32_t i = 0; i < count; i++) {
        if (!(rows[i].flags & RECORD_GPS_FIX)) continue;
        if (*fixes == 0 || rows[i].latitude < *south) *south = rows[i].latitude;
        if (*fixes == 0 || rows[i].longitude < *west) *west = rows[i].longitude;
        *latSum += rows[i].latitude;
        ++*fixes;
    }
}

int CompareDoubles(const void* a, const void* b) {
    const double x = *(const double*)a, y = *(const double*)b;
    return x < y ? -1 : x > y ? 1 : 0;
}

// Windows ordered by tile (north row, then east column), then by route order.
int64_t TileKey(int32_t x, int32_t y) {
    return (int64_t)y * 4294967296LL + (int64_t)(uint32_t)x;
}

const Coverage* sortedCoverage;
int CompareWindowTiles(const void* a, const void* b) {
    const LocalMean& p = sortedCoverage->windows[*(const int32_t*)a];
    const LocalMean& q = sortedCoverage->windows[*(const int32_t*)b];
    const int64_t kp = TileKey(p.tileX, p.tileY), kq = TileKey(q.tileX, q.tileY);
    if (kp != kq) return kp < kq ? -1 : 1;
    return *(const int32_t*)a - *(const int32_t*)b;
}

}  // namespace

int CoverageGridOf(const Record* rows, int32_t count, const Record* other, int32_t otherCount,
                   double earthRadiusKm, CoverageGrid* grid) {
    int32_t south = 0, west = 0, fixes = 0;
    double latSum = 0.0;
    Extend(rows, count, &south, &west, &latSum, &fixes);
    if (other != nullptr) Extend(other, otherCount, &south, &west, &latSum, &fixes);
    if (fixes == 0) return 0;
    grid->southLatitude = south;
    grid->westLongitude = west;
    grid->meanLatitudeDegrees = latSum / fixes / 3600000.0;
    grid->metresPerMasNorth = earthRadiusKm * 1000.0 * Pi / 180.0 / 3600000.0;
    grid->metresPerMasEast = grid->metresPerMasNorth * cos(grid->meanLatitudeDegrees * Pi / 180.0);
    return 1;
}

void GridMetres(const CoverageGrid& grid, int32_t latitude, int32_t longitude, double* east,
                double* north) {
    *east = (double)((int64_t)longitude - grid.westLongitude) * grid.metresPerMasEast;
    *north = (double)((int64_t)latitude - grid.southLatitude) * grid.metresPerMasNorth;
}

double MeanOfValues(const double* values, int32_t n, int linear) {
    double sum = 0.0;
    for (int32_t i = 0; i < n; i++) sum += linear ? values[i] : pow(10.0, values[i] / 10.0);
    sum /= n;
    return linear ? sum : 10.0 * log10(sum);
}

double Quantile(const double* sorted, int32_t n, double q) {
    const double rank = q * (n - 1);
    const int32_t low = (int32_t)floor(rank);
    if (low + 1 >= n) return sorted[n - 1];
    return sorted[low] + (sorted[low + 1] - sorted[low]) * (rank - low);
}

double NormalQuantile(double p) {
    double low = -12.0, high = 12.0;
    for (int i = 0; i < 200; i++) {
        const double mid = (low + high) / 2;
        if (0.5 * erfc(-mid / sqrt(2.0)) < p)
            low = mid;
        else
            high = mid;
    }
    return (low + high) / 2;
}

double WilsonLowerBound(int32_t passed, int32_t tested, double confidence) {
    if (tested <= 0) return 0.0;
    const double z = NormalQuantile(confidence), n = tested, p = passed / n;
    const double centre = p + z * z / (2 * n);
    const double spread = z * sqrt(p * (1 - p) / n + z * z / (4 * n * n));
    const double bound = (centre - spread) / (1 + z * z / n);
    return bound < 0 ? 0 : bound;
}

void ComputeLocalMeans(const Record* rows, int32_t count, int channel, const float* lookup,
                       const CoverageGrid& grid, const CoverageSettings& settings, Coverage* out) {
    static double values[MaxRecords];
    out->windowCount = 0;
    out->undersampledCount = 0;
    double path = 0.0, lastEast = 0.0, lastNorth = 0.0;
    double sumEast = 0.0, sumNorth = 0.0;
    int64_t window = -1;
    int32_t n = 0, first = 0, fixes = 0;
    for (int32_t i = 0; i <= count; i++) {
        double east = 0.0, north = 0.0;
        int64_t index = -1;
        if (i < count) {
            if (!(rows[i].flags & RECORD_GPS_FIX)) continue;
            GridMetres(grid, rows[i].latitude, rows[i].longitude, &east, &north);
            if (fixes++ > 0) path += hypot(east - lastEast, north - lastNorth);
            lastEast = east, lastNorth = north;
            index = (int64_t)floor(path / settings.windowMetres);
        }
        if (index != window && n > 0 && out->windowCount < MaxRecords) {
            LocalMean& w = out->windows[out->windowCount++];
            w.east = sumEast / n;
            w.north = sumNorth / n;
            w.samples = n;
            w.firstRecord = first;
            w.mean = MeanOfValues(values, n, settings.linear);
            w.tileX = (int32_t)floor(w.east / settings.tileMetres);
            w.tileY = (int32_t)floor(w.north / settings.tileMetres);
            w.undersampled = n < settings.minSamples;
            out->undersampledCount += w.undersampled;
            n = 0, sumEast = sumNorth = 0.0;
        }
        if (i == count) break;
        if (n == 0) first = i;
        window = index;
        values[n++] = lookup[rows[i].ch[channel]];
        sumEast += east, sumNorth += north;
    }
}

void ComputeTiles(const CoverageSettings& settings, Coverage* out) {
    static int32_t order[MaxRecords];
    static double means[MaxRecords];
    for (int32_t i = 0; i < out->windowCount; i++) order[i] = i;
    sortedCoverage = out;
    qsort(order, (size_t)out->windowCount, sizeof order[0], CompareWindowTiles);
    out->tileCount = 0;
    out->passed = 0;
    for (int32_t start = 0; start < out->windowCount;) {
        const LocalMean& head = out->windows[order[start]];
        CoverageTile& tile = out->tiles[out->tileCount++];
        memset(&tile, 0, sizeof tile);
        tile.tileX = head.tileX, tile.tileY = head.tileY;
        int32_t end = start;
        for (; end < out->windowCount; end++) {
            const LocalMean& w = out->windows[order[end]];
            if (w.tileX != head.tileX || w.tileY != head.tileY) break;
            means[end - start] = w.mean;
            tile.samples += w.samples;
            tile.undersampled += w.undersampled;
        }
        tile.windows = end - start;
        qsort(means, (size_t)tile.windows, sizeof means[0], CompareDoubles);
        tile.median = Quantile(means, tile.windows, 0.5);
        tile.p10 = Quantile(means, tile.windows, 0.1);
        tile.pass = TileStatistic(tile, settings.statistic) >= settings.threshold;
        out->passed += tile.pass;
        start = end;
    }
    out->reliability = out->tileCount > 0 ? (double)out->passed / out->tileCount : 0.0;
    out->lowerBound = WilsonLowerBound(out->passed, out->tileCount, settings.confidence);
}

double TileStatistic(const CoverageTile& tile, int statistic) {
    return statistic == COVERAGE_P10 ? tile.p10 : tile.median;
}

void CompareCoverage(Coverage* here, const Coverage& other, const CoverageSettings& settings,
                     double delta, CoverageComparison* counts) {
    memset(counts, 0, sizeof *counts);
    int32_t j = 0;  // both tile lists are in key order
    for (int32_t i = 0; i < here->tileCount; i++) {
        CoverageTile& tile = here->tiles[i];
        const int64_t key = TileKey(tile.tileX, tile.tileY);
        while (j < other.tileCount && TileKey(other.tiles[j].tileX, other.tiles[j].tileY) < key) {
            counts->onlyOther++;
            j++;
        }
        tile.compared =
            j < other.tileCount && TileKey(other.tiles[j].tileX, other.tiles[j].tileY) == key;
        if (!tile.compared) {
            counts->onlyHere++;
            continue;
        }
        tile.difference = TileStatistic(tile, settings.statistic) -
                          TileStatistic(other.tiles[j++], settings.statistic);
        if (tile.difference > delta)
            counts->better++;
        else if (tile.difference < -delta)
            counts->worse++;
        else
            counts->within++;
    }
    counts->onlyOther += other.tileCount - j;
}
