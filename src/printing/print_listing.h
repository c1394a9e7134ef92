// The printed listing: the store as plain text lines under a short header,
// one record a line, many pages. Everything here is arithmetic and text; the
// print job itself (printer, AbortBox, the spooler) lives in the Win32 front
// end and asks these functions what to draw, where, and when a page ends.
#ifndef VELDOR_PRINTING_PRINT_LISTING_H
#define VELDOR_PRINTING_PRINT_LISTING_H

#include <stdint.h>

// One printed text, terminator included.
constexpr int PrintLineSize = 256;
// A page's first line after the first page; also what `line` is reset to.
constexpr int32_t PrintTopLine = 3;
// Every text but the title starts this many device units from the left.
constexpr int32_t PrintLeftMargin = 10;

#define PRINT_LISTING_DOC_NAME "VELDOR - Listing"
// AbortBox's status texts; the two print jobs share them.
#define PRINT_STATUS_INITIALISING "Initalising..."
#define PRINT_STATUS_STARTING "Starting..."
#define PRINT_STATUS_DRAW_ERROR "Error drawing page"
#define PRINT_STATUS_ABORTING "Aborting..."
#define PRINT_STATUS_COMPLETING "Completing..."
// AbortBox's page field or status field, terminator included.
constexpr int AbortBoxTextSize = 32;

// The job's state from the printer's metrics onwards. A text on line n has
// its bottom edge n x lineHeight device units from the top of the page.
struct PrintListingJob {
    int32_t lineHeight;    // tmHeight + tmExternalLeading of the default font
    int32_t linesPerPage;  // the last line a record may stand on
    int32_t pageWidth;     // HORZRES
    int32_t line;          // line of the next text
    int32_t pageNumber;    // from 1
    uint32_t lastUpdate;   // clock second of the last progress texts
};

// ---- Lines ---------------------------------------------------------------------------
// The line of record index into out (PrintLineSize bytes), in the format of
// section "Print Listing" read afresh: latitude, longitude, the four readings
// and, for a row with an accessory channel, its number, each field followed
// by " \t" but the last. Returns 1; an index outside the store gives
// "No data" and 0, and the job prints nothing for it.
int FormatPrintLine(int32_t index, char* out);

// ---- Metrics -------------------------------------------------------------------------
enum PrintRefusal {
    PRINT_METRICS_OK = 0,
    PRINT_FONT_INVALID = 1,   // line height below 1
    PRINT_PAGE_TOO_SHORT = 2  // less than one line per page
};
struct PrintLineMetrics {
    int refusal;          // PRINT_METRICS_OK or why the job is refused
    const char* message;  // the stop box's text for a refusal, else null
    int32_t lineHeight;
    int32_t linesPerPage;  // page height / lineHeight, less 1
};
// From the font's height and external leading and the page height (VERTRES),
// all in device units.
PrintLineMetrics MeasurePrintLines(int32_t fontHeight, int32_t externalLeading, int32_t pageHeight);
// A job about to start: the metrics, the page width, page 1, no progress
// shown yet, line at the top of the page.
PrintListingJob StartPrintListingJob(const PrintLineMetrics& metrics, int32_t pageWidth);

// ---- Header --------------------------------------------------------------------------
struct PrintText {
    int32_t x;     // device units from the left
    int32_t line;  // the text's bottom edge stands on this line
    int centred;   // 1: centred on x (the title), 0: starting at x
    char text[PrintLineSize];
};
// Title, two date lines, five file lines, the count line.
constexpr int PrintHeaderMaxTexts = 9;
// The first page's header into texts (room for maxTexts): the title, then
// the date, file and count lines that keys "Date", "Files" and "Stats" of
// section "Print Listing" ask for, read once, now. now is the present clock
// ("Printed: "); with the date lines it also becomes job->lastUpdate.
// Leaves job->line on the first record's line. Returns the number of texts.
int BuildPrintHeader(PrintListingJob* job, uint32_t now, PrintText* texts, int maxTexts);

// ---- Pages ---------------------------------------------------------------------------
// 1 when the row about to be printed on job.line opens a new page.
int PrintRowOpensPage(const PrintListingJob& job);
// After a row was printed on job->line: 1 when that row ended the page (the
// next row starts on PrintTopLine of page pageNumber + 1), else 0 with
// job->line moved to the next line.
int EndPrintRow(PrintListingJob* job);
// 1 when the page under way holds anything and needs its EndPage at the end.
int PrintPageHoldsRows(const PrintListingJob& job);
// Which record opens each page of a job whose first record stands on
// firstLine: starts[p] for page p + 1, at most maxPages of them. Returns the
// number of pages.
int PrintPageStarts(int32_t firstLine, int32_t linesPerPage, int32_t recordCount, int32_t* starts,
                    int maxPages);

// ---- AbortBox ------------------------------------------------------------------------
// The page field, "%d"; out is AbortBoxTextSize bytes. Returns out.
char* FormatPrintPageText(int32_t pageNumber, char* out);
// The status while rows go out, "%3d%% done" of index x 100 / count; out is
// AbortBoxTextSize bytes. Returns out.
char* FormatPrintProgressText(int32_t index, int32_t count, char* out);
// After the row index of count was printed and EndPrintRow has run (so a row
// that ended a page already shows the next page's number), at the clock
// second now: 1 with both fields' texts (AbortBoxTextSize bytes each) when the
// clock has moved on since the last update, else 0.
int UpdatePrintProgress(PrintListingJob* job, int32_t index, int32_t count, uint32_t now,
                        char* pageText, char* statusText);

#endif
