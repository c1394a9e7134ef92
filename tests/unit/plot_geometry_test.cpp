#include "views/plot_geometry.h"

#include <gtest/gtest.h>
#include <stdint.h>
#include <string.h>

#include <string>

#include "fake_platform.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

namespace {

class PlotGeometry : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        ResetPlotView();
        PlotLayout(800, 600);  // W 798, H 565, centre pixel (400, 316)
    }
    static void AddAt(int32_t latitude, int32_t longitude) {
        recordStore.rows[recordCount].latitude = latitude;
        recordStore.rows[recordCount].longitude = longitude;
        recordCount++;
    }
    static std::string Title() {
        char text[PlotTitleSize];
        PlotTitle(text, sizeof text);
        return text;
    }
    static void ExpectCentre(int32_t latitude, int32_t longitude) {
        EXPECT_EQ(latitude, plotView.centreLatitude);
        EXPECT_EQ(longitude, plotView.centreLongitude);
    }
};

TEST_F(PlotGeometry, LayoutAndWorldScale) {
    EXPECT_EQ(33, plotView.headerRect.bottom);
    EXPECT_EQ(780, plotView.readoutRect.right);

    PlotEnsureScale();
    EXPECT_EQ(1624060, plotView.scale);  // the width decides
    plotView.scale = 7;
    PlotEnsureScale();
    EXPECT_EQ(7, plotView.scale);
    PlotLayout(1000, 300);
    EXPECT_EQ(2445283, PlotWorldScale());  // the height decides

    PlotLayout(323, 100);  // too narrow: the read-out is empty
    EXPECT_EQ(304, plotView.readoutRect.right);
    PlotLayout(0, 0);
    EXPECT_EQ(-2, PlotAreaWidth());
    EXPECT_EQ(-35, PlotAreaHeight());
    EXPECT_EQ(1296000000, PlotWorldScale());
}

TEST_F(PlotGeometry, ExtremePositionsNeverWrapIntoView) {
    plotView.scale = 1;
    plotView.centreLongitude = -648000000;
    EXPECT_EQ(400 + 1296000000, PlotToPixel(0, 648000000).x);
    // Stored values beyond the legal span stay outside the area.
    PlotPixel p = PlotToPixel(INT32_MIN, INT32_MAX);
    EXPECT_EQ(INT32_MAX, p.x);
    EXPECT_EQ(INT32_MAX, p.y);
    plotView.centreLongitude = 648000000;
    plotView.centreLatitude = -324000000;
    p = PlotToPixel(INT32_MAX, INT32_MIN);
    EXPECT_EQ(INT32_MIN, p.x);
    EXPECT_EQ(INT32_MIN, p.y);

    plotView.scale = INT32_MAX;
    PlotPosition pos = PlotFromPixel(1, 598);
    EXPECT_EQ(INT32_MIN, pos.latitude);
    EXPECT_EQ(INT32_MIN, pos.longitude);
    EXPECT_EQ(INT32_MAX, PlotFromPixel(798, 34).latitude);
}

TEST_F(PlotGeometry, ZoomInAndOut) {
    plotView.scale = 5;
    EXPECT_TRUE(PlotZoomIn());
    EXPECT_EQ(2, plotView.scale);
    plotView.scale = 3;
    EXPECT_TRUE(PlotZoomIn());
    EXPECT_EQ(1, plotView.scale);
    EXPECT_FALSE(PlotZoomIn());
    EXPECT_EQ(2, CountStatus("Plot zoom in"));
    plotView.scale = 0;  // before the first repaint: from the world scale
    EXPECT_TRUE(PlotZoomIn());
    EXPECT_EQ(1624060 / 2, plotView.scale);

    const int32_t limit = 1624060;
    plotView.centreLatitude = 1000;
    plotView.centreLongitude = 2000;
    plotView.verticalScrollPos = 7;
    plotView.scale = limit / 2 - 1;
    EXPECT_TRUE(PlotZoomOut());
    EXPECT_EQ(limit - 2, plotView.scale);
    ExpectCentre(1000, 2000);
    EXPECT_EQ(7, plotView.verticalScrollPos);
    for (int32_t start : {limit - 1, limit / 2, limit + 5}) {
        plotView.centreLatitude = 100000000;
        plotView.centreLongitude = -200000000;
        plotView.scale = start;
        EXPECT_TRUE(PlotZoomOut());
        EXPECT_EQ(limit, plotView.scale);
        ExpectCentre(0, 0);
        EXPECT_EQ(50, plotView.verticalScrollPos);
        EXPECT_EQ(50, plotView.horizontalScrollPos);
    }
    EXPECT_FALSE(PlotZoomOut());
    EXPECT_EQ(4, CountStatus("Plot zoom out"));

    PlotLayout(1, 1);  // an empty area neither divides by zero nor fails
    plotView.scale = 700000000;
    EXPECT_TRUE(PlotZoomOut());
    EXPECT_EQ(1296000000, plotView.scale);
}

TEST_F(PlotGeometry, AutoZoomRefusals) {
    plotView.scale = 77;
    PlotLayout(0, 0);
    EXPECT_EQ(ZoomNothingToDo, PlotZoomAuto());
    AddAt(1000, 2000);
    EXPECT_EQ(ZoomNothingToDo, PlotZoomAuto());
    AddAt(3000, 2000);
    EXPECT_EQ(ZoomAreaInvalid, PlotZoomAuto());
    EXPECT_EQ(77, plotView.scale);
    ExpectCentre(0, 0);
    EXPECT_TRUE(fake.statusLines.empty());
}

TEST_F(PlotGeometry, AutoZoomOnExtremeRecords) {
    AddAt(-324000000, -648000000);
    AddAt(324000000, 648000000);
    EXPECT_EQ(ZoomChanged, PlotZoomAuto());
    ExpectCentre(0, 0);
    EXPECT_EQ(1624060 + 1624060 / 3, plotView.scale);

    // Beyond the legal span the spans need 33 bits; the scale is held.
    recordStore.rows[0].latitude = INT32_MIN;
    recordStore.rows[1].latitude = INT32_MAX;
    PlotLayout(800, 36);  // H = 1
    EXPECT_EQ(ZoomChanged, PlotZoomAuto());
    EXPECT_EQ(INT32_MAX, plotView.scale);
    EXPECT_EQ(-1, plotView.centreLatitude);
    EXPECT_EQ(PlotCentrePixel().y - 1, PlotToPixel(INT32_MAX, 0).y);
}

TEST_F(PlotGeometry, ScrollPositionsAndThumb) {
    plotView.centreLatitude = -1;
    plotView.centreLongitude = -1;
    EXPECT_EQ(51, PlotScrollPositions().vertical);
    EXPECT_EQ(49, PlotScrollPositions().horizontal);
    plotView.centreLatitude = 400000000;
    plotView.centreLongitude = -700000000;
    EXPECT_EQ(0, PlotScrollPositions().vertical);
    EXPECT_EQ(0, PlotScrollPositions().horizontal);

    plotView.scale = 1000;
    EXPECT_TRUE(PlotScrollVertical(PLOT_SCROLL_THUMB_TRACK, 50));
    EXPECT_EQ(0, plotView.centreLatitude);
    EXPECT_EQ(50, plotView.verticalScrollPos);
    EXPECT_TRUE(PlotScrollVertical(PLOT_SCROLL_THUMB_POSITION, 0));
    EXPECT_EQ(324000000, plotView.centreLatitude);
    EXPECT_EQ(0, plotView.verticalScrollPos);
    EXPECT_TRUE(PlotScrollVertical(PLOT_SCROLL_THUMB_POSITION, 65535));  // clamped, not wrapped
    EXPECT_EQ(-324000000, plotView.centreLatitude);
    EXPECT_EQ(100, plotView.verticalScrollPos);
    EXPECT_EQ(50, plotView.horizontalScrollPos);  // the other bar is not touched
    EXPECT_TRUE(PlotScrollHorizontal(PLOT_SCROLL_THUMB_TRACK, 50));
    EXPECT_EQ(0, plotView.centreLongitude);
    EXPECT_TRUE(PlotScrollHorizontal(PLOT_SCROLL_THUMB_TRACK, 0));
    EXPECT_EQ(-648000000, plotView.centreLongitude);
    EXPECT_TRUE(PlotScrollHorizontal(PLOT_SCROLL_THUMB_POSITION, 100));
    EXPECT_EQ(648000000, plotView.centreLongitude);
    EXPECT_EQ(100, plotView.horizontalScrollPos);
}

TEST_F(PlotGeometry, LineAndPageSteps) {
    plotView.scale = 1000;
    EXPECT_TRUE(PlotScrollVertical(PLOT_SCROLL_LINE_BACK, 0));
    EXPECT_EQ(28250, plotView.centreLatitude);
    EXPECT_TRUE(PlotScrollVertical(PLOT_SCROLL_PAGE_ON, 0));
    EXPECT_EQ(28250 - 282500, plotView.centreLatitude);
    EXPECT_TRUE(PlotScrollHorizontal(PLOT_SCROLL_LINE_ON, 0));
    EXPECT_EQ(39900, plotView.centreLongitude);
    EXPECT_TRUE(PlotScrollHorizontal(PLOT_SCROLL_PAGE_BACK, 0));
    EXPECT_EQ(39900 - 399000, plotView.centreLongitude);
    EXPECT_TRUE(PlotScrollVertical(PLOT_SCROLL_START, 0));
    EXPECT_TRUE(PlotScrollHorizontal(PLOT_SCROLL_END, 0));
    ExpectCentre(324000000, 648000000);

    // At a stop nothing changes and the bar is left alone.
    plotView.verticalScrollPos = 33;
    plotView.horizontalScrollPos = 44;
    EXPECT_FALSE(PlotScrollVertical(PLOT_SCROLL_LINE_BACK, 0));
    EXPECT_FALSE(PlotScrollHorizontal(PLOT_SCROLL_PAGE_ON, 0));
    EXPECT_FALSE(PlotScrollVertical(8, 0));
    EXPECT_EQ(33, plotView.verticalScrollPos);
    EXPECT_EQ(44, plotView.horizontalScrollPos);
    plotView.centreLatitude = 400000000;  // another code only clamps
    EXPECT_TRUE(PlotScrollVertical(8, 0));
    EXPECT_EQ(324000000, plotView.centreLatitude);

    // Tall and narrow at the world scale: H * scale passes 32 bits.
    PlotLayout(3, 30000);
    plotView.scale = 0;
    EXPECT_TRUE(PlotScrollVertical(PLOT_SCROLL_LINE_ON, 0));
    EXPECT_EQ(-324000000, plotView.centreLatitude);
    EXPECT_TRUE(PlotScrollVertical(PLOT_SCROLL_LINE_BACK, 0));
    EXPECT_EQ(324000000, plotView.centreLatitude);
    PlotLayout(30000, 36);
    plotView.scale = INT32_MAX;
    EXPECT_TRUE(PlotScrollHorizontal(PLOT_SCROLL_PAGE_BACK, 0));
    EXPECT_EQ(-648000000, plotView.centreLongitude);
    // An empty area does not move backwards.
    PlotLayout(0, 0);
    plotView.centreLatitude = 0;
    plotView.centreLongitude = 0;
    EXPECT_FALSE(PlotScrollHorizontal(PLOT_SCROLL_LINE_BACK, 0));
    EXPECT_FALSE(PlotScrollVertical(PLOT_SCROLL_PAGE_BACK, 0));
}

TEST_F(PlotGeometry, ResetAndTitle) {
    plotView.centreLatitude = 1;
    plotView.centreLongitude = -700000000;
    plotView.horizontalScrollPos = 4;
    strcpy(plotTitle, "Plot   [1.0km x 1.0km]");
    ResetPlotView();
    ExpectCentre(0, 0);
    EXPECT_EQ(0, plotView.scale);
    EXPECT_EQ(50, plotView.horizontalScrollPos);
    EXPECT_STREQ("Plot", plotTitle);
    EXPECT_EQ(799, plotView.plotArea.right);

    plotView.scale = 1000;
    EXPECT_EQ("Plot", Title());
    AddAt(0, 0);
    EXPECT_EQ("Plot   [24.6km x 17.5km]", Title());
    plotView.scale = 100;
    EXPECT_EQ("Plot   [2.5km x 1.7km]", Title());
    plotView.scale = 50;  // the height alone below 1 km
    EXPECT_EQ("Plot   [1232.4m x 872.6m]", Title());
    plotView.scale = 5;  // the height alone below 0.1 km
    EXPECT_EQ("Plot   [123.241m x 87.257m]", Title());
    EarthRadiusKm = 6000;
    plotView.scale = 1000;
    EXPECT_EQ("Plot   [23.2km x 16.4km]", Title());

    // Absurd sizes are cut to the buffer.
    PlotLayout(1 << 30, 1 << 30);
    EarthRadiusKm = INT32_MIN;
    plotView.scale = INT32_MAX;
    std::string huge = Title();
    EXPECT_EQ(63u, huge.size());
    EXPECT_EQ(0u, huge.find("Plot   [-"));
    char small[5];
    PlotTitle(small, sizeof small);
    EXPECT_STREQ("Plot", small);
}

}  // namespace
