#include "printing/print_listing.h"

#include <stdio.h>
#include <string.h>

#include "storage/settings_file.h"
#include "survey/survey_state.h"
#include "views/display_format.h"

namespace {

const char* const FieldSeparator = " \t";

// Adds one left-aligned text on line to texts, if there is room.
PrintText* AddText(PrintText* texts, int maxTexts, int* count, int32_t line) {
    if (*count >= maxTexts) return nullptr;
    PrintText* t = &texts[(*count)++];
    t->x = PrintLeftMargin;
    t->line = line;
    t->centred = 0;
    t->text[0] = '\0';
    return t;
}

// "label" then the date text of time without its newline.
void DateLine(PrintText* t, const char* label, uint32_t time) {
    if (t == nullptr) return;
    char date[DateTextSize];
    FormatDateText(time, date);
    date[strcspn(date, "\n")] = '\0';
    snprintf(t->text, PrintLineSize, "%s%s", label, date);
}

}  // namespace

int FormatPrintLine(int32_t index, char* out) {
    if (index < 0 || index >= recordCount) {
        snprintf(out, PrintLineSize, "No data");
        return 0;
    }
    DisplayFormat format = ReadPrintListingFormat();
    const Record& row = recordStore.rows[index];
    out[0] = '\0';
    AppendRecordFields(out, PrintLineSize, row, format, FieldSeparator);
    return 1;
}

PrintLineMetrics MeasurePrintLines(int32_t fontHeight, int32_t externalLeading,
                                   int32_t pageHeight) {
    PrintLineMetrics m = {PRINT_METRICS_OK, nullptr, 0, 0};
    // Summed in 64 bits: a driver's nonsense must not wrap into a valid height.
    long long height = (long long)fontHeight + externalLeading;
    if (height < 1) {
        m.refusal = PRINT_FONT_INVALID;
        m.message = "Printer default font is invalid";
        return m;
    }
    m.lineHeight = height > INT32_MAX ? INT32_MAX : (int32_t)height;
    m.linesPerPage = pageHeight / m.lineHeight - 1;
    if (m.linesPerPage < 1) {
        m.refusal = PRINT_PAGE_TOO_SHORT;
        m.message = "Printer reports that it has\nless than one line per page";
    }
    return m;
}

PrintListingJob StartPrintListingJob(const PrintLineMetrics& metrics, int32_t pageWidth) {
    PrintListingJob job;
    job.lineHeight = metrics.lineHeight;
    job.linesPerPage = metrics.linesPerPage;
    job.pageWidth = pageWidth;
    job.line = PrintTopLine;
    job.pageNumber = 1;
    job.lastUpdate = 0;
    return job;
}

int BuildPrintHeader(PrintListingJob* job, uint32_t now, PrintText* texts, int maxTexts) {
    int count = 0;
    PrintText* title = AddText(texts, maxTexts, &count, PrintTopLine);
    if (title != nullptr) {
        title->x = job->pageWidth / 2;
        title->centred = 1;
        snprintf(title->text, PrintLineSize, "VELDOR Listing");
    }
    job->line = 5;
    if (ReadSetting(KeyPrintListingDate) != 0) {
        DateLine(AddText(texts, maxTexts, &count, 5),
                 "Recording started: ", recordingParams.startTime);
        DateLine(AddText(texts, maxTexts, &count, 6), "Printed: ", now);
        job->lastUpdate = now;
        job->line = 8;
    }
    if (ReadSetting(KeyPrintListingFiles) != 0) {
        PrintText* t = AddText(texts, maxTexts, &count, job->line);
        if (t != nullptr) {
            if (dataFileName[0] == '\0') {
                snprintf(t->text, PrintLineSize, "No data filename");
            } else {
                snprintf(t->text, PrintLineSize, "Data filename: %s", DisplayFileName(dataFileName));
            }
        }
        static const char* const CalLines[4] = {"Ch1 cal. filename: %s", "Ch2 cal. filename: %s",
                                                "Ch3 cal. filename: %s", "Ch4 cal. filename: %s"};
        for (int c = 0; c < 4; c++) {
            t = AddText(texts, maxTexts, &count, job->line + 1 + c);
            if (t == nullptr) continue;
            snprintf(t->text, PrintLineSize, CalLines[c], DisplayFileName(recordingParams.calFileName[c]));
        }
        job->line += 6;
    }
    if (ReadSetting(KeyPrintListingStats) != 0) {
        PrintText* t = AddText(texts, maxTexts, &count, job->line);
        if (t != nullptr) snprintf(t->text, PrintLineSize, "Records taken: %ld", (long)recordCount);
        job->line += 2;
    }
    return count;
}

int PrintRowOpensPage(const PrintListingJob& job) {
    return job.line == PrintTopLine;
}

int EndPrintRow(PrintListingJob* job) {
    if (job->line >= job->linesPerPage) {
        job->pageNumber++;
        job->line = PrintTopLine;
        return 1;
    }
    job->line++;
    return 0;
}

int PrintPageHoldsRows(const PrintListingJob& job) {
    return job.line > PrintTopLine;
}

int PrintPageStarts(int32_t firstLine, int32_t linesPerPage, int32_t recordCount, int32_t* starts,
                    int maxPages) {
    PrintListingJob job = {1, linesPerPage, 0, firstLine, 1, 0};
    int pages = 0;
    for (int32_t i = 0; i < recordCount; i++) {
        if (i == 0 || PrintRowOpensPage(job)) {
            if (pages < maxPages) starts[pages] = i;
            pages++;
        }
        EndPrintRow(&job);
    }
    return pages;
}

char* FormatPrintPageText(int32_t pageNumber, char* out) {
    snprintf(out, AbortBoxTextSize, "%d", (int)pageNumber);
    return out;
}

char* FormatPrintProgressText(int32_t index, int32_t count, char* out) {
    long long percent = count > 0 ? (long long)index * 100 / count : 0;
    snprintf(out, AbortBoxTextSize, "%3d%% done", (int)percent);
    return out;
}

int UpdatePrintProgress(PrintListingJob* job, int32_t index, int32_t count, uint32_t now,
                        char* pageText, char* statusText) {
    if (now == job->lastUpdate) return 0;
    FormatPrintPageText(job->pageNumber, pageText);
    FormatPrintProgressText(index, count, statusText);
    job->lastUpdate = now;
    return 1;
}
