// The coverage report: one self-contained HTML file with inline SVG and CSS,
// no script and nothing loaded from elsewhere, laid out for a screen and for
// A4 paper. The maps have equal scales east and north, north up, and a scale
// bar; the dots are the Plot's band colours.
#include <math.h>
#include <stdlib.h>
#include <string.h>

#include "export_sink.h"
#include "export_survey.h"
#include "storage/colours_file.h"
#include "survey/cal_lookup.h"
#include "survey/recording_engine.h"
#include "views/plot_view.h"

namespace {

const char* const BandNames[4] = {"High", "Mid", "Low", "None"};
const int MapWidth = 680, MapPad = 16, ChartWidth = 330, ChartHeight = 200;

const char* const Style =
    "@page{size:A4;margin:12mm}\n"
    "*{box-sizing:border-box}\n"
    "body{font:10pt/1.45 'DejaVu Sans',Arial,Helvetica,sans-serif;color:#222;max-width:712px;"
    "margin:0 auto;padding:16px}\n"
    "h1{font-size:19pt;margin:0;font-weight:600}h1 small{font-weight:400;color:#555}\n"
    "h2{font-size:13pt;margin:0 0 6px;border-bottom:2px solid #ddd;padding-bottom:2px;"
    "break-after:avoid}\n"
    "h3{font-size:11pt;margin:10px 0 4px}\n"
    ".sub{color:#666;margin:2px 0 12px}\n"
    ".verdict{border-left:8px solid #43a047;background:#f1f8f1;padding:8px 12px;margin:0 0 14px;"
    "font-size:12pt}\n"
    ".verdict.low{border-color:#e53935;background:#fdf1f0}.verdict p{margin:2px "
    "0;font-size:10pt;color:#444}\n"
    "section{margin:0 0 16px;break-inside:avoid;page-break-inside:avoid}\n"
    ".facts{display:flex;gap:16px}.facts table{flex:1}\n"
    "table{border-collapse:collapse;font-size:9.5pt}\n"
    "td,th{padding:2px 6px;border-bottom:1px solid #e4e4e4;text-align:left;vertical-align:top}\n"
    "th{color:#555;font-weight:600;white-space:nowrap}td.n,th.n{text-align:right;font-variant-"
    "numeric:tabular-nums}\n"
    "svg{display:block}.legend{font-size:9pt;color:#444;margin:4px 0 0}\n"
    ".sw{display:inline-block;width:11px;height:11px;margin:0 4px 0 10px;vertical-align:-1px;"
    "border:1px solid #999}\n"
    ".charts{display:flex;gap:12px;justify-content:space-between}\n"
    ".tags{columns:2;font-size:9pt;margin:0;padding-left:20px}\n"
    "@media "
    "print{body{padding:0;max-width:none}svg.map{max-height:112mm;width:auto;height:auto}}\n";

// SVG classes: the bands, the pass and fail tiles, the comparison.
const char* const SvgStyle =
    ".map text{font:11px 'DejaVu Sans',Arial,sans-serif}"
    ".pass{fill:#43a047}.fail{fill:#e53935}.better{fill:#1e63b4}.worse{fill:#ef6c00}"
    ".within{fill:#c8c8c8}.only{fill:#fff;stroke:#999}"
    ".tag{fill:none;stroke:#000;stroke-width:1.3}"
    ".frame{fill:none;stroke:#505050;shape-rendering:crispEdges}";

uint32_t BandColour(int band) {
    const uint32_t colours[4] = {PlotColourHigh, PlotColourMid, PlotColourLow, PlotColourNone};
    return colours[band];
}

void PutHex(Sink* s, uint32_t colour) {
    Putf(s, "#%02x%02x%02x", (unsigned)(colour & 0xFF), (unsigned)(colour >> 8 & 0xFF),
         (unsigned)(colour >> 16 & 0xFF));
}

void Cell(Sink* s, const char* head, const char* text) {
    Putf(s, "<tr><th>%s</th><td>", head);
    PutEscaped(s, text, ESCAPE_XML);
    Put(s, "</td></tr>\n");
}

// A round length for the scale bar: 1, 2 or 5 times a power of ten.
double RoundLength(double most) {
    const double step = pow(10.0, floor(log10(most)));
    return most >= 5 * step ? 5 * step : most >= 2 * step ? 2 * step : step;
}

// ---- The map frame shared by the route, tile and difference maps --------------------

struct MapFrame {
    double minEast, minNorth, scale, offsetX, offsetY;
    int height;
};
MapFrame frame;

double MapX(double east) {
    return frame.offsetX + (east - frame.minEast) * frame.scale;
}
double MapY(double north) {
    return frame.offsetY - (north - frame.minNorth) * frame.scale;
}

void Include(double east, double north, double box[4]) {
    if (east < box[0]) box[0] = east;
    if (north < box[1]) box[1] = north;
    if (east > box[2]) box[2] = east;
    if (north > box[3]) box[3] = north;
}

void IncludeTiles(const Coverage& c, double side, double box[4]) {
    for (int32_t i = 0; i < c.tileCount; i++) {
        Include(c.tiles[i].tileX * side, c.tiles[i].tileY * side, box);
        Include((c.tiles[i].tileX + 1) * side, (c.tiles[i].tileY + 1) * side, box);
    }
}

// The route and every tile in view, equal scales, at most 560 pixels high.
void PlaceMap() {
    const CoverageExport& e = coverageExport;
    double box[4] = {1e300, 1e300, -1e300, -1e300};
    for (int32_t i = 0; i < recordCount; i++) {
        const Record& r = recordStore.rows[i];
        if (!(r.flags & RECORD_GPS_FIX)) continue;
        double east, north;
        GridMetres(e.grid, r.latitude, r.longitude, &east, &north);
        Include(east, north, box);
    }
    IncludeTiles(e.here, e.settings.tileMetres, box);
    if (e.compared) IncludeTiles(e.other, e.settings.tileMetres, box);
    const double width = box[2] - box[0] > 1 ? box[2] - box[0] : 1;
    const double height = box[3] - box[1] > 1 ? box[3] - box[1] : 1;
    // A strip of 26 pixels at the bottom holds the scale bar.
    const double inner = MapWidth - 2 * MapPad, strip = 26;
    frame.scale = fmin(inner / width, (560 - 2 * MapPad - strip) / height);
    frame.height = (int)ceil(height * frame.scale + 2 * MapPad + strip);
    if (frame.height < 220) frame.height = 220;
    frame.minEast = box[0];
    frame.minNorth = box[1];
    frame.offsetX = MapPad + (inner - width * frame.scale) / 2;
    frame.offsetY = frame.height - MapPad - strip -
                    (frame.height - 2 * MapPad - strip - height * frame.scale) / 2;
}

void OpenMap(Sink* s, const char* label) {
    Putf(s,
         "<svg class=\"map\" xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\""
         " viewBox=\"0 0 %d %d\" role=\"img\" aria-label=\"%s\"><style>%s</style>"
         "<rect x=\"0\" y=\"0\" width=\"%d\" height=\"%d\" fill=\"#fff\"/>\n",
         MapWidth, frame.height, MapWidth, frame.height, label, SvgStyle, MapWidth, frame.height);
}

// The scale bar at the bottom left, north at the top right, the frame.
void CloseMap(Sink* s) {
    const double metres = RoundLength(MapWidth / 4.0 / frame.scale);
    const double length = metres * frame.scale;
    const int y = frame.height - 14;
    Putf(s,
         "<path d=\"M14 %d v6 h%.1f v-6\" fill=\"none\" stroke=\"#000\" stroke-width=\"1.5\"/>"
         "<text x=\"14\" y=\"%d\">%g %s</text>\n",
         y - 6, length, y - 9, metres >= 1000 ? metres / 1000 : metres,
         metres >= 1000 ? "km" : "m");
    Putf(s,
         "<g transform=\"translate(%d 12)\"><path d=\"M0 0 L7 20 L0 15 L-7 20 Z\" fill=\"#222\"/>"
         "<text x=\"0\" y=\"33\" text-anchor=\"middle\" font-weight=\"bold\">N</text></g>\n",
         MapWidth - 22);
    Putf(s, "<rect class=\"frame\" x=\"0.5\" y=\"0.5\" width=\"%d\" height=\"%d\"/></svg>\n",
         MapWidth - 1, frame.height - 1);
}

void PutRouteMap(Sink* s) {
    const CoverageExport& e = coverageExport;
    OpenMap(s, "Route in band colours");
    Put(s, "<style>");
    for (int b = 0; b < 4; b++) {
        Putf(s, ".b%d{fill:", b);
        PutHex(s, BandColour(b));
        Put(s, "}");
    }
    Put(s, "</style>\n<g id=\"route\">\n");
    for (int32_t i = 0; i < recordCount; i++) {
        const Record& r = recordStore.rows[i];
        if (!(r.flags & RECORD_GPS_FIX)) continue;
        double east, north;
        GridMetres(e.grid, r.latitude, r.longitude, &east, &north);
        Putf(s, "<circle class=\"b%d\" cx=\"%.1f\" cy=\"%.1f\" r=\"2.5\"/>\n",
             PlotBand(ChannelLookup[e.channel][r.ch[e.channel]]), MapX(east), MapY(north));
    }
    Put(s, "</g>\n<g id=\"tags\">\n");
    for (int t = 0; t < tagCount && t < MaxTextTags; t++) {
        if (tagRecord[t] < 0 || tagRecord[t] >= recordCount) continue;
        const Record& r = recordStore.rows[tagRecord[t]];
        if (!(r.flags & RECORD_GPS_FIX)) continue;
        double east, north;
        GridMetres(e.grid, r.latitude, r.longitude, &east, &north);
        Putf(s, "<circle class=\"tag\" cx=\"%.1f\" cy=\"%.1f\" r=\"5\"/>", MapX(east), MapY(north));
        if (tagCount <= 40)
            Putf(s, "<text x=\"%.1f\" y=\"%.1f\" font-size=\"10\">%d</text>", MapX(east) + 7,
                 MapY(north) - 5, t + 1);
        Put(s, "\n");
    }
    Put(s, "</g>\n");
    CloseMap(s);
}

void PutTileRect(Sink* s, const CoverageTile& t, const char* kind) {
    const double side = coverageExport.settings.tileMetres * frame.scale;
    const double gap = side >= 8 ? 0.5 : 0;
    Putf(s,
         "<rect id=\"tile_%d_%d\" class=\"%s\" x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" "
         "height=\"%.2f\"/>\n",
         (int)t.tileX, (int)t.tileY, kind, MapX(t.tileX * coverageExport.settings.tileMetres) + gap,
         MapY((t.tileY + 1) * coverageExport.settings.tileMetres) + gap, side - 2 * gap,
         side - 2 * gap);
}

void PutTileMap(Sink* s) {
    const Coverage& c = coverageExport.here;
    OpenMap(s, "Tiles that pass and fail");
    for (int32_t i = 0; i < c.tileCount; i++)
        PutTileRect(s, c.tiles[i], c.tiles[i].pass ? "pass" : "fail");
    // The route over them, thin, a point every 2 pixels or more.
    Put(s, "<path fill=\"none\" stroke=\"#000\" stroke-opacity=\"0.35\" stroke-width=\"1\" d=\"");
    double lastX = -1e9, lastY = -1e9;
    for (int32_t i = 0; i < recordCount; i++) {
        const Record& r = recordStore.rows[i];
        if (!(r.flags & RECORD_GPS_FIX)) continue;
        double east, north;
        GridMetres(coverageExport.grid, r.latitude, r.longitude, &east, &north);
        const double x = MapX(east), y = MapY(north);
        if (fabs(x - lastX) + fabs(y - lastY) < 2) continue;
        Putf(s, "%s%.1f %.1f", lastX < -1e8 ? "M" : " L", x, y);
        lastX = x, lastY = y;
    }
    Put(s, "\"/>\n");
    CloseMap(s);
}

void PutDifferenceMap(Sink* s) {
    const CoverageExport& e = coverageExport;
    OpenMap(s, "Difference of the two surveys");
    for (int32_t i = 0; i < e.here.tileCount; i++) {
        const CoverageTile& t = e.here.tiles[i];
        const char* kind = !t.compared               ? "only"
                           : t.difference > e.delta  ? "better"
                           : t.difference < -e.delta ? "worse"
                                                     : "within";
        PutTileRect(s, t, kind);
    }
    // Tiles that only the other survey tested.
    for (int32_t j = 0, i = 0; j < e.other.tileCount; j++) {
        const CoverageTile& t = e.other.tiles[j];
        while (i < e.here.tileCount &&
               (e.here.tiles[i].tileY < t.tileY ||
                (e.here.tiles[i].tileY == t.tileY && e.here.tiles[i].tileX < t.tileX)))
            i++;
        if (i < e.here.tileCount && e.here.tiles[i].tileX == t.tileX &&
            e.here.tiles[i].tileY == t.tileY)
            continue;
        PutTileRect(s, t, "only");
    }
    CloseMap(s);
}

// ---- Distributions ------------------------------------------------------------------

struct Series {
    double* values;  // sorted
    int32_t n;
};

int CompareDoubles(const void* a, const void* b) {
    const double x = *(const double*)a, y = *(const double*)b;
    return x < y ? -1 : x > y ? 1 : 0;
}

struct Axis {
    double low, high, step;
    double X(double v) const { return 44 + (v - low) / (high - low) * (ChartWidth - 54); }
};

Axis ValueAxis(const Series& values, const Series& means) {
    double low = values.values[0], high = values.values[values.n - 1];
    if (means.n > 0) low = fmin(low, means.values[0]), high = fmax(high, means.values[means.n - 1]);
    if (high - low < 1e-9) low -= 1, high += 1;
    Axis a;
    a.step = RoundLength((high - low) / 4);
    a.low = floor(low / a.step) * a.step;
    a.high = ceil(high / a.step) * a.step;
    if (a.high <= a.low) a.high = a.low + a.step;
    return a;
}

void ChartFrame(Sink* s, const Axis& a, double top, const char* unit) {
    const int bottom = ChartHeight - 24;
    Putf(
        s,
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\""
        " font-family=\"DejaVu Sans,Arial,sans-serif\" font-size=\"9\">\n",
        ChartWidth, ChartHeight, ChartWidth, ChartHeight);
    for (int k = 0; k <= 4; k++) {
        const double y = bottom - k * (bottom - 14) / 4.0;
        Putf(s,
             "<line x1=\"44\" x2=\"%d\" y1=\"%.1f\" y2=\"%.1f\" stroke=\"#e6e6e6\"/>"
             "<text x=\"40\" y=\"%.1f\" text-anchor=\"end\">%g%s</text>\n",
             ChartWidth - 10, y, y, y + 3, top * k / 4, unit);
    }
    for (double v = a.low; v <= a.high + a.step / 2; v += a.step)
        Putf(s, "<text x=\"%.1f\" y=\"%d\" text-anchor=\"middle\">%g</text>\n", a.X(v), bottom + 12,
             v);
    Putf(s, "<line x1=\"44\" x2=\"%d\" y1=\"%d\" y2=\"%d\" stroke=\"#555\"/>\n", ChartWidth - 10,
         bottom, bottom);
}

void ThresholdLine(Sink* s, const Axis& a) {
    const double t = coverageExport.settings.threshold;
    if (t < a.low || t > a.high) return;
    Putf(s,
         "<line x1=\"%.1f\" x2=\"%.1f\" y1=\"10\" y2=\"%d\" stroke=\"#c62828\" stroke-width=\"1.5\""
         " stroke-dasharray=\"5 3\"/><text x=\"%.1f\" y=\"9\" fill=\"#c62828\" "
         "text-anchor=\"middle\">"
         "threshold %g</text>\n",
         a.X(t), a.X(t), ChartHeight - 24, a.X(t), t);
}

void Histogram(Sink* s, const Axis& a, const Series& values, const Series& means) {
    const double width = a.step / 5;  // five bins to a labelled step
    const int bins = (int)ceil((a.high - a.low) / width - 1e-9);
    int counts[2][128] = {};
    const Series* series[2] = {&values, &means};
    double most = 0;
    for (int k = 0; k < 2; k++) {
        for (int32_t i = 0; i < series[k]->n; i++) {
            int b = (int)floor((series[k]->values[i] - a.low) / width);
            b = b < 0 ? 0 : b >= bins ? bins - 1 : b;
            counts[k][b < 128 ? b : 127]++;
        }
        for (int b = 0; b < bins && b < 128 && series[k]->n > 0; b++)
            most = fmax(most, 100.0 * counts[k][b] / series[k]->n);
    }
    const double top = RoundLength(most) * ceil(most / RoundLength(most) - 1e-9);
    ChartFrame(s, a, top > 0 ? top : 1, "%");
    const int bottom = ChartHeight - 24;
    const double scale = (bottom - 14) / (top > 0 ? top : 1);
    for (int k = 0; k < 2; k++) {
        for (int b = 0; b < bins && b < 128 && series[k]->n > 0; b++) {
            const double h = 100.0 * counts[k][b] / series[k]->n * scale;
            if (h <= 0) continue;
            const double x = a.X(a.low + b * width), w = a.X(a.low + (b + 1) * width) - x;
            Putf(s,
                 k == 0 ? "<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" "
                          "fill=\"#9fb6c8\"/>\n"
                        : "<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"none\""
                          " stroke=\"#1f3a4d\" stroke-width=\"1.2\"/>\n",
                 x + 0.5, bottom - h, w - 1, h);
        }
    }
    ThresholdLine(s, a);
    Put(s, "</svg>\n");
}

void Cumulative(Sink* s, const Axis& a, const Series& values, const Series& means) {
    ChartFrame(s, a, 100, "%");
    const int bottom = ChartHeight - 24;
    const Series* series[2] = {&values, &means};
    const char* strokes[2] = {"#8fa9bd", "#1f3a4d"};
    for (int k = 0; k < 2; k++) {
        if (series[k]->n == 0) continue;
        Putf(s, "<path fill=\"none\" stroke=\"%s\" stroke-width=\"%s\" d=\"M%.1f %d", strokes[k],
             k == 0 ? "2.5" : "1.5", a.X(series[k]->values[0]), bottom);
        // The top of each run of equal values; at most about 400 steps.
        int32_t runs = 1;
        for (int32_t i = 1; i < series[k]->n; i++)
            runs += series[k]->values[i] != series[k]->values[i - 1];
        const int32_t stride = runs / 400 + 1;
        runs = 0;
        for (int32_t i = 0; i < series[k]->n; i++) {
            const int last = i + 1 == series[k]->n;
            if (!last && series[k]->values[i + 1] == series[k]->values[i]) continue;
            if (!last && ++runs % stride != 0) continue;
            Putf(s, " H%.1f V%.1f", a.X(series[k]->values[i]),
                 bottom - (bottom - 14) * (i + 1.0) / series[k]->n);
        }
        Put(s, "\"/>\n");
    }
    ThresholdLine(s, a);
    Put(s, "</svg>\n");
}

// min, median, mean, max and the band shares of one series.
void StatsRow(Sink* s, const char* name, const Series& v, int linear) {
    Putf(s, "<tr><th>%s</th><td class=\"n\">%d</td>", name, (int)v.n);
    if (v.n == 0) {
        Put(s, "<td class=\"n\" colspan=\"8\">none</td></tr>\n");
        return;
    }
    int bands[4] = {0, 0, 0, 0};
    for (int32_t i = 0; i < v.n; i++) bands[PlotBand((float)v.values[i])]++;
    Putf(s,
         "<td class=\"n\">%.1f</td><td class=\"n\">%.1f</td><td class=\"n\">%.1f</td><td "
         "class=\"n\">%.1f</td>",
         v.values[0], Quantile(v.values, v.n, 0.5), MeanOfValues(v.values, v.n, linear),
         v.values[v.n - 1]);
    for (int b = 0; b < 4; b++) Putf(s, "<td class=\"n\">%.1f %%</td>", 100.0 * bands[b] / v.n);
    Put(s, "</tr>\n");
}

void PutChannel(Sink* s, int c) {
    static double values[MaxRecords], means[MaxRecords];
    const CoverageExport& e = coverageExport;
    Series v = {values, 0}, m = {means, e.meanCount[c]};
    for (int32_t i = 0; i < recordCount; i++)
        if (recordStore.rows[i].flags & RECORD_GPS_FIX)
            values[v.n++] = ChannelLookup[c][recordStore.rows[i].ch[c]];
    memcpy(means, e.means[c], sizeof(double) * (size_t)m.n);
    qsort(values, (size_t)v.n, sizeof values[0], CompareDoubles);
    qsort(means, (size_t)m.n, sizeof means[0], CompareDoubles);
    Put(s, "<section>\n<h3>Channel ");
    PutInt(s, c + 1);
    Put(s, " (");
    PutEscaped(s, channelLabels[c], ESCAPE_XML);
    Put(s, c == e.channel ? ")</h3>\n" : ")</h3>\n");
    Put(s,
        "<table><tr><th></th><th class=\"n\">count</th><th class=\"n\">min</th><th "
        "class=\"n\">median</th>"
        "<th class=\"n\">mean</th><th class=\"n\">max</th>");
    for (int b = 0; b < 4; b++) {
        Putf(s, "<th class=\"n\"><span class=\"sw\" style=\"background:");
        PutHex(s, BandColour(b));
        Putf(s, "\"></span>%s</th>", BandNames[b]);
    }
    Put(s, "</tr>\n");
    StatsRow(s, "Samples", v, e.settings.linear);
    StatsRow(s, "Local means", m, e.settings.linear);
    Put(s, "</table>\n");
    if (v.n > 0) {
        const Axis a = ValueAxis(v, m);
        Put(s, "<div class=\"charts\"><div>");
        Histogram(s, a, v, m);
        Put(s, "</div><div>");
        Cumulative(s, a, v, m);
        Put(s, "</div></div>\n");
    }
    Put(s, "</section>\n");
}

// ---- The page -----------------------------------------------------------------------

void PutFacts(Sink* s, const char* surveyName) {
    const CoverageExport& e = coverageExport;
    char text[2 * PathSize + 64];
    int32_t fixes = 0;
    for (int32_t i = 0; i < recordCount; i++)
        fixes += (recordStore.rows[i].flags & RECORD_GPS_FIX) != 0;
    Put(s, "<section>\n<h2>Survey</h2>\n<div class=\"facts\"><table>\n");
    Cell(s, "File", surveyName);
    IsoTime(recordingParams.startTime, text);
    Cell(s, "Start", recordingParams.startTime != 0 ? text : "not kept");
    uint32_t first, last;
    if (RecordTimeSpan(&first, &last)) {
        const unsigned span = last - first;
        snprintf(text, sizeof text, "%u:%02u:%02u", span / 3600, span / 60 % 60, span % 60);
    } else {
        snprintf(text, sizeof text, "no record times");
    }
    Cell(s, "Duration", text);
    snprintf(text, sizeof text, "%d (%d with a GPS fix)", (int)recordCount, (int)fixes);
    Cell(s, "Records", text);
    snprintf(text, sizeof text, "%.2f km", DistanceDriven() / 1000);
    Cell(s, "Distance", text);
    if (recordingParams.distanceMode)
        snprintf(text, sizeof text, "%d m (by distance)", (int)recordingParams.intervalMeters);
    else
        snprintf(text, sizeof text, "%d s", (int)recordingParams.intervalSeconds);
    Cell(s, "Interval", text);
    // One row for the four curves when they are one file.
    int same = 1;
    for (int c = 1; c < 4; c++)
        same &= strcmp(exportCurvePath[c], exportCurvePath[0]) == 0 &&
                exportCurveRead[c] == exportCurveRead[0];
    for (int c = 0; c < (same ? 1 : 4); c++) {
        const char* path = exportCurvePath[c];
        const char* name = path + strlen(path);
        while (name > path && name[-1] != '/' && name[-1] != '\\') name--;
        snprintf(text, sizeof text, "%s%s", name,
                 exportCurveRead[c] ? "" : " (missing: default curve)");
        char head[40];
        snprintf(head, sizeof head, same ? "Curves" : "Curve, ch %d", c + 1);
        Cell(s, head, text);
    }
    Put(s, "</table><table>\n");
    snprintf(text, sizeof text, "%d (%s)", e.channel + 1, channelLabels[e.channel]);
    Cell(s, "Channel", text);
    snprintf(text, sizeof text, "%.1f m of route", e.settings.windowMetres);
    Cell(s, "Local mean", text);
    snprintf(text, sizeof text, "at least %d samples", e.settings.minSamples);
    Cell(s, "Window", text);
    Cell(s, "Averaging", e.settings.linear ? "values as they stand" : "as power (dB)");
    snprintf(text, sizeof text, "%g m square", e.settings.tileMetres);
    Cell(s, "Tiles", text);
    snprintf(text, sizeof text, "%s of the local means at or above %.1f",
             e.settings.statistic == COVERAGE_P10 ? "10th percentile" : "median",
             e.settings.threshold);
    Cell(s, "A tile passes", text);
    snprintf(text, sizeof text, "%g %%, one-sided (Wilson)", 100 * e.settings.confidence);
    Cell(s, "Confidence", text);
    snprintf(text, sizeof text, "%d tiles, %.4f\xb0 N mean latitude", (int)e.here.tileCount,
             e.grid.meanLatitudeDegrees);
    Cell(s, "Grid", text);
    Put(s, "</table></div>\n</section>\n");
}

void PutLegend(Sink* s, const char* kind, uint32_t colour, const char* text) {
    Put(s, "<span class=\"sw\" style=\"background:");
    if (kind != nullptr)
        Put(s, kind);
    else
        PutHex(s, colour);
    Put(s, "\"></span>");
    Put(s, text);
}

void PutTags(Sink* s) {
    Put(s, "<section>\n<h2>Tags</h2>\n");
    if (tagCount == 0) {
        Put(s, "<p>The survey has no tags.</p>\n</section>\n");
        return;
    }
    Put(s, "<ol class=\"tags\">\n");
    for (int t = 0; t < tagCount && t < MaxTextTags; t++) {
        Put(s, "<li>");
        PutEscaped(s, tagText[t], ESCAPE_XML);
        Putf(s, " <span style=\"color:#777\">(record %d)</span></li>\n", (int)tagRecord[t] + 1);
    }
    Put(s, "</ol>\n</section>\n");
}

void PutPage(Sink* s, const char* surveyName, const char* version) {
    const CoverageExport& e = coverageExport;
    char statement[256], text[320];
    ReliabilityText(statement, sizeof statement);
    Put(s,
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n<title>Coverage "
        "report: ");
    PutEscaped(s, surveyName, ESCAPE_XML);
    Put(s, "</title>\n<style>\n");
    Put(s, Style);
    Put(s, "</style></head>\n<body>\n<h1>Coverage report <small>");
    PutEscaped(s, surveyName, ESCAPE_XML);
    Putf(s, "</small></h1>\n<p class=\"sub\">veldor-export %s &middot; channel %d (", version,
         e.channel + 1);
    PutEscaped(s, channelLabels[e.channel], ESCAPE_XML);
    Put(s, ")</p>\n");
    Putf(s, "<div class=\"verdict%s\"><strong>%s</strong>\n", e.here.lowerBound < 0.9 ? " low" : "",
         statement);
    Putf(s, "<p>%d local means of %.1f m; %d under-sampled (fewer than %d samples).</p>",
         (int)e.here.windowCount, e.settings.windowMetres, (int)e.here.undersampledCount,
         e.settings.minSamples);
    if (e.compared) {
        const CoverageComparison& k = e.comparison;
        Put(s, "<p>Against ");
        PutEscaped(s, e.otherName, ESCAPE_XML);
        Putf(s, ": %d tiles better, %d worse, %d within %g dB; %d only here, %d only there.</p>",
             (int)k.better, (int)k.worse, (int)k.within, e.delta, (int)k.onlyHere,
             (int)k.onlyOther);
    }
    Put(s, "</div>\n");
    PutFacts(s, surveyName);
    PlaceMap();
    Put(s, "<section>\n<h2>Route</h2>\n");
    PutRouteMap(s);
    Put(s, "<p class=\"legend\">");
    for (int b = 0; b < 4; b++) {
        if (b < 3)
            snprintf(text, sizeof text, "%s above %g", BandNames[b], (double)powerBreak[b]);
        else
            snprintf(text, sizeof text, "%s %g or below", BandNames[b], (double)powerBreak[2]);
        PutLegend(s, nullptr, BandColour(b), text);
    }
    Put(s,
        "<span class=\"sw\" style=\"border-radius:50%;border:1.5px solid "
        "#000\"></span>tag</p>\n</section>\n");
    Put(s, "<section>\n<h2>Tiles</h2>\n");
    PutTileMap(s);
    Put(s, "<p class=\"legend\">");
    snprintf(text, sizeof text, "pass: %d", (int)e.here.passed);
    PutLegend(s, "#43a047", 0, text);
    snprintf(text, sizeof text, "fail: %d", (int)(e.here.tileCount - e.here.passed));
    PutLegend(s, "#e53935", 0, text);
    Putf(s, " &nbsp; tiles of %g m</p>\n</section>\n", e.settings.tileMetres);
    if (e.compared) {
        Put(s, "<section>\n<h2>Difference</h2>\n");
        PutDifferenceMap(s);
        Put(s, "<p class=\"legend\">");
        const CoverageComparison& k = e.comparison;
        snprintf(text, sizeof text, "better by over %g dB: %d", e.delta, (int)k.better);
        PutLegend(s, "#1e63b4", 0, text);
        snprintf(text, sizeof text, "worse: %d", (int)k.worse);
        PutLegend(s, "#ef6c00", 0, text);
        snprintf(text, sizeof text, "within: %d", (int)k.within);
        PutLegend(s, "#c8c8c8", 0, text);
        snprintf(text, sizeof text, "in one survey only: %d", (int)(k.onlyHere + k.onlyOther));
        PutLegend(s, "#fff", 0, text);
        Put(s, "</p>\n</section>\n");
    }
    Put(s,
        "<h2>Values</h2>\n<p class=\"legend\"><span class=\"sw\" "
        "style=\"background:#9fb6c8\"></span>samples"
        "<span class=\"sw\" style=\"background:#fff;border:1.5px solid #1f3a4d\"></span>local means"
        " &nbsp; histogram (share of each) and cumulative distribution</p>\n");
    for (int c = 0; c < 4; c++) PutChannel(s, c);
    PutTags(s);
    Put(s, "</body></html>\n");
}

}  // namespace

int WriteReport(FILE* file, const char* surveyName, const char* version) {
    static Sink sink;
    sink.file = file;
    sink.used = 0;
    sink.failed = 0;
    PutPage(&sink, surveyName, version);
    Flush(&sink);
    return !sink.failed && ferror(file) == 0;
}
