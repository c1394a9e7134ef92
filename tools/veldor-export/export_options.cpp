// The command line of veldor-export.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "export_survey.h"

static const char* const FormatNames[] = {"", "csv", "geojson", "kml", "gpx"};

const char* ExportUsage() {
    return "usage: veldor-export SURVEY.DAT --format csv|geojson|kml|gpx [-o OUT]"
           " [--cal CH=FILE.cal ...] [--settings VELDOR.ini] [--channel 1..4|all|best]"
           " [--summary] [--version]\n";
}

const char* ExportExtension(int format) {
    static const char* const extensions[] = {"", ".csv", ".geojson", ".kml", ".gpx"};
    return format > 0 && format <= FORMAT_GPX ? extensions[format] : "";
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

int ParseExportOptions(int argc, const char* const* argv, ExportOptions* options, char* error,
                       int errorSize) {
    memset(options, 0, sizeof *options);
    options->channel = ExportChannelFromSettings;
    for (int i = 1; i < argc; i++) {
        const char* name = argv[i];
        if (strcmp(name, "--summary") == 0) {
            options->summary = 1;
            continue;
        }
        if (strcmp(name, "--version") == 0) {
            options->version = 1;
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
                          strcmp(name, "--channel") == 0;
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
            for (int f = FORMAT_CSV; f <= FORMAT_GPX; f++)
                if (strcmp(value, FormatNames[f]) == 0) options->format = f, ok = 1;
        } else if (strcmp(name, "-o") == 0) {
            ok = CopyPath(options->output, value);
        } else if (strcmp(name, "--cal") == 0) {
            ok = ParseCal(value, options);
        } else if (strcmp(name, "--settings") == 0) {
            ok = CopyPath(options->settings, value);
        } else {
            ok = ParseChannel(value, &options->channel);
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
