// veldor-export: a saved survey read through the program's own data file
// reader, with the calibration curves and plot settings that give its
// readings their values and colours, and the writers of the open formats.
#ifndef VELDOR_EXPORT_EXPORT_SURVEY_H
#define VELDOR_EXPORT_EXPORT_SURVEY_H

#include <stdint.h>
#include <stdio.h>

#include "analysis/coverage.h"
#include "survey/survey_state.h"

enum ExportFormat {
    FORMAT_NONE = 0,
    FORMAT_CSV = 1,
    FORMAT_GEOJSON = 2,
    FORMAT_KML = 3,
    FORMAT_GPX = 4,
    FORMAT_TILES_GEOJSON = 5,  // the coverage formats: tiles and the report
    FORMAT_TILES_KML = 6,
    FORMAT_TILES_CSV = 7,
    FORMAT_REPORT = 8
};

// The channel choice of the Plot: 0..3 a channel, 4 all, 5 best.
constexpr int ExportChannelFromSettings = -1;

struct ExportOptions {
    char input[PathSize];
    char output[PathSize];      // empty: the input's name with the format's extension
    int format;                 // FORMAT_NONE with --summary alone
    char calPath[4][PathSize];  // --cal CH=FILE; empty: the survey's file beside it
    char settings[PathSize];    // --settings; empty: the Plot's defaults
    int channel;                // --channel, or ExportChannelFromSettings
    int summary;
    int version;
    // The coverage formats.
    double windowMetres;  // 0: 40 wavelengths at frequencyMHz, else 20 m
    double frequencyMHz;
    int minSamples;
    double tileMetres;
    int statistic;
    double threshold;
    int hasThreshold;
    double confidence;
    double delta;
    int linear;
    char compare[PathSize];  // --compare: the other survey, empty for none
};

// Fills options from argv[1..argc-1]; 1, or 0 with a reason in error.
int ParseExportOptions(int argc, const char* const* argv, ExportOptions* options, char* error,
                       int errorSize);
const char* ExportUsage();
const char* ExportExtension(int format);

// Reads the survey into the store (the reader's messages go to the
// platform's message box), then the plot settings and the four curves.
// Returns 1, or 0 when the survey could not be read. A curve that can't be
// read gives the default curve and a warning on stderr.
int LoadSurveyForExport(const ExportOptions& options, FILE* warnings);

// The calibrated value that colours a record for a channel choice 0..3 or 5
// (best: the largest of the four) and its band (0 High .. 3 None).
float ExportValue(const Record& row, int channel);
int ExportBand(const Record& row, int channel);

// The whole store in one format; 1 when every byte was written.
int WriteExport(FILE* file, int format, int channel, const char* surveyName);

// The calibration file each channel's curve came from, and whether it was
// read (0: the default curve).
extern char exportCurvePath[4][2 * PathSize];
extern int exportCurveRead[4];

// ---- Coverage ----------------------------------------------------------------------

struct CoverageExport {
    CoverageSettings settings;
    int channel;
    CoverageGrid grid;
    Coverage here;
    int compared;  // with --compare: the other survey on the same grid
    char otherName[PathSize];
    int32_t otherRecords;
    Coverage other;
    CoverageComparison comparison;
    double delta;
    // Each channel's local means, for the report's distributions.
    int32_t meanCount[4];
    double means[4][MaxRecords];
};
extern CoverageExport coverageExport;

// Loads the survey (and the one to compare, first) and computes the
// coverage; 0 with the reason on stderr, or the reader's message, when
// there is nothing to compute.
int PrepareCoverage(const ExportOptions& options, FILE* warnings);
// The computation alone, on the survey in the store (and the other one).
void ComputeCoverage();
// The reliability statement: "Area reliability 92.4 % (lower 90 % bound
// 89.1 %): 211 of 228 tiles at or above -95.0".
void ReliabilityText(char* out, int size);
// The tile formats and the report; 1 when every byte was written.
int WriteTiles(FILE* file, int format, const char* surveyName);
int WriteReport(FILE* file, const char* surveyName, const char* version);

// Records, time span, distance driven and per channel min / median / max
// and the share of each colour band.
void WriteSummary(FILE* file, const char* surveyName);

#endif
