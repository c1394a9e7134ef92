#include "storage/colours_file.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "fake_platform.h"

namespace {

// The four colours (high, mid, low, none) after reading a file of these bytes
// over the defaults.
std::vector<uint32_t> ColoursAfterReading(const std::string& bytes) {
    SetDefaultColours();
    std::string path = TempTestPath("colours.txt");
    WriteFileBytes(path, bytes);
    EXPECT_EQ(ReadColoursFile(path.c_str()), 1);
    remove(path.c_str());
    return {PlotColourHigh, PlotColourMid, PlotColourLow, PlotColourNone};
}

TEST(ColoursFile, LinesSetTheirColourAndBadLinesChangeNothing) {
    EXPECT_EQ(MakeColour(0x12, 0x34, 0x56), 0x00563412u);
    // Blue, green, red and black.
    const std::vector<uint32_t> defaults = {0x00FF0000u, 0x0000FF00u, 0x000000FFu, 0};
    EXPECT_EQ(ReadColoursFile("/no/such/folder/Colours.txt"), 0);
    EXPECT_EQ(ColoursAfterReading(""), defaults);

    std::string lines =
        "# High band yellow\n"
        "h 255 255 0\n"
        "H 300 0 0\n"  // out of range: the whole line is ignored
        "Z 1 2 3\n"    // not a colour
        "l 9 8 7\n"
        "#L 1 2 3\n"
        "L -1 0 0\n"  // negative reads as a huge unsigned number
        "L 5 6\n"     // too few numbers
        "L 5 x 6\n"
        " N 1 2 3\n"  // the letter must be in the first column
        "m10\t20 30 tail\n"
        "n 1 2 3\n"
        "N 4 5 6";  // the later line wins; no line end at the end
    EXPECT_EQ(ColoursAfterReading(lines), std::vector<uint32_t>({MakeColour(255, 255, 0),
                                                                 MakeColour(10, 20, 30),
                                                                 MakeColour(9, 8, 7),
                                                                 MakeColour(4, 5, 6)}));

    // Lines are read in pieces of 127 characters: the tail of a long comment
    // becomes a line of its own; a colour line cut before its last number is lost.
    std::string comment = "#" + std::string(126, '-') + "M 7 8 9\n";
    std::string cut = "H 1 2" + std::string(122, ' ') + "3\n";
    EXPECT_EQ(ColoursAfterReading(comment + cut),
              std::vector<uint32_t>({defaults[0], MakeColour(7, 8, 9), defaults[2], defaults[3]}));

    std::string garbage("H\0 1 2 3\n\xff\xfeL 9", 14);
    EXPECT_EQ(ColoursAfterReading(garbage + std::string(1000, '\xb7')), defaults);
}

}  // namespace
