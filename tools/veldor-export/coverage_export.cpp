// The coverage of a survey (and of the one it is compared with) and the
// three tile formats: GeoJSON and KML polygons, CSV rows with WKT squares.
#include <math.h>
#include <string.h>

#include "export_sink.h"
#include "export_survey.h"
#include "storage/colours_file.h"
#include "survey/cal_lookup.h"
#include "survey/recording_engine.h"
#include "views/plot_view.h"

CoverageExport coverageExport;

static Record otherRows[MaxRecords];
static float otherLookup[256];

static int HasFix(const Record* rows, int32_t count, const char* path, FILE* warnings) {
    CoverageGrid grid;
    if (CoverageGridOf(rows, count, nullptr, 0, 6371, &grid)) return 1;
    fprintf(warnings,
            "veldor-export: no record of '%s' has a GPS fix: there is nothing to"
            " take local means of\n",
            path);
    return 0;
}

void ComputeCoverage() {
    CoverageExport& e = coverageExport;
    static Coverage scratch;
    CoverageGridOf(recordStore.rows, recordCount, e.compared ? otherRows : nullptr, e.otherRecords,
                   EarthRadiusKm, &e.grid);
    ComputeLocalMeans(recordStore.rows, recordCount, e.channel, ChannelLookup[e.channel], e.grid,
                      e.settings, &e.here);
    ComputeTiles(e.settings, &e.here);
    if (e.compared) {
        ComputeLocalMeans(otherRows, e.otherRecords, e.channel, otherLookup, e.grid, e.settings,
                          &e.other);
        ComputeTiles(e.settings, &e.other);
        CompareCoverage(&e.here, e.other, e.settings, e.delta, &e.comparison);
    }
    for (int c = 0; c < 4; c++) {
        const Coverage* means = &e.here;
        if (c != e.channel) {
            ComputeLocalMeans(recordStore.rows, recordCount, c, ChannelLookup[c], e.grid,
                              e.settings, &scratch);
            means = &scratch;
        }
        e.meanCount[c] = means->windowCount;
        for (int32_t i = 0; i < means->windowCount; i++) e.means[c][i] = means->windows[i].mean;
    }
}

int PrepareCoverage(const ExportOptions& options, FILE* warnings) {
    CoverageExport& e = coverageExport;
    e.settings.windowMetres = options.windowMetres;
    e.settings.minSamples = options.minSamples;
    e.settings.tileMetres = options.tileMetres;
    e.settings.statistic = options.statistic;
    e.settings.threshold = options.threshold;
    e.settings.confidence = options.confidence;
    e.settings.linear = options.linear;
    e.channel = options.channel;
    e.delta = options.delta;
    e.compared = options.compare[0] != '\0';
    e.otherRecords = 0;
    if (e.compared) {
        ExportOptions other = options;
        memcpy(other.input, options.compare, sizeof other.input);
        if (!LoadSurveyForExport(other, warnings)) return 0;
        if (!HasFix(recordStore.rows, recordCount, options.compare, warnings)) return 0;
        e.otherRecords = recordCount;
        memcpy(otherRows, recordStore.rows, sizeof(Record) * (size_t)recordCount);
        memcpy(otherLookup, ChannelLookup[options.channel], sizeof otherLookup);
        const char* name = strrchr(options.compare, '/');
        const char* back = strrchr(options.compare, '\\');
        name = back > name ? back : name;
        snprintf(e.otherName, sizeof e.otherName, "%s",
                 name != nullptr ? name + 1 : options.compare);
    }
    if (!LoadSurveyForExport(options, warnings)) return 0;
    if (!HasFix(recordStore.rows, recordCount, options.input, warnings)) return 0;
    ComputeCoverage();
    return 1;
}

void ReliabilityText(char* out, int size) {
    const Coverage& c = coverageExport.here;
    snprintf(
        out, size,
        "Area reliability %.1f %% (lower %g %% bound %.1f %%): %d of %d tiles at or above %.1f",
        100.0 * c.reliability, 100.0 * coverageExport.settings.confidence, 100.0 * c.lowerBound,
        (int)c.passed, (int)c.tileCount, coverageExport.settings.threshold);
}

// ---- The tile formats --------------------------------------------------------------

namespace {

const char* const BandNames[4] = {"High", "Mid", "Low", "None"};

void PutNumber(Sink* s, const char* format, double value) {
    char text[48];
    snprintf(text, sizeof text, format, value);
    Put(s, text);
}

// The tile's corners from the south-west one, anticlockwise, closed.
void PutRing(Sink* s, const CoverageTile& t, const char* open, const char* comma,
             const char* close) {
    const CoverageGrid& g = coverageExport.grid;
    const double side = coverageExport.settings.tileMetres;
    const int corners[5][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}};
    for (int k = 0; k < 5; k++) {
        const double east = (t.tileX + corners[k][0]) * side,
                     north = (t.tileY + corners[k][1]) * side;
        Put(s, k == 0 ? "" : close);
        Put(s, open);
        PutNumber(s, "%.8f", (g.westLongitude + east / g.metresPerMasEast) / 3600000.0);
        Put(s, comma);
        PutNumber(s, "%.8f", (g.southLatitude + north / g.metresPerMasNorth) / 3600000.0);
    }
}

const char* Change(const CoverageTile& t) {
    const double delta = coverageExport.delta;
    if (!t.compared) return "only here";
    return t.difference > delta ? "better" : t.difference < -delta ? "worse" : "within";
}

int TileBand(const CoverageTile& t) {
    return PlotBand((float)TileStatistic(t, coverageExport.settings.statistic));
}

void PutColour(Sink* s, uint32_t colour) {
    char text[8];
    snprintf(text, sizeof text, "#%02x%02x%02x", (unsigned)(colour & 0xFF),
             (unsigned)(colour >> 8 & 0xFF), (unsigned)(colour >> 16 & 0xFF));
    Put(s, text);
}

// The properties of a tile as "name<sep>value" pairs, for JSON and KML.
void PutProperties(Sink* s, const CoverageTile& t, int json) {
    const char* open = json ? ",\"" : "<Data name=\"";
    const char* middle = json ? "\":" : "\"><value>";
    const char* close = json ? "" : "</value></Data>";
    const struct {
        const char* name;
        double value;
        const char* format;
    } numbers[] = {{"tile_x", (double)t.tileX, "%.0f"},
                   {"tile_y", (double)t.tileY, "%.0f"},
                   {"windows", (double)t.windows, "%.0f"},
                   {"samples", (double)t.samples, "%.0f"},
                   {"undersampled", (double)t.undersampled, "%.0f"},
                   {"median", t.median, "%.3f"},
                   {"p10", t.p10, "%.3f"}};
    for (const auto& n : numbers) {
        Put(s, json && &n == numbers ? "\"" : open);
        Put(s, n.name);
        Put(s, middle);
        PutNumber(s, n.format, n.value);
        Put(s, close);
    }
    const char* texts[][2] = {{"pass", t.pass ? "true" : "false"},
                              {"band", BandNames[TileBand(t)]},
                              {"change", coverageExport.compared ? Change(t) : nullptr}};
    for (const auto& text : texts) {
        if (text[1] == nullptr) continue;
        Put(s, open);
        Put(s, text[0]);
        Put(s, middle);
        Put(s, json && text[0][0] != 'p' ? "\"" : "");
        Put(s, text[1]);
        Put(s, json && text[0][0] != 'p' ? "\"" : "");
        Put(s, close);
    }
    Put(s, open);
    Put(s, "colour");
    Put(s, json ? "\":\"" : middle);
    PutColour(s, PlotBandColour((float)TileStatistic(t, coverageExport.settings.statistic)));
    Put(s, json ? "\"" : close);
    if (coverageExport.compared && t.compared) {
        Put(s, open);
        Put(s, "difference");
        Put(s, middle);
        PutNumber(s, "%.3f", t.difference);
        Put(s, close);
    }
}

void WriteTilesGeoJson(Sink* s, const char* surveyName) {
    Put(s, "{\"type\":\"FeatureCollection\",\"name\":\"");
    PutEscaped(s, surveyName, ESCAPE_JSON);
    Put(s, " tiles\",\"features\":[\n");
    const Coverage& c = coverageExport.here;
    for (int32_t i = 0; i < c.tileCount; i++) {
        Put(s, i > 0 ? ",\n" : "");
        Put(s, "{\"type\":\"Feature\",\"geometry\":{\"type\":\"Polygon\",\"coordinates\":[[");
        PutRing(s, c.tiles[i], "[", ",", "],");
        Put(s, "]]]},\"properties\":{");
        PutProperties(s, c.tiles[i], 1);
        Put(s, "}}");
    }
    Put(s, "\n]}\n");
}

void WriteTilesKml(Sink* s, const char* surveyName) {
    char statement[256];
    ReliabilityText(statement, sizeof statement);
    Put(s,
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n<name>");
    PutEscaped(s, surveyName, ESCAPE_XML);
    Put(s, " tiles</name>\n<description>");
    Put(s, statement);
    Put(s, "</description>\n");
    for (int b = 0; b < 4; b++) {
        // 0x00BBGGRR is KML's aabbggrr: half-transparent fill, solid edge.
        char style[256];
        const uint32_t colours[4] = {PlotColourHigh, PlotColourMid, PlotColourLow, PlotColourNone};
        const unsigned bgr = (unsigned)(colours[b] & 0xFFFFFF);
        snprintf(style, sizeof style,
                 "<Style id=\"band%d\"><LineStyle><color>ff%06x</color><width>1</width></LineStyle>"
                 "<PolyStyle><color>80%06x</color></PolyStyle></Style>\n",
                 b, bgr, bgr);
        Put(s, style);
    }
    const Coverage& c = coverageExport.here;
    for (int32_t i = 0; i < c.tileCount; i++) {
        const CoverageTile& t = c.tiles[i];
        char head[96];
        snprintf(head, sizeof head,
                 "<Placemark><name>Tile %d, %d</name><styleUrl>#band%d</styleUrl>", (int)t.tileX,
                 (int)t.tileY, TileBand(t));
        Put(s, head);
        Put(s, "<ExtendedData>");
        PutProperties(s, t, 0);
        Put(s, "</ExtendedData><Polygon><outerBoundaryIs><LinearRing><coordinates>");
        PutRing(s, t, "", ",", " ");
        Put(s, "</coordinates></LinearRing></outerBoundaryIs></Polygon></Placemark>\n");
    }
    Put(s, "</Document>\n</kml>\n");
}

void WriteTilesCsv(Sink* s) {
    Put(s, "WKT,tile_x,tile_y,windows,samples,undersampled,median,p10,pass,band,colour");
    Put(s, coverageExport.compared ? ",difference,change\r\n" : "\r\n");
    const Coverage& c = coverageExport.here;
    for (int32_t i = 0; i < c.tileCount; i++) {
        const CoverageTile& t = c.tiles[i];
        Put(s, "\"POLYGON ((");
        PutRing(s, t, "", " ", ",");
        char row[160];
        snprintf(row, sizeof row, "))\",%d,%d,%d,%d,%d,%.3f,%.3f,%d,%s,", (int)t.tileX,
                 (int)t.tileY, (int)t.windows, (int)t.samples, (int)t.undersampled, t.median, t.p10,
                 t.pass, BandNames[TileBand(t)]);
        Put(s, row);
        PutColour(s, PlotBandColour((float)TileStatistic(t, coverageExport.settings.statistic)));
        if (coverageExport.compared) {
            Put(s, ",");
            if (t.compared) PutNumber(s, "%.3f", t.difference);
            Put(s, ",");
            Put(s, Change(t));
        }
        Put(s, "\r\n");
    }
}

}  // namespace

int WriteTiles(FILE* file, int format, const char* surveyName) {
    static Sink sink;
    sink.file = file;
    sink.used = 0;
    sink.failed = 0;
    if (format == FORMAT_TILES_GEOJSON)
        WriteTilesGeoJson(&sink, surveyName);
    else if (format == FORMAT_TILES_KML)
        WriteTilesKml(&sink, surveyName);
    else
        WriteTilesCsv(&sink);
    Flush(&sink);
    return !sink.failed && ferror(file) == 0;
}
