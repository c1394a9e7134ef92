// The four open formats and the summary. The texts go through one buffer;
// numbers are formatted by hand (positions in exact integer arithmetic,
// calibrated values from a table of the 256 texts of each channel), so that
// a full store is written in a few milliseconds.
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

// What every writer needs of the store: the value texts of each channel and
// raw byte, and each record's tags in the order of the tag table.
struct ExportTables {
    char valueText[4][256][16];
    int16_t firstTag[MaxRecords];
    int16_t nextTag[MaxTextTags];
};
ExportTables tables;

void BuildTables() {
    for (int c = 0; c < 4; c++)
        for (int r = 0; r < 256; r++)
            snprintf(tables.valueText[c][r], sizeof tables.valueText[c][r], "%.3f",
                     (double)ChannelLookup[c][r]);
    memset(tables.firstTag, 0xFF, sizeof tables.firstTag);
    static int16_t* last[MaxRecords];
    memset(last, 0, sizeof last);
    for (int t = 0; t < tagCount && t < MaxTextTags; t++) {
        tables.nextTag[t] = -1;
        const int32_t r = tagRecord[t];
        if (r < 0 || r >= recordCount) continue;
        *(last[r] != nullptr ? last[r] : &tables.firstTag[r]) = (int16_t)t;
        last[r] = &tables.nextTag[t];
    }
}

const char* const BandNames[4] = {"High", "Mid", "Low", "None"};

// A record's time as ISO 8601 between open and close; 0, and nothing
// written, for a record of a file that keeps no times.
int PutTime(Sink* s, const Record& row, const char* open, const char* close) {
    if (row.time == 0) return 0;
    char time[21];
    IsoTime(row.time, time);
    Put(s, open);
    Put(s, time, 20);
    Put(s, close);
    return 1;
}

void PutValue(Sink* s, const Record& row, int c) {
    Put(s, tables.valueText[c][row.ch[c]]);
}

void PutFlag(Sink* s, const Record& row, uint8_t flag, const char* yes, const char* no) {
    Put(s, (row.flags & flag) != 0 ? yes : no);
}

// ---- CSV ----------------------------------------------------------------------------

void WriteCsv(Sink* s) {
    Put(s, "index,time,latitude,longitude,ch1_raw,ch1_value,ch2_raw,ch2_value,ch3_raw,"
           "ch3_value,ch4_raw,ch4_value,gps_fix,gps_diff,live,accessory_channel,tags\r\n");
    for (int32_t i = 0; i < recordCount; i++) {
        const Record& row = recordStore.rows[i];
        PutInt(s, i + 1);
        Put(s, ",", 1);
        PutTime(s, row, "", "");
        Put(s, ",", 1);
        PutDegrees(s, row.latitude);
        Put(s, ",", 1);
        PutDegrees(s, row.longitude);
        for (int c = 0; c < 4; c++) {
            Put(s, ",", 1);
            PutInt(s, row.ch[c]);
            Put(s, ",", 1);
            PutValue(s, row, c);
        }
        PutFlag(s, row, RECORD_GPS_FIX, ",1", ",0");
        PutFlag(s, row, RECORD_GPS_DIFF, ",1", ",0");
        PutFlag(s, row, RECORD_LIVE, ",1", ",0");
        Put(s, ",", 1);
        if (row.flags & RECORD_HAS_CHANNEL) PutInt(s, row.accessoryChannel);
        Put(s, ",", 1);
        if (tables.firstTag[i] >= 0) {
            // The record's tags in one quoted field, " | " between them.
            Put(s, "\"", 1);
            for (int t = tables.firstTag[i]; t >= 0; t = tables.nextTag[t]) {
                if (t != tables.firstTag[i]) Put(s, " | ", 3);
                PutEscaped(s, tagText[t], ESCAPE_CSV);
            }
            Put(s, "\"", 1);
        }
        Put(s, "\r\n", 2);
    }
}

// ---- GeoJSON -------------------------------------------------------------------------

void WriteGeoJson(Sink* s, const char* surveyName) {
    Put(s, "{\"type\":\"FeatureCollection\",\"name\":\"");
    PutEscaped(s, surveyName, ESCAPE_JSON);
    Put(s, "\",\"features\":[\n");
    for (int32_t i = 0; i < recordCount; i++) {
        const Record& row = recordStore.rows[i];
        Put(s, i > 0 ? ",\n" : "");
        Put(s, "{\"type\":\"Feature\",\"geometry\":{\"type\":\"Point\",\"coordinates\":[");
        PutDegrees(s, row.longitude);
        Put(s, ",", 1);
        PutDegrees(s, row.latitude);
        Put(s, "]},\"properties\":{\"index\":");
        PutInt(s, i + 1);
        if (!PutTime(s, row, ",\"time\":\"", "\"")) Put(s, ",\"time\":null");
        for (int c = 0; c < 4; c++) {
            char name[24];
            snprintf(name, sizeof name, ",\"ch%d_raw\":", c + 1);
            Put(s, name);
            PutInt(s, row.ch[c]);
            snprintf(name, sizeof name, ",\"ch%d_value\":", c + 1);
            Put(s, name);
            PutValue(s, row, c);
        }
        PutFlag(s, row, RECORD_GPS_FIX, ",\"gps_fix\":true", ",\"gps_fix\":false");
        PutFlag(s, row, RECORD_GPS_DIFF, ",\"gps_diff\":true", ",\"gps_diff\":false");
        PutFlag(s, row, RECORD_LIVE, ",\"live\":true", ",\"live\":false");
        Put(s, ",\"accessory_channel\":");
        if (row.flags & RECORD_HAS_CHANNEL) PutInt(s, row.accessoryChannel);
        else Put(s, "null");
        Put(s, ",\"tags\":[");
        for (int t = tables.firstTag[i]; t >= 0; t = tables.nextTag[t]) {
            Put(s, t == tables.firstTag[i] ? "\"" : ",\"");
            PutEscaped(s, tagText[t], ESCAPE_JSON);
            Put(s, "\"");
        }
        Put(s, "]}}");
    }
    Put(s, "\n]}\n");
}

// ---- KML -----------------------------------------------------------------------------

void PutKmlPoint(Sink* s, const Record& row) {
    Put(s, "<Point><coordinates>");
    PutDegrees(s, row.longitude);
    Put(s, ",", 1);
    PutDegrees(s, row.latitude);
    Put(s, "</coordinates></Point>");
}

void PutKmlData(Sink* s, const char* name, const char* value) {
    Put(s, "<Data name=\"");
    Put(s, name);
    Put(s, "\"><value>");
    Put(s, value);
    Put(s, "</value></Data>");
}

void PutKmlRecord(Sink* s, int32_t i, int band) {
    const Record& row = recordStore.rows[i];
    Put(s, "<Placemark><name>");
    PutInt(s, i + 1);
    Put(s, "</name><styleUrl>#band");
    PutInt(s, band);
    Put(s, "</styleUrl>");
    PutTime(s, row, "<TimeStamp><when>", "</when></TimeStamp>");
    Put(s, "<ExtendedData>");
    for (int c = 0; c < 4; c++) {
        char name[16], raw[8];
        snprintf(name, sizeof name, "ch%d_value", c + 1);
        PutKmlData(s, name, tables.valueText[c][row.ch[c]]);
        snprintf(name, sizeof name, "ch%d_raw", c + 1);
        snprintf(raw, sizeof raw, "%d", row.ch[c]);
        PutKmlData(s, name, raw);
    }
    PutKmlData(s, "gps_fix", (row.flags & RECORD_GPS_FIX) ? "1" : "0");
    PutKmlData(s, "gps_diff", (row.flags & RECORD_GPS_DIFF) ? "1" : "0");
    PutKmlData(s, "live", (row.flags & RECORD_LIVE) ? "1" : "0");
    if (row.flags & RECORD_HAS_CHANNEL) {
        char accessory[8];
        snprintf(accessory, sizeof accessory, "%d", row.accessoryChannel);
        PutKmlData(s, "accessory_channel", accessory);
    }
    Put(s, "</ExtendedData>");
    PutKmlPoint(s, row);
    Put(s, "</Placemark>\n");
}

// One folder per band of a channel choice (0..3 or best), each with the
// records of that band in record order.
void PutKmlBands(Sink* s, int channel) {
    static uint8_t band[MaxRecords];
    for (int32_t i = 0; i < recordCount; i++) band[i] = (uint8_t)ExportBand(recordStore.rows[i], channel);
    for (int b = 0; b < 4; b++) {
        char name[64];
        if (b < 3) snprintf(name, sizeof name, "%s: above %g", BandNames[b], (double)powerBreak[b]);
        else snprintf(name, sizeof name, "%s: %g or below", BandNames[b], (double)powerBreak[2]);
        Put(s, "<Folder><name>");
        Put(s, name);
        Put(s, "</name>\n");
        for (int32_t i = 0; i < recordCount; i++)
            if (band[i] == b) PutKmlRecord(s, i, b);
        Put(s, "</Folder>\n");
    }
}

void PutIntervalText(Sink* s) {
    char text[96];
    if (recordingParams.distanceMode)
        snprintf(text, sizeof text, "interval %d m (by distance)", (int)recordingParams.intervalMeters);
    else
        snprintf(text, sizeof text, "interval %d s", (int)recordingParams.intervalSeconds);
    Put(s, text);
}

void ChannelName(int channel, char* out, int size) {
    if (channel == PLOT_BEST) snprintf(out, size, "best of the four channels");
    else snprintf(out, size, "channel %d (%s)", channel + 1, channelLabels[channel]);
}

void WriteKml(Sink* s, int channel, const char* surveyName) {
    char time[21];
    IsoTime(recordingParams.startTime, time);
    Put(s, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n<name>");
    PutEscaped(s, surveyName, ESCAPE_XML);
    Put(s, "</name>\n<description>Survey ");
    PutEscaped(s, surveyName, ESCAPE_XML);
    Put(s, ", started ");
    Put(s, time);
    Put(s, ", ");
    PutIntervalText(s);
    Put(s, ", ");
    PutInt(s, recordCount);
    Put(s, " records, coloured by ");
    char name[160];
    ChannelName(channel == PLOT_ALL ? 0 : channel, name, sizeof name);
    PutEscaped(s, channel == PLOT_ALL ? "each channel in its folder" : name, ESCAPE_XML);
    Put(s, "</description>\n");
    const uint32_t colours[4] = {PlotColourHigh, PlotColourMid, PlotColourLow, PlotColourNone};
    for (int b = 0; b < 4; b++) {
        // The program's 0x00BBGGRR is KML's aabbggrr without the alpha.
        char style[320];
        snprintf(style, sizeof style,
                 "<Style id=\"band%d\"><IconStyle><color>ff%06x</color><scale>0.6</scale>"
                 "<Icon><href>http://maps.google.com/mapfiles/kml/shapes/shaded_dot.png</href>"
                 "</Icon></IconStyle><LabelStyle><scale>0</scale></LabelStyle></Style>\n",
                 b, (unsigned)(colours[b] & 0xFFFFFF));
        Put(s, style);
    }
    if (channel == PLOT_ALL) {
        for (int c = 0; c < 4; c++) {
            ChannelName(c, name, sizeof name);
            Put(s, "<Folder><name>");
            PutEscaped(s, name, ESCAPE_XML);
            Put(s, "</name>\n");
            PutKmlBands(s, c);
            Put(s, "</Folder>\n");
        }
    } else {
        PutKmlBands(s, channel);
    }
    Put(s, "<Folder><name>Tags</name>\n");
    for (int t = 0; t < tagCount && t < MaxTextTags; t++) {
        if (tagRecord[t] < 0 || tagRecord[t] >= recordCount) continue;
        Put(s, "<Placemark><name>");
        PutEscaped(s, tagText[t], ESCAPE_XML);
        Put(s, "</name><description>Record ");
        PutInt(s, tagRecord[t] + 1);
        Put(s, "</description>");
        PutKmlPoint(s, recordStore.rows[tagRecord[t]]);
        Put(s, "</Placemark>\n");
    }
    Put(s, "</Folder>\n</Document>\n</kml>\n");
}

// ---- GPX -----------------------------------------------------------------------------

void PutGpxPosition(Sink* s, const char* element, const Record& row) {
    Put(s, "<");
    Put(s, element);
    Put(s, " lat=\"");
    PutDegrees(s, row.latitude);
    Put(s, "\" lon=\"");
    PutDegrees(s, row.longitude);
    Put(s, "\">");
    PutTime(s, row, "<time>", "</time>");
}

void WriteGpx(Sink* s, const char* surveyName) {
    char time[21];
    IsoTime(recordingParams.startTime, time);
    Put(s, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<gpx version=\"1.1\" creator=\"veldor-export\""
           " xmlns=\"http://www.topografix.com/GPX/1/1\" xmlns:veldor=\"urn:veldor:export:1\">\n"
           "<metadata><name>");
    PutEscaped(s, surveyName, ESCAPE_XML);
    Put(s, "</name><desc>");
    PutIntervalText(s);
    Put(s, "</desc><time>");
    Put(s, time);
    Put(s, "</time></metadata>\n");
    for (int t = 0; t < tagCount && t < MaxTextTags; t++) {
        if (tagRecord[t] < 0 || tagRecord[t] >= recordCount) continue;
        PutGpxPosition(s, "wpt", recordStore.rows[tagRecord[t]]);
        Put(s, "<name>");
        PutEscaped(s, tagText[t], ESCAPE_XML);
        Put(s, "</name><desc>Record ");
        PutInt(s, tagRecord[t] + 1);
        Put(s, "</desc></wpt>\n");
    }
    Put(s, "<trk><name>");
    PutEscaped(s, surveyName, ESCAPE_XML);
    Put(s, "</name><trkseg>\n");
    for (int32_t i = 0; i < recordCount; i++) {
        const Record& row = recordStore.rows[i];
        PutGpxPosition(s, "trkpt", row);
        Put(s, "<extensions>");
        for (int c = 0; c < 4; c++) {
            char tag[48];
            snprintf(tag, sizeof tag, "<veldor:ch%d_value>", c + 1);
            Put(s, tag);
            PutValue(s, row, c);
            snprintf(tag, sizeof tag, "</veldor:ch%d_value><veldor:ch%d_raw>", c + 1, c + 1);
            Put(s, tag);
            PutInt(s, row.ch[c]);
            snprintf(tag, sizeof tag, "</veldor:ch%d_raw>", c + 1);
            Put(s, tag);
        }
        PutFlag(s, row, RECORD_GPS_FIX, "<veldor:gps_fix>1</veldor:gps_fix>",
                "<veldor:gps_fix>0</veldor:gps_fix>");
        PutFlag(s, row, RECORD_GPS_DIFF, "<veldor:gps_diff>1</veldor:gps_diff>",
                "<veldor:gps_diff>0</veldor:gps_diff>");
        PutFlag(s, row, RECORD_LIVE, "<veldor:live>1</veldor:live>", "<veldor:live>0</veldor:live>");
        if (row.flags & RECORD_HAS_CHANNEL) {
            Put(s, "<veldor:accessory_channel>");
            PutInt(s, row.accessoryChannel);
            Put(s, "</veldor:accessory_channel>");
        }
        Put(s, "</extensions></trkpt>\n");
    }
    Put(s, "</trkseg></trk>\n</gpx>\n");
}

// ---- Summary -------------------------------------------------------------------------

int CompareFloats(const void* a, const void* b) {
    const float x = *(const float*)a, y = *(const float*)b;
    return x < y ? -1 : x > y ? 1 : 0;
}

}  // namespace

int WriteExport(FILE* file, int format, int channel, const char* surveyName) {
    static Sink sink;
    sink.file = file;
    sink.used = 0;
    sink.failed = 0;
    BuildTables();
    if (format == FORMAT_CSV) WriteCsv(&sink);
    else if (format == FORMAT_GEOJSON) WriteGeoJson(&sink, surveyName);
    else if (format == FORMAT_KML) WriteKml(&sink, channel, surveyName);
    else if (format == FORMAT_GPX) WriteGpx(&sink, surveyName);
    Flush(&sink);
    return !sink.failed && ferror(file) == 0;
}

void WriteSummary(FILE* file, const char* surveyName) {
    fprintf(file, "Survey: %s\nRecords: %d\n", surveyName, (int)recordCount);
    uint32_t first, last;
    if (RecordTimeSpan(&first, &last)) {
        char from[21], to[21];
        IsoTime(first, from);
        IsoTime(last, to);
        fprintf(file, "Time span: %s to %s (%u s)\n", from, to, (unsigned)(last - first));
    } else {
        fprintf(file, "Time span: no record times\n");
    }
    fprintf(file, "Distance driven: %.1f m\n", DistanceDriven());
    static float values[MaxRecords];
    for (int c = 0; c < 4; c++) {
        int bands[4] = {0, 0, 0, 0};
        for (int32_t i = 0; i < recordCount; i++) {
            values[i] = ExportValue(recordStore.rows[i], c);
            bands[PlotBand(values[i])]++;
        }
        fprintf(file, "Channel %d (%s):", c + 1, channelLabels[c]);
        if (recordCount < 1) {
            fprintf(file, " no values\n");
            continue;
        }
        qsort(values, (size_t)recordCount, sizeof values[0], CompareFloats);
        const int32_t mid = recordCount / 2;
        const double median = recordCount % 2 ? (double)values[mid]
                                              : ((double)values[mid - 1] + (double)values[mid]) / 2.0;
        fprintf(file, " min %.3f, median %.3f, max %.3f;", (double)values[0], median,
                (double)values[recordCount - 1]);
        for (int b = 0; b < 4; b++)
            fprintf(file, " %s %.1f %%%s", BandNames[b], 100.0 * bands[b] / recordCount, b < 3 ? "," : "\n");
    }
}
