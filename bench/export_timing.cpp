// How long veldor-export takes from a full store to each format, one line
// per format, and to the coverage report, with the share of it spent on
// local means and tiles: the best of a few runs each.
#include <stdio.h>

#include "export_survey.h"
#include "full_store.h"

// Writes the export or the report to path; 0 when it fails.
static int WriteTo(const std::string& path, int format) {
    FILE* file = fopen(path.c_str(), "wb");
    if (file == nullptr) return 0;
    const int written = format == FORMAT_REPORT ? WriteReport(file, "bench.DAT", "bench")
                                                : WriteExport(file, format, 0, "bench.DAT");
    return fclose(file) == 0 && written;
}

int main() {
    FillFullStore();
    int failed = 0;
    for (int format = FORMAT_CSV; format <= FORMAT_GPX; format++) {
        const std::string path =
            TempTestPath(std::string("export_bench") + ExportExtension(format));
        const double ms = BestMs([&] { failed |= !WriteTo(path, format); });
        remove(path.c_str());
        printf("export %d records %s: %.1f ms\n", MaxRecords, ExportExtension(format) + 1, ms);
    }
    CoverageExport& e = coverageExport;  // channel 1, no other survey
    e.settings = CoverageSettings{20.0, 36, 100.0, COVERAGE_MEDIAN, 50.0, 0.90, 0};
    const std::string path = TempTestPath("report_bench.html");
    const double tiles = BestMs([] { ComputeCoverage(); });
    const double report = BestMs([&] {
        ComputeCoverage();
        failed |= !WriteTo(path, FORMAT_REPORT);
    });
    remove(path.c_str());
    printf("report %d records: %.1f ms (tiles %.1f ms)\n", MaxRecords, report, tiles);
    printf("  %d local means in %d tiles\n", (int)e.here.windowCount, (int)e.here.tileCount);
    return failed;
}
