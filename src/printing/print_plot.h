// The printed plot's decisions: the area the operator chose, the parser of
// typed coordinates, the checks of the print dialog and where a record lands
// on paper. The dots take the Plot window's colour rule and square shapes.
//
// The page fields of printArea are whole millimetres while the dialog runs
// and tenths of a millimetre once PlacePrintArea has run for the job. On
// paper y counts up from the bottom of the page; the squares handed out are
// in the printer's logical units (MM_LOMETRIC), 0 at the top of the page and
// negative below it.
#ifndef VELDOR_PRINTING_PRINT_PLOT_H
#define VELDOR_PRINTING_PRINT_PLOT_H

#include <stdint.h>

#include "survey/survey_state.h"
#include "views/plot_view.h"

// How the map area is chosen.
constexpr int PRINT_FIT_DISPLAYED = 1;  // "Fit displayed area to page"
constexpr int PRINT_SPECIFY = 2;        // "Specify area"
constexpr int PRINT_FIT_ENTIRE = 3;     // "Fit entire area to page"

constexpr int PrintCoordinateTextSize = 32;  // 31 characters and the end
constexpr int PrintPageTextSize = 16;        // 15 characters and the end
constexpr int32_t PrintDotSizeMin = 1;
constexpr int32_t PrintDotSizeMax = 100;

struct PrintArea {
    int32_t mapTopLatitude;  // milliseconds of arc
    int32_t mapBottomLatitude;
    int32_t mapLeftLongitude;
    int32_t mapRightLongitude;
    int32_t pageLeft;  // the paper that the map area fills
    int32_t pageTop;
    int32_t pageRight;
    int32_t pageBottom;
    int32_t printableWidth;  // the printer's printable area
    int32_t printableHeight;
    int32_t printDotSize;  // side of a dot, tenths of a millimetre, 1..100
    int keepAspect;        // one scale for both axes
    int fitToPage;         // the two fit modes: the map is centred on the page
};

// Filled anew for each job by the dialog, used by the job.
extern PrintArea printArea;

// The eight "Define area" fields of the print dialog as typed: the map's
// top left latitude and longitude, then its bottom right ones; the page's
// top left X and Y, then its bottom right ones (mm). Read only in
// PRINT_SPECIFY.
struct PrintAreaFields {
    char map[4][PrintCoordinateTextSize];
    char page[4][PrintPageTextSize];
};
extern PrintAreaFields printPlotBoxFields;

// A coordinate typed in any of the degree forms the program shows, with the
// hemisphere letter as a word of its own or with a sign, to milliseconds of
// arc. An empty text or a letter alone gives 0.
int32_t ParseCoordinate(const char* text);

// Fills printArea's map and page (mm) for a mode, with the checks and the
// optional confirmation of the print dialog. Returns 0 when the dialog is to
// stay open (the operator has been told why, or answered No).
int ValidatePrintArea(int mode, int confirm);

// True when some record lies strictly inside printArea's map area.
int AnyRecordInPrintArea();

// Milliseconds of arc per tenth of a millimetre on the two axes, at least 1.
struct PrintScale {
    int32_t latScale;
    int32_t lonScale;
};

// Turns printArea's page (mm) into tenths of a millimetre with y counting up
// from the bottom of the page, and scales the map to it. offsetX and offsetY
// are the printer's physical offsets, taken off as they come; horzSizeMm and
// vertSizeMm its printable size, which become printableWidth and
// printableHeight in tenths.
PrintScale PlacePrintArea(int32_t offsetX, int32_t offsetY, int32_t horzSizeMm, int32_t vertSizeMm);

// The squares of a record's dot on paper (after PlacePrintArea), in the
// colours of the Plot's rule for plotChannel, each printDotSize on a side;
// 0 when the record lies outside the map area or its centre off the page.
int PrintRowSquares(const Record& row, const PrintScale& scale, PlotSquare squares[4]);

#endif
