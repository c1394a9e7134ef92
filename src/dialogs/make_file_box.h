// MakeFileBox, the dialog of File > Create Listing File: the file name and
// the format of the listing text file. Its values are the path of the edit
// and the index of the checked button in each of the four radio groups; the
// stored values of section "Listing File" are made from those indexes.
#ifndef VELDOR_DIALOGS_MAKE_FILE_BOX_H
#define VELDOR_DIALOGS_MAKE_FILE_BOX_H

#include <stdint.h>

#include "storage/listing_file.h"

constexpr int MakeFilePathSize = 261;  // the edit takes 260 characters

struct MakeFileValues {
    char path[MakeFilePathSize];
    int32_t latLong;    // 0 "Deg", 1 "Deg Min", 2 "Deg Min Sec", 3 "Milliseconds"
    int32_t sign;       // 0 "North/South", 1 "+/-"
    int32_t decimals;   // 0 "0", 1 "0.0", 2 "0.000", 3 "Raw"
    int32_t separator;  // 0 "Space", 1 "TAB", 2 "Comma"
};

// The dialog as it opens: folder + "\Listing.txt" in the edit ("Listing.txt"
// alone when there is no folder), and the buttons that the stored "Listing
// File" keys select.
MakeFileValues OpenMakeFileBox(const char* folder);

// The stored values of the checked buttons.
ListingFileSettings MakeFileBoxSettings(const MakeFileValues& values);

// OK: refuses an empty name ("No filename specified"), otherwise stores the
// buttons and writes the file. 1 when the dialog ends.
int MakeFileBoxOk(const MakeFileValues& values);

#endif
