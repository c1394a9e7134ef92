// Times the repaints of the three data views on a full store with GDI (run
// under Wine by the test command), one line each: the Plot in mode All with
// dots of 3, its pixels written into a DIB section and shown with one
// BitBlt, against a brush made and deleted per square, and whether both give
// the same pixels (the program ends with 1 when they do not); the Listing,
// a maximised window painted whole and after a one-row scroll, which the
// update region limits to the new row; the Chart, counting and drawing.
#include <windows.h>
#include <stdio.h>

#include "full_store.h"
#include "survey/cal_lookup.h"
#include "views/chart_view.h"
#include "views/draw_list_win32.h"
#include "views/listing_view.h"
#include "views/plot_geometry.h"
#include "views/plot_view.h"

namespace {

constexpr int Width = 1024, Height = 700;
const char* const Build = sizeof(void*) == 4 ? "i686" : "x86_64";

struct Surface {
    HDC dc;
    uint32_t* pixels;
};

Surface MakeSurface(HDC screen, int width, int height) {
    BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    Surface s = {CreateCompatibleDC(screen), (uint32_t*)bits};
    SelectObject(s.dc, bitmap);
    return s;
}

// Both ways draw on a real window, as the Plot does; the brushes' pixels
// are read back from it to compare with the image.
int BenchPlot(HDC screen) {
    PlotLayout(Width, Height);
    PlotZoomAuto();
    plotChannel = PLOT_ALL;
    dotSize = 3;
    const PlotRect& a = plotView.plotArea;
    int w = a.right - a.left, h = a.bottom - a.top;
    HWND target = CreateWindowExA(WS_EX_TOPMOST, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, w, h,
                                  nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    HDC out = GetDC(target);
    Surface image = MakeSurface(screen, w, h);
    Surface brushes = MakeSurface(screen, w, h);
    double asPixels = BestMs([&] {
        PlotPaintPixels(PlotImage{image.pixels, w, h});
        BitBlt(out, 0, 0, w, h, image.dc, 0, 0, SRCCOPY);
        GdiFlush();
    });
    // The straightforward way: white, then one brush per square.
    double withBrushes = BestMs([&] {
        RECT all = {0, 0, w, h};
        FillRect(out, &all, (HBRUSH)GetStockObject(WHITE_BRUSH));
        PlotSquare squares[4];
        for (int i = 0; i < recordCount; i++) {
            const Record& row = recordStore.rows[i];
            PlotPixel p = PlotToPixel(row.latitude, row.longitude);
            if (!PlotPixelVisible(p.x, p.y)) continue;
            int n = PlotRowSquares(row, p.x, p.y, plotChannel, dotSize, squares);
            for (int k = 0; k < n; k++) {
                PlotSquare s = PlotClampSquare(squares[k]);
                RECT rect = {s.left - a.left, s.top - a.top, s.right - a.left, s.bottom - a.top};
                HBRUSH brush = CreateSolidBrush(s.colour);
                FillRect(out, &rect, brush);
                DeleteObject(brush);
            }
        }
        GdiFlush();
    });
    BitBlt(brushes.dc, 0, 0, w, h, out, 0, 0, SRCCOPY);
    ReleaseDC(target, out);
    DestroyWindow(target);
    int same = 1;
    for (int i = 0; i < w * h; i++) same &= (image.pixels[i] & 0xFFFFFF) == (brushes.pixels[i] & 0xFFFFFF);
    printf("plot repaint %d records All (%s): %.1f ms as pixels, %.1f ms with a brush per square, "
           "ratio %.0f, same pixels: %s\n",
           recordCount, Build, asPixels, withBrushes, withBrushes / asPixels, same ? "yes" : "NO");
    return same;
}

// A view's draw list made and drawn on dc; the number of drawing calls.
int Render(HDC dc, HFONT font, void (*paint)(DrawList*)) {
    static DrawList list;
    DrawListClear(&list);
    paint(&list);
    RenderDrawList(dc, list, font);
    GdiFlush();
    return list.count;
}

void BenchListing(HDC screen, HFONT font) {
    Surface s = MakeSurface(screen, Width, Height);
    SelectObject(s.dc, font);
    TEXTMETRICA metrics;
    GetTextMetricsA(s.dc, &metrics);
    listingCharHeight = metrics.tmHeight;
    ListingLayout(Width, Height);
    listingTopIndex = 5000;
    int cells = 0;
    double full = BestMs([&] { cells = Render(s.dc, font, ListingPaint); });
    double oneRow = BestMs([&] {
        ListingScrollResult r = ListingScroll(LISTING_SCROLL_LINE_DOWN, 0);
        RECT moved = ToRect(r.moved);
        ScrollDC(s.dc, 0, r.dy, &moved, &moved, nullptr, nullptr);
        int saved = SaveDC(s.dc);
        IntersectClipRect(s.dc, r.uncovered.left, r.uncovered.top, r.uncovered.right,
                          r.uncovered.bottom);
        Render(s.dc, font, ListingPaint);
        RestoreDC(s.dc, saved);
    });
    printf("listing paint (%s): %.2f ms full window (%d rows, %d drawing calls), "
           "%.2f ms one-row scroll\n",
           Build, full, listingRowCount, cells, oneRow);
}

void BenchChart(HDC screen, HFONT font) {
    Surface s = MakeSurface(screen, Width, Height);
    ChartLayout(Width, Height, 40, 16);
    double t = BestMs([&] { Render(s.dc, font, ChartPaint); });
    printf("chart repaint %d records (%s): %.2f ms\n", recordCount, Build, t);
}

}  // namespace

int main() {
    FillFullStore();
    HDC screen = GetDC(nullptr);
    HFONT font = CreateFontA(-12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "Arial");
    int same = BenchPlot(screen);
    BenchListing(screen, font);
    BenchChart(screen, font);
    return same ? 0 : 1;
}
