#include "printing/print_plot.h"

#include <stdio.h>
#include <stdlib.h>

#include "base/platform.h"
#include "views/display_format.h"
#include "views/plot_geometry.h"

PrintArea printArea;
PrintAreaFields printPlotBoxFields;

namespace {

constexpr int MaxCoordinateWords = 4;

// A double truncated toward zero into 32 bits, held at the ends of the range.
int32_t TruncateToInt32(double v) {
    if (v != v) return 0;
    if (v >= 2147483647.0) return INT32_MAX;
    if (v <= -2147483648.0) return INT32_MIN;
    return (int32_t)v;
}

int32_t HoldInt32(int64_t v) {
    if (v > INT32_MAX) return INT32_MAX;
    if (v < INT32_MIN) return INT32_MIN;
    return (int32_t)v;
}

int32_t Clamp(int32_t v, int32_t low, int32_t high) {
    return v < low ? low : v > high ? high : v;
}

int IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// Splits text at blanks into at most four words, each cut to 31 characters.
int SplitWords(const char* text, char words[MaxCoordinateWords][PrintCoordinateTextSize]) {
    int n = 0;
    const char* p = text;
    while (n < MaxCoordinateWords) {
        while (IsBlank(*p)) p++;
        if (*p == '\0') break;
        int length = 0;
        for (; *p != '\0' && !IsBlank(*p); p++)
            if (length < PrintCoordinateTextSize - 1) words[n][length++] = *p;
        words[n][length] = '\0';
        n++;
    }
    return n;
}

int32_t Part(const char* word, double factor) {
    return TruncateToInt32(atof(word) * factor);
}

int32_t Magnitude(int32_t v) {
    return v < 0 ? (v == INT32_MIN ? INT32_MAX : -v) : v;
}

const char* const InvalidCoordinates = "Co-ordinates are invalid";

}  // namespace

int32_t ParseCoordinate(const char* text) {
    char words[MaxCoordinateWords][PrintCoordinateTextSize];
    int n = SplitWords(text == nullptr ? "" : text, words);
    if (n == 0) return 0;
    char letter = words[n - 1][0];
    if (letter >= 'a' && letter <= 'z') letter = (char)(letter - 'a' + 'A');
    static const double Factors[3] = {3600000.0, 60000.0, 1000.0};
    int64_t sum = 0;
    if (letter == 'N' || letter == 'E' || letter == 'S' || letter == 'W') {
        double sign = (letter == 'S' || letter == 'W') ? -1.0 : 1.0;
        for (int k = 0; k < 3 && k < n - 1; k++) sum += Part(words[k], sign * Factors[k]);
    } else {
        // The sign is the degrees' alone: "-0 30" is half a degree north.
        int32_t degrees = Part(words[0], Factors[0]);
        sum = Magnitude(degrees);
        for (int k = 1; k < 3 && k < n; k++) sum += Magnitude(Part(words[k], Factors[k]));
        if (degrees < 0) sum = -sum;
    }
    return (int32_t)(uint32_t)(uint64_t)sum;
}

int ValidatePrintArea(int mode, int confirm) {
    PrintArea& a = printArea;
    if (mode == PRINT_FIT_DISPLAYED) {
        if (!PlatformWindowExists(WINDOW_PLOT)) {
            PlatformMessageBox("Plot window is not currently displayed", ICON_STOP);
            return 0;
        }
        int64_t halfWidth = ((int64_t)PlotAreaWidth() * plotView.scale) / 2;
        int64_t halfHeight = ((int64_t)PlotAreaHeight() * plotView.scale) / 2;
        a.mapLeftLongitude = HoldInt32(plotView.centreLongitude - halfWidth);
        a.mapRightLongitude = HoldInt32(plotView.centreLongitude + halfWidth);
        a.mapBottomLatitude = HoldInt32(plotView.centreLatitude - halfHeight);
        a.mapTopLatitude = HoldInt32(plotView.centreLatitude + halfHeight);
    } else if (mode == PRINT_SPECIFY) {
        const PrintAreaFields& f = printPlotBoxFields;
        a.mapTopLatitude = ParseCoordinate(f.map[0]);
        a.mapLeftLongitude = ParseCoordinate(f.map[1]);
        a.mapBottomLatitude = ParseCoordinate(f.map[2]);
        a.mapRightLongitude = ParseCoordinate(f.map[3]);
        a.pageLeft = atoi(f.page[0]);
        a.pageTop = atoi(f.page[1]);
        a.pageRight = atoi(f.page[2]);
        a.pageBottom = atoi(f.page[3]);
        if (a.mapLeftLongitude >= a.mapRightLongitude || a.mapTopLatitude <= a.mapBottomLatitude ||
            a.pageLeft >= a.pageRight || a.pageTop >= a.pageBottom) {
            PlatformMessageBox(InvalidCoordinates, ICON_STOP);
            return 0;
        }
        if (a.pageLeft < 0 || a.pageTop < 0 || a.pageRight > a.printableWidth ||
            a.pageBottom > a.printableHeight) {
            PlatformMessageBox("The defined print area does not fit on the page", ICON_STOP);
            return 0;
        }
    } else {
        const Record* rows = recordStore.rows;
        int32_t count = recordCount < MaxRecords ? recordCount : MaxRecords;
        if (count >= 1) {
            a.mapTopLatitude = a.mapBottomLatitude = rows[0].latitude;
            a.mapLeftLongitude = a.mapRightLongitude = rows[0].longitude;
        }
        for (int32_t i = 1; i < count; i++) {
            if (rows[i].latitude > a.mapTopLatitude) a.mapTopLatitude = rows[i].latitude;
            if (rows[i].latitude < a.mapBottomLatitude) a.mapBottomLatitude = rows[i].latitude;
            if (rows[i].longitude > a.mapRightLongitude) a.mapRightLongitude = rows[i].longitude;
            if (rows[i].longitude < a.mapLeftLongitude) a.mapLeftLongitude = rows[i].longitude;
        }
        if (count < 2 || a.mapTopLatitude == a.mapBottomLatitude ||
            a.mapLeftLongitude == a.mapRightLongitude) {
            PlatformMessageBox("There is nothing to print", ICON_STOP);
            return 0;
        }
    }
    if (mode != PRINT_SPECIFY) {
        a.pageLeft = 0;
        a.pageTop = 0;
        a.pageRight = a.printableWidth;
        a.pageBottom = a.printableHeight;
    }
    a.mapTopLatitude = Clamp(a.mapTopLatitude, -PlotLatitudeLimit, PlotLatitudeLimit);
    a.mapBottomLatitude = Clamp(a.mapBottomLatitude, -PlotLatitudeLimit, PlotLatitudeLimit);
    a.mapLeftLongitude = Clamp(a.mapLeftLongitude, -PlotLongitudeLimit, PlotLongitudeLimit);
    a.mapRightLongitude = Clamp(a.mapRightLongitude, -PlotLongitudeLimit, PlotLongitudeLimit);
    if (!confirm) return 1;
    char top[ScreenTextSize], left[ScreenTextSize], bottom[ScreenTextSize], right[ScreenTextSize];
    FormatPosition(a.mapTopLatitude, AXIS_LATITUDE, top);
    FormatPosition(a.mapLeftLongitude, AXIS_LONGITUDE, left);
    FormatPosition(a.mapBottomLatitude, AXIS_LATITUDE, bottom);
    FormatPosition(a.mapRightLongitude, AXIS_LONGITUDE, right);
    char message[1024];
    // clang-format off
    snprintf(message, sizeof message, "Map area:\n\t%s, %s\n\t%s, %s\nPage area:\n\t%d x %d mm\n\t%d x %d mm\n\nIs this correct?",
             top, left, bottom, right, (int)a.pageLeft, (int)a.pageTop, (int)a.pageRight, (int)a.pageBottom);
    // clang-format on
    return PlatformAskYesNo(message) ? 1 : 0;
}

int AnyRecordInPrintArea() {
    const PrintArea& a = printArea;
    int32_t count = recordCount < MaxRecords ? recordCount : MaxRecords;
    for (int32_t i = 0; i < count; i++) {
        const Record& r = recordStore.rows[i];
        if (a.mapBottomLatitude < r.latitude && r.latitude < a.mapTopLatitude &&
            a.mapLeftLongitude < r.longitude && r.longitude < a.mapRightLongitude)
            return 1;
    }
    return 0;
}

PrintScale PlacePrintArea(int32_t offsetX, int32_t offsetY, int32_t horzSizeMm,
                          int32_t vertSizeMm) {
    PrintArea& a = printArea;
    a.pageLeft = a.pageLeft * 10 - offsetX;
    a.pageRight = a.pageRight * 10 - offsetX;
    a.pageTop = a.pageTop * 10 - offsetY;
    a.pageBottom = a.pageBottom * 10 - offsetY;
    a.printableWidth = horzSizeMm * 10;
    a.printableHeight = vertSizeMm * 10;
    a.pageTop = a.printableHeight - a.pageTop;
    a.pageBottom = a.printableHeight - a.pageBottom;
    int64_t dLat = (int64_t)a.mapTopLatitude - a.mapBottomLatitude;
    int64_t dLon = (int64_t)a.mapRightLongitude - a.mapLeftLongitude;
    // A printer that reports a size of 0 still gets a scale.
    int64_t pageHeight = (int64_t)a.pageTop - a.pageBottom;
    int64_t pageWidth = (int64_t)a.pageRight - a.pageLeft;
    PrintScale s;
    s.latScale = HoldInt32(pageHeight > 0 ? dLat / pageHeight : dLat);
    s.lonScale = HoldInt32(pageWidth > 0 ? dLon / pageWidth : dLon);
    if (s.latScale < 1) s.latScale = 1;
    if (s.lonScale < 1) s.lonScale = 1;
    if (a.keepAspect) s.latScale = s.lonScale = s.latScale > s.lonScale ? s.latScale : s.lonScale;
    if (a.fitToPage) {
        a.pageRight = a.printableWidth;
        a.pageTop = a.printableHeight;
        a.pageLeft = HoldInt32((a.printableWidth - dLon / s.lonScale) / 2);
        a.pageBottom = HoldInt32((a.printableHeight - dLat / s.latScale) / 2);
    }
    return s;
}

int PrintRowSquares(const Record& row, const PrintScale& scale, PlotSquare squares[4]) {
    const PrintArea& a = printArea;
    if (row.longitude < a.mapLeftLongitude || row.longitude > a.mapRightLongitude ||
        row.latitude < a.mapBottomLatitude || row.latitude > a.mapTopLatitude)
        return 0;
    int64_t x = a.pageLeft + ((int64_t)row.longitude - a.mapLeftLongitude) / scale.lonScale;
    int64_t y = a.pageBottom + ((int64_t)row.latitude - a.mapBottomLatitude) / scale.latScale;
    if (x < a.pageLeft || x > a.pageRight || y < a.pageBottom || y > a.pageTop) return 0;
    // Paper y grows upward, so the squares of All come out mirrored from the
    // screen: channels 1 and 2 below the point, 3 and 4 above it.
    return PlotRowSquares(row, (int32_t)x, (int32_t)(y - a.printableHeight), plotChannel,
                          a.printDotSize, squares);
}
