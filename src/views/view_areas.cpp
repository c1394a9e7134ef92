#include "views/view_areas.h"

#include "base/platform.h"
#include "views/chart_view.h"
#include "views/listing_view.h"
#include "views/plot_geometry.h"

int ViewAreaRect(int window, int area, ViewRect* out) {
    switch (window) {
    case WINDOW_LISTING: return ListingAreaRect(area, out);
    case WINDOW_CHART: return ChartAreaRect(area, out);
    case WINDOW_PLOT:
        if (area == AREA_PLOT_RECT) *out = plotView.plotArea;
        else if (area == AREA_PLOT_READOUT) *out = plotView.readoutRect;
        else return 0;
        return 1;
    default: return 0;
    }
}

const char* ChildWindowTitle(int window) {
    switch (window) {
    case WINDOW_LISTING: return "Listing";
    case WINDOW_PLOT: return "Plot";
    case WINDOW_CHART: return "Chart";
    case WINDOW_TAGS: return "Text Tags";
    default: return nullptr;
    }
}
