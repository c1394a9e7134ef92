// The listing text file: the whole record store exported as text for other
// tools, a short header and one line for each record. Written only, never
// read back. Its format comes from section "Listing File" of the settings
// file, independent of what the Listing window shows.
#ifndef VELDOR_STORAGE_LISTING_FILE_H
#define VELDOR_STORAGE_LISTING_FILE_H

#include <stdint.h>

#include "views/display_format.h"

// "Separator" values, with the labels of MakeFileBox's radio buttons.
constexpr int32_t LISTING_SEPARATOR_SPACE = 1;  // "Space"
constexpr int32_t LISTING_SEPARATOR_TAB = 2;    // "TAB"
constexpr int32_t LISTING_SEPARATOR_COMMA = 3;  // "Comma"

// One line of the file, "\n" and terminator included.
constexpr int ListingLineSize = 261;

struct ListingFileSettings {
    DisplayFormat format;  // "Lat/Long", "Sign", "Decimal places"
    int32_t separator;     // "Separator"
};

// The four keys of "Listing File" as stored (defaults 1, 1, 1, 1).
ListingFileSettings ReadListingFileSettings();
// The radio buttons MakeFileBox checks on opening: each stored value taken to
// the button it selects, a value outside the list to the group's fallback
// ("Deg", "North/South", "0", "Space").
ListingFileSettings MakeFileBoxChoices();
// Writes the four keys of "Listing File" as decimal text.
void WriteListingFileSettings(const ListingFileSettings& settings);

// ',' for "Comma", a tab for "TAB", a blank for any other value.
char ListingSeparatorChar(int32_t separator);

// The line of record index, "\n" included, into line (ListingLineSize bytes):
// date and time when the record has a time, latitude, longitude, the four
// readings, then the accessory channel and the first tag when there are any.
// Returns line.
char* FormatListingLine(int32_t index, const DisplayFormat& format, char separator, char* line);

// Exports the store to path. Refuses an empty store ("No data to save"),
// asks before overwriting an existing file, and tells the operator when the
// file cannot be created. 1 when the file was written, 0 when nothing
// happened.
int WriteListingFile(const char* path);

// OK of MakeFileBox with the path of its edit and its radio buttons: an empty
// path is refused ("No filename specified"); otherwise the choices go to the
// settings file, whatever happens next, and the file is written. 1 when the
// dialog may end.
int MakeFileOk(const char* path, const ListingFileSettings& choices);

#endif
