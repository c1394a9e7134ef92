#include "printing/print_jobs_win32.h"

#include <commdlg.h>
#include <string.h>

#include "base/busy.h"
#include "base/platform.h"
#include "dialogs/dialog_fields_win32.h"
#include "printing/print_boxes.h"
#include "resources/print_ids.h"
#include "printing/print_listing.h"
#include "printing/print_plot.h"
#include "base/front_win32.h"

namespace {

// The printer of the job under way: its names and its surface. Zeroed at the
// start of each job, so that every job starts from the default printer.
PRINTDLGA printSetup;
// Set by AbortBox's Cancel or by a spooler error; read for every row.
volatile int printAborted;
HWND abortBox;

const DialogField PrintListFields[] = {
    DIALOG_FIELD(IDC_PRINT_LIST_DEG, FIELD_RADIO, PrintListBoxValues, format.latLong, 4),
    DIALOG_FIELD(IDC_PRINT_LIST_NORTH_SOUTH, FIELD_RADIO, PrintListBoxValues, format.sign, 2),
    DIALOG_FIELD(IDC_PRINT_LIST_READING_0, FIELD_RADIO, PrintListBoxValues, format.reading, 4),
    DIALOG_FIELD(IDC_PRINT_LIST_DATE, FIELD_CHECK, PrintListBoxValues, date, 0),
    DIALOG_FIELD(IDC_PRINT_LIST_FILES, FIELD_CHECK, PrintListBoxValues, files, 0),
    DIALOG_FIELD(IDC_PRINT_LIST_STATS, FIELD_CHECK, PrintListBoxValues, stats, 0),
};

const DialogField PrintPlotFields[] = {
    DIALOG_FIELD(IDC_PRINT_PLOT_FIT_ENTIRE, FIELD_RADIO, PrintPlotBoxValues, area, 3),
    DIALOG_FIELD(IDC_PRINT_PLOT_CONFIRM, FIELD_CHECK, PrintPlotBoxValues, confirm, 0),
    DIALOG_FIELD(IDC_PRINT_PLOT_ASPECT, FIELD_CHECK, PrintPlotBoxValues, aspect, 0),
    DIALOG_TEXT(IDC_PRINT_PLOT_DOT_SIZE, PrintPlotBoxValues, dotSize),
    DIALOG_TEXT(IDC_PRINT_PLOT_MAP, PrintPlotBoxValues, fields.map[0]),
    DIALOG_TEXT(IDC_PRINT_PLOT_MAP + 1, PrintPlotBoxValues, fields.map[1]),
    DIALOG_TEXT(IDC_PRINT_PLOT_MAP + 2, PrintPlotBoxValues, fields.map[2]),
    DIALOG_TEXT(IDC_PRINT_PLOT_MAP + 3, PrintPlotBoxValues, fields.map[3]),
    DIALOG_TEXT(IDC_PRINT_PLOT_PAGE, PrintPlotBoxValues, fields.page[0]),
    DIALOG_TEXT(IDC_PRINT_PLOT_PAGE + 1, PrintPlotBoxValues, fields.page[1]),
    DIALOG_TEXT(IDC_PRINT_PLOT_PAGE + 2, PrintPlotBoxValues, fields.page[2]),
    DIALOG_TEXT(IDC_PRINT_PLOT_PAGE + 3, PrintPlotBoxValues, fields.page[3]),
};

// ---- The printer ---------------------------------------------------------------------

void ReleasePrinter() {
    if (printSetup.hDC != nullptr) DeleteDC(printSetup.hDC);
    if (printSetup.hDevMode != nullptr) GlobalFree(printSetup.hDevMode);
    if (printSetup.hDevNames != nullptr) GlobalFree(printSetup.hDevNames);
    memset(&printSetup, 0, sizeof printSetup);
}

// The default printer and its surface, without a dialog.
int TakeDefaultPrinter(HWND frame) {
    ReleasePrinter();
    printSetup.lStructSize = sizeof printSetup;
    printSetup.hwndOwner = frame;
    printSetup.Flags = PD_RETURNDEFAULT | PD_RETURNDC;
    if (PrintDlgA(&printSetup) && printSetup.hDC != nullptr) return 1;
    ReleasePrinter();
    PlatformMessageBox("Sorry, could not retrieve default printer information", ICON_EXCLAMATION);
    return 0;
}

// "%s on %s" of the printer's names into out; 0 when they can't be had.
int PrinterText(char* out, int size) {
    const DEVNAMES* names = (const DEVNAMES*)GlobalLock(printSetup.hDevNames);
    if (names == nullptr) return 0;
    const char* base = (const char*)names;
    FormatPrinterText(base + names->wDeviceOffset, base + names->wOutputOffset, out, size);
    GlobalUnlock(printSetup.hDevNames);
    return 1;
}

// The dialog's printer field, and the plot dialog's printable area.
void ShowPrinter(HWND box) {
    char text[256] = "";
    PrinterText(text, sizeof text);
    SetDlgItemTextA(box, IDC_PRINT_PRINTER, text);
    if (GetDlgItem(box, IDC_PRINT_PLOT_PRINTABLE) == nullptr) return;
    SetPrintableArea(GetDeviceCaps(printSetup.hDC, HORZSIZE), GetDeviceCaps(printSetup.hDC, VERTSIZE),
                     text, sizeof text);
    SetDlgItemTextA(box, IDC_PRINT_PLOT_PRINTABLE, text);
}

// "Select": the printer setup dialog, owned by the print dialog; the job then
// prints on the surface chosen there.
void OnSelectPrinter(HWND box) {
    HDC before = printSetup.hDC;
    printSetup.hwndOwner = box;
    printSetup.Flags = PD_RETURNDC | PD_PRINTSETUP;
    if (PrintDlgA(&printSetup)) {
        if (before != nullptr && printSetup.hDC != before) DeleteDC(before);
        ShowPrinter(box);
    }
    printSetup.hwndOwner = FrameWindow();
}

// A print dialog opens with the focus on OK, so that the printer's name shows
// from its start rather than selected. The result is WM_INITDIALOG's.
INT_PTR StartOnOk(HWND box) {
    SetFocus(GetDlgItem(box, IDOK));
    return FALSE;
}

// Cancel and the close box end a print dialog with 0; Help opens the manual.
INT_PTR OnOtherButton(HWND box, int id) {
    if (id == IDC_PRINT_SELECT)
        OnSelectPrinter(box);
    else
        DialogCancelOrHelp(box, id, IDC_PRINT_HELP);
    return TRUE;
}

// ---- PrintListBox and PrintPlotBox --------------------------------------------------

INT_PTR CALLBACK PrintListDialog(HWND box, UINT message, WPARAM wParam, LPARAM) {
    PrintListBoxValues values = {};
    if (message == WM_INITDIALOG) {
        CentreDialog(box);
        ShowPrinter(box);
        PrintListBoxOpen(&values);
        DialogFill(box, PrintListFields, &values);
        return StartOnOk(box);
    }
    if (message != WM_COMMAND) return FALSE;
    if (LOWORD(wParam) != IDOK) return OnOtherButton(box, LOWORD(wParam));
    DialogRead(box, PrintListFields, &values);
    PrintListBoxStore(&values);
    EndDialog(box, 1);
    return TRUE;
}

void EnableAreaFields(HWND box, int32_t area) {
    for (int i = 0; i < 8; i++)
        EnableWindow(GetDlgItem(box, IDC_PRINT_PLOT_MAP + i), PrintAreaFieldsEnabled(area));
}

void OnPrintPlotInit(HWND box) {
    CentreDialog(box);
    char text[256];
    if (!PrinterText(text, sizeof text)) {
        PlatformMessageBox("An error occured retrieving printer details", ICON_STOP);
        EndDialog(box, 0);
        return;
    }
    ShowPrinter(box);
    PrintPlotBoxValues values = {};
    PrintPlotBoxOpen(&values);
    DialogFill(box, PrintPlotFields, &values);
    EnableAreaFields(box, values.area);
    PrepareSpins(box, IDC_PRINT_PLOT_DOT_SPIN, IDC_PRINT_PLOT_DOT_SIZE, 1);
    StartOnOk(box);
}

// The spin's arrows step the dot size.
INT_PTR OnPrintPlotNotify(HWND box, LPARAM lParam) {
    int spinId = 0, delta = SpinPress(lParam, &spinId);
    if (delta == 0) return FALSE;
    PrintPlotBoxValues values = {};
    DialogRead(box, PrintPlotFields, &values);
    PrintDotSizeSpin(&values, delta);
    SetDlgItemTextA(box, IDC_PRINT_PLOT_DOT_SIZE, values.dotSize);
    return RefuseSpinMove(box);
}

INT_PTR CALLBACK PrintPlotDialog(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
    PrintPlotBoxValues values = {};
    switch (message) {
        case WM_INITDIALOG:
            OnPrintPlotInit(box);
            return FALSE;
        case WM_NOTIFY:
            return OnPrintPlotNotify(box, lParam);
        case WM_COMMAND: {
            int id = LOWORD(wParam);
            if (id >= IDC_PRINT_PLOT_FIT_ENTIRE && id <= IDC_PRINT_PLOT_FIT_ENTIRE + 2) {
                EnableAreaFields(box, id - IDC_PRINT_PLOT_FIT_ENTIRE);
                return TRUE;
            }
            if (id != IDOK) return OnOtherButton(box, id);
            DialogRead(box, PrintPlotFields, &values);
            if (PrintPlotBoxStore(&values)) EndDialog(box, 1);
            return TRUE;
        }
        default:
            return FALSE;
    }
}

// ---- AbortBox and the abort procedure ------------------------------------------------

INT_PTR CALLBACK AbortBoxProc(HWND box, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG) {
        CentreDialog(box);
        return TRUE;
    }
    if (message == WM_COMMAND) {
        printAborted = 1;
        return TRUE;
    }
    return FALSE;
}

// Called while a page goes to the spooler: keeps the program's windows (and
// AbortBox's Cancel) alive. 0 stops the job.
BOOL CALLBACK PrintAbortProc(HDC, int code) {
    if (code != 0) {
        printAborted = 1;
        return FALSE;
    }
    if (printAborted) return FALSE;
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (abortBox == nullptr || !IsDialogMessageA(abortBox, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        if (printAborted) return FALSE;
    }
    return TRUE;
}

constexpr int PrintPageAlwaysEnds = 2;

void SetAbortStatus(const char* text) {
    SetDlgItemTextA(abortBox, IDC_ABORT_STATUS, text);
}

// From the abort procedure to StartDocA; 0 (told, and everything given back)
// when the document could not be started.
int StartJob(HWND frame, HDC dc, const char* docName) {
    printAborted = 0;
    SetAbortProc(dc, PrintAbortProc);
    EnableWindow(frame, FALSE);
    abortBox = CreateDialogParamA(shell.instance, "AbortBox", frame, AbortBoxProc, 0);
    SetDlgItemTextA(abortBox, IDC_ABORT_PAGE, "1");
    SetAbortStatus(PRINT_STATUS_INITIALISING);
    DOCINFOA doc = {};
    doc.cbSize = sizeof doc;
    doc.lpszDocName = docName;
    if (StartDocA(dc, &doc) <= 0) {
        DestroyWindow(abortBox);
        abortBox = nullptr;
        PlatformMessageBox("Error initalising print", ICON_STOP);
        EnableWindow(frame, TRUE);
        SetFocus(frame);
        EndBusy();
        return 0;
    }
    SetAbortStatus(PRINT_STATUS_STARTING);
    return 1;
}

// After the rows: AbortDoc or EndDoc, AbortBox closed, the frame back. The
// listing ends its page only when it holds rows; the plot's one page always
// ends, even before AbortDoc.
int EndJob(HWND frame, HDC dc, int endPage) {
    int completed = !printAborted;
    if (!completed) {
        SetAbortStatus(PRINT_STATUS_ABORTING);
        if (endPage == PrintPageAlwaysEnds) EndPage(dc);
        AbortDoc(dc);
    } else {
        SetAbortStatus(PRINT_STATUS_COMPLETING);
        if (endPage && EndPage(dc) <= 0 && endPage == PrintPageAlwaysEnds)
            SetAbortStatus(PRINT_STATUS_DRAW_ERROR);
        EndDoc(dc);
    }
    DestroyWindow(abortBox);
    abortBox = nullptr;
    EnableWindow(frame, TRUE);
    SetFocus(frame);
    EndBusy();
    ReleasePrinter();
    return completed;
}

// Once a second: the page and progress texts, and the program's messages
// seen to, whatever the driver does about calling the abort procedure.
void ShowProgress(HDC dc, PrintListingJob* job, int32_t index) {
    char page[AbortBoxTextSize], status[AbortBoxTextSize];
    if (!UpdatePrintProgress(job, index, recordCount, PlatformTime(), page, status)) return;
    SetDlgItemTextA(abortBox, IDC_ABORT_PAGE, page);
    SetAbortStatus(status);
    PrintAbortProc(dc, 0);
}

void DrawHeaderText(HDC dc, const PrintListingJob& job, const PrintText& text) {
    SetTextAlign(dc, (text.centred ? TA_CENTER : TA_LEFT) | TA_BOTTOM);
    TextOutA(dc, text.x, text.line * job.lineHeight, text.text, (int)strlen(text.text));
}

}  // namespace

// ---- The listing ---------------------------------------------------------------------

int PrintListing(HWND frame) {
    if (!RecordsReadyForOutput() || !TakeDefaultPrinter(frame)) return 0;
    if (RunDialogBox(frame, "PrintListBox", PrintListDialog) != 1) return 0;
    HDC dc = printSetup.hDC;
    TEXTMETRICA font;
    if (!GetTextMetricsA(dc, &font)) memset(&font, 0, sizeof font);
    PrintLineMetrics metrics =
        MeasurePrintLines(font.tmHeight, font.tmExternalLeading, GetDeviceCaps(dc, VERTRES));
    if (metrics.refusal != PRINT_METRICS_OK) {
        PlatformMessageBox(metrics.message, ICON_STOP);
        return 0;
    }
    BeginBusy();
    PrintListingJob job = StartPrintListingJob(metrics, GetDeviceCaps(dc, HORZRES));
    if (!StartJob(frame, dc, PRINT_LISTING_DOC_NAME)) return 0;
    StartPage(dc);
    PrintText header[PrintHeaderMaxTexts];
    int texts = BuildPrintHeader(&job, PlatformTime(), header, PrintHeaderMaxTexts);
    for (int t = 0; t < texts; t++) DrawHeaderText(dc, job, header[t]);
    SetTextAlign(dc, TA_LEFT | TA_BOTTOM);
    for (int32_t i = 0; i < recordCount && !printAborted; i++) {
        char line[PrintLineSize];
        if (!FormatPrintLine(i, line)) continue;
        if (PrintRowOpensPage(job)) StartPage(dc);
        TabbedTextOutA(dc, PrintLeftMargin, job.line * job.lineHeight, line, (int)strlen(line), 0,
                       nullptr, 0);
        if (EndPrintRow(&job)) {
            EndPage(dc);
            PrintAbortProc(dc, 0);
        }
        ShowProgress(dc, &job, i);
    }
    return EndJob(frame, dc, PrintPageHoldsRows(job));
}

// ---- The plot ------------------------------------------------------------------------

int PrintPlot(HWND frame) {
    if (!RecordsReadyForOutput() || !TakeDefaultPrinter(frame)) return 0;
    if (RunDialogBox(frame, "PrintPlotBox", PrintPlotDialog) != 1) return 0;
    HDC dc = printSetup.hDC;
    BeginBusy();
    SetMapMode(dc, MM_LOMETRIC);
    PrintScale scale = PlacePrintArea(GetDeviceCaps(dc, PHYSICALOFFSETX), GetDeviceCaps(dc, PHYSICALOFFSETY),
                                      GetDeviceCaps(dc, HORZSIZE), GetDeviceCaps(dc, VERTSIZE));
    if (!StartJob(frame, dc, "VELDOR - Plot")) return 0;
    StartPage(dc);
    PrintListingJob progress = {};
    progress.pageNumber = 1;
    for (int32_t i = 0; i < recordCount && !printAborted; i++) {
        PlotSquare squares[4];
        int n = PrintRowSquares(recordStore.rows[i], scale, squares);
        for (int s = 0; s < n; s++) {
            HBRUSH brush = CreateSolidBrush(squares[s].colour);
            RECT r = {squares[s].left, squares[s].top, squares[s].right, squares[s].bottom};
            FillRect(dc, &r, brush);
            DeleteObject(brush);
        }
        if (n > 0) ShowProgress(dc, &progress, i);
    }
    return EndJob(frame, dc, PrintPageAlwaysEnds);
}
