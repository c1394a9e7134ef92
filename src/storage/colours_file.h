// The plot's four colours (views/plot_view.h) and their file, "Colours.txt" beside the program:
// one colour to a line, a letter and then red, green and blue, e.g. "H 0 0 255".
// The file is read once at start-up and never written.
#ifndef VELDOR_STORAGE_COLOURS_FILE_H
#define VELDOR_STORAGE_COLOURS_FILE_H

#include <stdint.h>

#include "views/plot_view.h"

// Colours as 0x00BBGGRR: red in the low byte, then green, then blue.
uint32_t MakeColour(int red, int green, int blue);

// High blue, Mid green, Low red, None black.
void SetDefaultColours();

// Reads the file over the colours as they are; 1 when it could be opened.
// Lines are taken in pieces of at most 127 characters. A piece that starts
// with "#" is a comment. Otherwise it must scan as "%c %d %d %d": the letter
// H, M, L or N in either case chooses the colour, other letters are ignored,
// and the line is skipped when a number lies outside 0..255 or is missing.
// A later line for a letter wins. Nothing is ever reported.
int ReadColoursFile(const char* path);

#endif
