// A default printer of Wine's PostScript driver whose port pipes each job
// into a file, and the metrics a job on it meets.
//   file_printer add NAME PPD OUTFILE   (PPD a Windows path, OUTFILE a Unix path)
//   file_printer remove NAME
//   file_printer metrics                (of the default printer)
#include <windows.h>
#include <stdio.h>
#include <string.h>
#include <winspool.h>

static int Failed(const char* what) {
    printf("%s failed: %lu\n", what, GetLastError());
    return 1;
}

static int Add(char* name, char* ppd, const char* out) {
    // The driver finds its PPD in the printer-driver folder.
    char folder[MAX_PATH], copy[MAX_PATH + 32];
    DWORD needed = 0;
    if (!GetPrinterDriverDirectoryA(nullptr, nullptr, 1, (BYTE*)folder, sizeof folder, &needed))
        return Failed("GetPrinterDriverDirectoryA");
    snprintf(copy, sizeof copy, "%s\\veldor_test.ppd", folder);
    if (!CopyFileA(ppd, copy, FALSE)) return Failed("copying the PPD");
    char driver[] = "Wine PostScript Driver";
    char dll[] = "wineps.drv";
    DRIVER_INFO_3A di = {};
    di.cVersion = 3;
    di.pName = driver;
    di.pDriverPath = dll;
    di.pConfigFile = dll;
    di.pDataFile = copy;
    if (!AddPrinterDriverExA(nullptr, 3, (BYTE*)&di, APD_COPY_NEW_FILES))
        return Failed("AddPrinterDriverExA");
    char port[MAX_PATH + 16];
    snprintf(port, sizeof port, "|cat > %s", out);
    char processor[] = "winprint", datatype[] = "RAW";
    PRINTER_INFO_2A pi = {};
    pi.pPrinterName = name;
    pi.pPortName = port;
    pi.pDriverName = driver;
    pi.pPrintProcessor = processor;
    pi.pDatatype = datatype;
    pi.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    HANDLE printer = AddPrinterA(nullptr, 2, (BYTE*)&pi);
    if (printer == nullptr) return Failed("AddPrinterA");
    ClosePrinter(printer);
    if (!SetDefaultPrinterA(name)) return Failed("SetDefaultPrinterA");
    printf("printer %s on %s\n", name, port);
    return 0;
}

static int Remove(char* name) {
    HANDLE printer = nullptr;
    PRINTER_DEFAULTSA access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    if (!OpenPrinterA(name, &printer, &access) || !DeletePrinter(printer))
        return Failed("removing the printer");
    ClosePrinter(printer);
    return 0;
}

static int Metrics() {
    char name[256];
    DWORD size = sizeof name;
    if (!GetDefaultPrinterA(name, &size)) return Failed("GetDefaultPrinterA");
    HDC dc = CreateDCA("WINSPOOL", name, nullptr, nullptr);
    if (dc == nullptr) return Failed("CreateDCA");
    TEXTMETRICA tm;
    GetTextMetricsA(dc, &tm);
    printf("lineheight=%ld\nhorzres=%d\nvertres=%d\nhorzsize=%d\nvertsize=%d\n"
           "offsetx=%d\noffsety=%d\nlogpixelsx=%d\nlogpixelsy=%d\n",
           tm.tmHeight + tm.tmExternalLeading, GetDeviceCaps(dc, HORZRES),
           GetDeviceCaps(dc, VERTRES), GetDeviceCaps(dc, HORZSIZE), GetDeviceCaps(dc, VERTSIZE),
           GetDeviceCaps(dc, PHYSICALOFFSETX), GetDeviceCaps(dc, PHYSICALOFFSETY),
           GetDeviceCaps(dc, LOGPIXELSX), GetDeviceCaps(dc, LOGPIXELSY));
    DeleteDC(dc);
    return 0;
}

int main(int argc, char** argv) {
    if (argc == 5 && strcmp(argv[1], "add") == 0) return Add(argv[2], argv[3], argv[4]);
    if (argc == 3 && strcmp(argv[1], "remove") == 0) return Remove(argv[2]);
    if (argc == 2 && strcmp(argv[1], "metrics") == 0) return Metrics();
    printf("usage: file_printer add NAME PPD OUTFILE | remove NAME | metrics\n");
    return 2;
}
