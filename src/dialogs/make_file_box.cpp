#include "dialogs/make_file_box.h"

#include <stdio.h>
#include <string.h>

namespace {

// The "Decimal places" value of each button of its group, in button order.
const int32_t DecimalsByButton[4] = {READING_0, READING_0_0, READING_0_000, READING_RAW};

int32_t Clamp(int32_t value, int32_t low, int32_t high) {
    return value < low ? low : value > high ? high : value;
}

}  // namespace

MakeFileValues OpenMakeFileBox(const char* folder) {
    MakeFileValues values;
    memset(&values, 0, sizeof values);
    if (folder == nullptr || folder[0] == '\0') {
        snprintf(values.path, sizeof values.path, "Listing.txt");
    } else {
        size_t length = strlen(folder);
        const char* slash = folder[length - 1] == '\\' ? "" : "\\";
        snprintf(values.path, sizeof values.path, "%s%sListing.txt", folder, slash);
    }
    ListingFileSettings choices = MakeFileBoxChoices();
    values.latLong = choices.format.latLongMode - LATLONG_DEG;
    values.sign = choices.format.signMode - SIGN_NORTH_SOUTH;
    for (int32_t k = 0; k < 4; k++) {
        if (DecimalsByButton[k] == choices.format.readingMode) values.decimals = k;
    }
    values.separator = choices.separator - LISTING_SEPARATOR_SPACE;
    return values;
}

ListingFileSettings MakeFileBoxSettings(const MakeFileValues& values) {
    ListingFileSettings settings;
    settings.format.latLongMode = LATLONG_DEG + Clamp(values.latLong, 0, 3);
    settings.format.signMode = SIGN_NORTH_SOUTH + Clamp(values.sign, 0, 1);
    settings.format.readingMode = DecimalsByButton[Clamp(values.decimals, 0, 3)];
    settings.separator = LISTING_SEPARATOR_SPACE + Clamp(values.separator, 0, 2);
    return settings;
}

int MakeFileBoxOk(const MakeFileValues& values) {
    return MakeFileOk(values.path, MakeFileBoxSettings(values));
}
