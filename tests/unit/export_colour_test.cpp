// veldor-export colours each record as the Plot colours its dot.
#include <gtest/gtest.h>

#include <set>

#include "export_survey.h"
#include "fake_platform.h"
#include "storage/colours_file.h"
#include "survey/cal_lookup.h"
#include "views/plot_view.h"

// Against the squares the Plot draws, for every channel choice. On the
// default curve raw 204, 153 and 102 are the breaks 80, 60 and 40; channel 3
// has a falling curve, so its colour needs its own lookup.
TEST(ExportColourTest, EveryChoiceColoursRecordsAsThePlotDoes) {
    ResetFakeWorld();
    UseDefaultCurves();
    CalTable[2].points[0].value = 100.0f, CalTable[2].points[1].value = 0.0f;
    BuildChannelLookup(2);
    SetDefaultColours();
    powerBreak[0] = 80.0f, powerBreak[1] = 60.0f, powerBreak[2] = 40.0f;
    const uint8_t rows[][4] = {{230, 180, 128, 60}, {60, 230, 180, 128}, {128, 60, 230, 180},
                               {180, 128, 60, 230}, {204, 153, 102, 0},  {205, 154, 103, 255},
                               {10, 90, 30, 50},    {0, 0, 255, 0}};
    std::set<uint32_t> seen;
    for (const auto& raw : rows) {
        Record row{};
        for (int c = 0; c < 4; c++) row.ch[c] = raw[c];
        for (int choice = 0; choice <= PLOT_BEST; choice++) {
            PlotSquare squares[4];
            const int n = PlotRowSquares(row, 100, 100, choice, 5, squares);
            ASSERT_GE(n, 1);
            for (int k = 0; k < n; k++) {
                const uint32_t colour = ExportColour(row, choice == PLOT_ALL ? k : choice);
                EXPECT_EQ(colour, squares[k].colour) << "raw " << (int)raw[0] << " " << (int)raw[1]
                    << " " << (int)raw[2] << " " << (int)raw[3] << ", choice " << choice << ", square " << k;
                seen.insert(colour);
            }
        }
    }
    EXPECT_EQ(seen.size(), 4u);
}
