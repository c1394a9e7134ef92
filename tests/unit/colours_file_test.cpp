#include "storage/colours_file.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <string>

#include "fake_platform.h"

namespace {

// Writes a colours file in the temporary folder; removed again at the end.
struct ColoursFile {
    std::string path;

    explicit ColoursFile(const std::string& bytes) : path(TempTestPath("colours.txt")) {
        WriteFileBytes(path, bytes);
    }
    ~ColoursFile() { remove(path.c_str()); }
};

TEST(ColoursFile, DefaultsAreBlueGreenRedBlack) {
    SetDefaultColours();
    EXPECT_EQ(PlotColourHigh, 0x00FF0000u);
    EXPECT_EQ(PlotColourMid, 0x0000FF00u);
    EXPECT_EQ(PlotColourLow, 0x000000FFu);
    EXPECT_EQ(PlotColourNone, 0x00000000u);
    EXPECT_EQ(MakeColour(0x12, 0x34, 0x56), 0x00563412u);
}

TEST(ColoursFile, LinesSetTheirColourAndBadLinesChangeNothing) {
    SetDefaultColours();
    ColoursFile file(
        "# High band yellow\n"
        "h 255 255 0\n"
        "H 300 0 0\n"  // out of range: the whole line is ignored
        "Z 1 2 3\n"    // not a colour
        "#L 1 2 3\n"
        "L -1 0 0\n"  // negative reads as a huge unsigned number
        "L 5 6\n"     // too few numbers
        "L 5 x 6\n"
        " N 1 2 3\n"  // the letter must be in the first column
        "m10\t20 30 tail\n"
        "n 1 2 3\n"
        "N 4 5 6");  // the later line wins; no line end at the end
    EXPECT_EQ(ReadColoursFile(file.path.c_str()), 1);
    EXPECT_EQ(PlotColourHigh, MakeColour(255, 255, 0));
    EXPECT_EQ(PlotColourMid, MakeColour(10, 20, 30));
    EXPECT_EQ(PlotColourLow, MakeColour(255, 0, 0));
    EXPECT_EQ(PlotColourNone, MakeColour(4, 5, 6));
}

TEST(ColoursFile, LongLinesAreReadIn127CharacterPieces) {
    SetDefaultColours();
    // The tail of a long comment becomes a line of its own; a colour line cut
    // before its last number is lost.
    std::string comment = "#" + std::string(126, '-') + "M 7 8 9\n";
    std::string cut = "H 1 2" + std::string(122, ' ') + "3\n";
    ColoursFile file(comment + cut);
    EXPECT_EQ(ReadColoursFile(file.path.c_str()), 1);
    EXPECT_EQ(PlotColourMid, MakeColour(7, 8, 9));
    EXPECT_EQ(PlotColourHigh, MakeColour(0, 0, 255));
}

TEST(ColoursFile, MissingOrGarbageFileKeepsTheColours) {
    SetDefaultColours();
    EXPECT_EQ(ReadColoursFile("/no/such/folder/Colours.txt"), 0);
    std::string garbage("H\0 1 2 3\n\xff\xfeL 9", 14);
    garbage += std::string(1000, '\xb7');
    ColoursFile file(garbage);
    EXPECT_EQ(ReadColoursFile(file.path.c_str()), 1);
    EXPECT_EQ(PlotColourHigh, MakeColour(0, 0, 255));
    EXPECT_EQ(PlotColourLow, MakeColour(255, 0, 0));
}

}  // namespace
