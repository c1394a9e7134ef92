// veldor-export: writes a saved survey (.DAT, v1.0 to v1.4) as CSV, GeoJSON,
// KML or GPX, its coverage as tiles or an HTML report, and prints a summary. Exit status 0 when done, 1 when the
// output could not be written, 2 for a wrong command line or a survey that
// can't be read; then no output file is left behind.
#include <stdio.h>
#include <string.h>

#include "export_survey.h"
#include "views/plot_view.h"

#ifndef VELDOR_VERSION
#define VELDOR_VERSION "0.0.0"
#endif

// The finished temporary file in the place of the output; the Windows
// runtime refuses to rename onto an existing file, so that one goes first.
static int PutInPlace(const char* temp, const char* output) {
    if (rename(temp, output) == 0) return 1;
    remove(output);
    return rename(temp, output) == 0;
}

static int Export(const ExportOptions& options, const char* surveyName) {
    char temp[PathSize + 8];
    snprintf(temp, sizeof temp, "%s.part", options.output);
    FILE* file = fopen(temp, "wb");
    if (file == nullptr) {
        fprintf(stderr, "veldor-export: cannot write '%s'\n", temp);
        return 0;
    }
    int ok = options.format == FORMAT_REPORT ? WriteReport(file, surveyName, VELDOR_VERSION)
             : options.format >= FORMAT_TILES_GEOJSON ? WriteTiles(file, options.format, surveyName)
                                                      : WriteExport(file, options.format, plotChannel, surveyName);
    if (fclose(file) != 0) ok = 0;
    if (ok && PutInPlace(temp, options.output)) return 1;
    remove(temp);
    fprintf(stderr, "veldor-export: cannot write '%s'\n", options.output);
    return 0;
}

int main(int argc, char** argv) {
    ExportOptions options;
    char error[PathSize + 64];
    if (!ParseExportOptions(argc, argv, &options, error, sizeof error)) {
        fprintf(stderr, "veldor-export: %s\n%s", error, ExportUsage());
        return 2;
    }
    if (options.version) {
        printf("veldor-export %s\n", VELDOR_VERSION);
        return 0;
    }
    const int coverage = options.format >= FORMAT_TILES_GEOJSON;
    if (coverage ? !PrepareCoverage(options, stderr) : !LoadSurveyForExport(options, stderr)) return 2;
    const char* name = options.input + strlen(options.input);
    while (name > options.input && name[-1] != '/' && name[-1] != '\\') name--;
    if (options.format != FORMAT_NONE && !Export(options, name)) return 1;
    if (coverage) {
        char statement[256];
        ReliabilityText(statement, sizeof statement);
        printf("%s\n", statement);
    }
    if (options.summary) WriteSummary(stdout, name);
    return 0;
}
