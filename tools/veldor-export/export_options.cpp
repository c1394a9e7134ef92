// The command line of veldor-export.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <math.h>

#include "export_survey.h"

static const char* const FormatNames[] = {"",          "csv",       "geojson",   "kml",   "gpx",
                                          "tiles-geojson", "tiles-kml", "tiles-csv", "report"};

const char* ExportUsage() {
    return "usage: veldor-export SURVEY.DAT --format csv|geojson|kml|gpx [-o OUT]"
           " [--cal CH=FILE.cal ...] [--settings VELDOR.ini] [--channel 1..4|all|best]"
           " [--summary] [--version]\n"
           "usage: veldor-export SURVEY.DAT --format report|tiles-geojson|tiles-kml|tiles-csv"
           " --threshold VALUE [-o OUT] [--channel 1..4] [--window METRES | --frequency MHZ]"
           " [--min-samples N] [--tile METRES] [--statistic median|p10] [--confidence P]"
           " [--linear] [--compare OTHER.DAT] [--delta DB]\n";
}

const char* ExportExtension(int format) {
    static const char* const extensions[] = {"",      ".csv",       ".geojson",   ".kml", ".gpx",
                                             ".tiles.geojson", ".tiles.kml", ".tiles.csv", ".html"};
    return format > 0 && format <= FORMAT_REPORT ? extensions[format] : "";
}

static int CopyPath(char* out, const char* value) {
    if (value[0] == '\0' || strlen(value) >= PathSize) return 0;
    memcpy(out, value, strlen(value) + 1);
    return 1;
}

static int ParseChannel(const char* value, int* channel) {
    if (strcmp(value, "all") == 0) *channel = 4;
    else if (strcmp(value, "best") == 0) *channel = 5;
    else if (value[0] >= '1' && value[0] <= '4' && value[1] == '\0') *channel = value[0] - '1';
    else return 0;
    return 1;
}

// "CH=FILE" with CH 1..4.
static int ParseCal(const char* value, ExportOptions* options) {
    if (value[0] < '1' || value[0] > '4' || value[1] != '=') return 0;
    return CopyPath(options->calPath[value[0] - '1'], value + 2);
}

// A number from low to high, the whole text.
static int ParseNumber(const char* value, double low, double high, double* out) {
    char* end = nullptr;
    const double v = strtod(value, &end);
    if (end == value || *end != '\0' || !(v >= low && v <= high)) return 0;
    *out = v;
    return 1;
}

// The options of the coverage formats: 1 when name is one (*ok then says
// whether its value was good), 0 for another option.
static int ParseCoverageOption(const char* name, const char* value, ExportOptions* o, int* ok) {
    double v = 0;
    if (strcmp(name, "--window") == 0) *ok = ParseNumber(value, 0.01, 100000, &o->windowMetres);
    else if (strcmp(name, "--frequency") == 0) *ok = ParseNumber(value, 0.12, 1e6, &o->frequencyMHz);
    else if (strcmp(name, "--tile") == 0) *ok = ParseNumber(value, 1, 100000, &o->tileMetres);
    else if (strcmp(name, "--threshold") == 0) *ok = o->hasThreshold = ParseNumber(value, -1e30, 1e30, &o->threshold);
    else if (strcmp(name, "--confidence") == 0) *ok = ParseNumber(value, 0.5, 0.9999, &o->confidence);
    else if (strcmp(name, "--delta") == 0) *ok = ParseNumber(value, 0, 1e6, &o->delta);
    else if (strcmp(name, "--compare") == 0) *ok = CopyPath(o->compare, value);
    else if (strcmp(name, "--min-samples") == 0) {
        *ok = ParseNumber(value, 1, MaxRecords, &v) && v == floor(v);
        o->minSamples = (int)v;
    } else if (strcmp(name, "--statistic") == 0) {
        *ok = strcmp(value, "median") == 0 || strcmp(value, "p10") == 0;
        o->statistic = strcmp(value, "p10") == 0 ? COVERAGE_P10 : COVERAGE_MEDIAN;
    } else {
        return 0;
    }
    return 1;
}

// What the value of an option must be, for its message.
static const char* Expected(const char* name) {
    static const char* const rules[][2] = {
        {"--tile", "a tile from 1 m to 100 km"},       {"--window", "a window of up to 100 km"},
        {"--threshold", "a number"},                   {"--confidence", "from 0.5 to 0.9999"},
        {"--min-samples", "a whole number from 1 to 16000"}, {"--statistic", "median or p10"},
        {"--frequency", "a frequency from 0.12 MHz"},         {"--delta", "a number of dB, 0 or more"}};
    for (const auto& rule : rules)
        if (strcmp(name, rule[0]) == 0) return rule[1];
    return nullptr;
}

int ParseExportOptions(int argc, const char* const* argv, ExportOptions* options, char* error,
                       int errorSize) {
    memset(options, 0, sizeof *options);
    options->channel = ExportChannelFromSettings;
    options->minSamples = 36;
    options->tileMetres = 100;
    options->confidence = 0.90;
    options->delta = 3;
    for (int i = 1; i < argc; i++) {
        const char* name = argv[i];
        if (strcmp(name, "--summary") == 0) {
            options->summary = 1;
            continue;
        }
        if (strcmp(name, "--version") == 0 || strcmp(name, "--linear") == 0) {
            (name[2] == 'v' ? options->version : options->linear) = 1;
            continue;
        }
        if (name[0] != '-' || name[1] == '\0') {
            if (options->input[0] != '\0' || !CopyPath(options->input, name)) {
                snprintf(error, errorSize, "one survey file expected, '%s' is another", name);
                return 0;
            }
            continue;
        }
        const int known = strcmp(name, "--format") == 0 || strcmp(name, "-o") == 0 ||
                          strcmp(name, "--cal") == 0 || strcmp(name, "--settings") == 0 ||
                          strcmp(name, "--channel") == 0 || Expected(name) != nullptr ||
                          strcmp(name, "--compare") == 0;
        if (!known) {
            snprintf(error, errorSize, "unknown option '%s'", name);
            return 0;
        }
        if (i + 1 >= argc) {
            snprintf(error, errorSize, "%s needs a value", name);
            return 0;
        }
        const char* value = argv[++i];
        int ok = 0;
        if (strcmp(name, "--format") == 0) {
            for (int f = FORMAT_CSV; f <= FORMAT_REPORT; f++)
                if (strcmp(value, FormatNames[f]) == 0) options->format = f, ok = 1;
        } else if (strcmp(name, "-o") == 0) {
            ok = CopyPath(options->output, value);
        } else if (strcmp(name, "--cal") == 0) {
            ok = ParseCal(value, options);
        } else if (strcmp(name, "--settings") == 0) {
            ok = CopyPath(options->settings, value);
        } else if (!ParseCoverageOption(name, value, options, &ok)) {
            ok = ParseChannel(value, &options->channel);
        }
        if (!ok && Expected(name) != nullptr) {
            snprintf(error, errorSize, "bad value '%s' for %s: %s expected", value, name, Expected(name));
            return 0;
        }
        if (!ok) {
            snprintf(error, errorSize, "bad value '%s' for %s", value, name);
            return 0;
        }
    }
    if (options->version) return 1;
    if (options->input[0] == '\0') {
        snprintf(error, errorSize, "no survey file given");
        return 0;
    }
    if (options->format == FORMAT_NONE && !options->summary) {
        snprintf(error, errorSize, "--format or --summary needed");
        return 0;
    }
    if (options->format >= FORMAT_TILES_GEOJSON) {
        if (!options->hasThreshold) {
            snprintf(error, errorSize, "--format %s needs --threshold VALUE", FormatNames[options->format]);
            return 0;
        }
        if (options->channel == ExportChannelFromSettings) options->channel = 0;
        if (options->channel > 3) {
            snprintf(error, errorSize, "--format %s takes --channel 1..4", FormatNames[options->format]);
            return 0;
        }
        if (options->windowMetres == 0)
            options->windowMetres = options->frequencyMHz > 0 ? 40 * 299.792458 / options->frequencyMHz : 20;
    }
    if (options->output[0] == '\0' && options->format != FORMAT_NONE) {
        // The input's name with the format's extension in the place of its own.
        size_t base = strlen(options->input);
        const char* dot = strrchr(options->input, '.');
        if (dot != nullptr && strchr(dot, '/') == nullptr && strchr(dot, '\\') == nullptr)
            base = (size_t)(dot - options->input);
        int n = snprintf(options->output, PathSize, "%.*s%s", (int)base, options->input,
                         ExportExtension(options->format));
        if (n < 0 || n >= PathSize) {
            snprintf(error, errorSize, "output name too long");
            return 0;
        }
    }
    return 1;
}
