#include "storage/colours_file.h"

#include <stdio.h>

namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// Reads white space and then a decimal number with an optional sign, as "%d"
// does. 0 when there is no number or it lies outside 0..255.
int ScanComponent(const char** text, int* value) {
    const char* p = *text;
    while (IsSpace(*p)) p++;
    bool negative = false;
    if (*p == '+' || *p == '-') {
        negative = *p == '-';
        p++;
    }
    if (*p < '0' || *p > '9') return 0;
    int number = 0;
    for (; *p >= '0' && *p <= '9'; p++) {
        if (number <= 255) number = number * 10 + (*p - '0');  // stays small: 256 is enough
    }
    *text = p;
    if (number > 255 || (negative && number != 0)) return 0;
    *value = number;
    return 1;
}

void ApplyLine(const char* line) {
    if (line[0] == '#' || line[0] == '\0') return;
    char letter = line[0];
    const char* p = line + 1;
    int rgb[3];
    for (int i = 0; i < 3; i++) {
        if (!ScanComponent(&p, &rgb[i])) return;
    }
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    uint32_t colour = MakeColour(rgb[0], rgb[1], rgb[2]);
    if (letter == 'H') {
        PlotColourHigh = colour;
    } else if (letter == 'M') {
        PlotColourMid = colour;
    } else if (letter == 'L') {
        PlotColourLow = colour;
    } else if (letter == 'N') {
        PlotColourNone = colour;
    }
}

}  // namespace

uint32_t MakeColour(int red, int green, int blue) {
    return (static_cast<uint32_t>(red) & 0xFFu) | ((static_cast<uint32_t>(green) & 0xFFu) << 8) |
           ((static_cast<uint32_t>(blue) & 0xFFu) << 16);
}

void SetDefaultColours() {
    PlotColourHigh = MakeColour(0, 0, 255);
    PlotColourMid = MakeColour(0, 255, 0);
    PlotColourLow = MakeColour(255, 0, 0);
    PlotColourNone = MakeColour(0, 0, 0);
}

int ReadColoursFile(const char* path) {
    FILE* file = fopen(path, "r");
    if (file == nullptr) return 0;
    char line[128];
    while (fgets(line, sizeof line, file) != nullptr) ApplyLine(line);
    fclose(file);
    return 1;
}
