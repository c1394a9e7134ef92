#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>

#include <string>

#include "dialogs/make_file_box.h"
#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"

namespace {

// Stored "Listing File" values, the buttons they check when MakeFileBox
// opens, and what OK then stores: each group's fallback button for a value
// outside its list, and "Decimal places" whose buttons are not in value order.
TEST(RecordDialogs, MakeFileBoxButtonsAndStoredValues) {
    struct Case {
        int stored[4];   // Lat/Long, Sign, Decimal places, Separator
        int buttons[4];  // checked button of each group
        int written[4];
    } cases[] = {
        // clang-format off
        {{4, 2, -1, 3}, {3, 1, 3, 2}, {4, 2, -1, 3}},
        {{2, 1, 0, 1}, {1, 0, 0, 0}, {2, 1, 0, 1}},
        {{5, 0, 2, 7}, {0, 0, 0, 0}, {1, 1, 0, 1}},
        {{0, 3, -2, 0}, {0, 0, 0, 0}, {1, 1, 0, 1}},
        // clang-format on
    };
    const IntSetting* keys[4] = {&KeyListingFileLatLong, &KeyListingFileSign,
                                 &KeyListingFileDecimalPlaces, &KeyListingFileSeparator};
    for (const Case& c : cases) {
        ResetFakeWorld();
        for (int k = 0; k < 4; k++) WriteSettingInt(*keys[k], c.stored[k]);
        MakeFileValues values = OpenMakeFileBox("C:\\Users\\op\\Desktop");
        int buttons[4] = {values.latLong, values.sign, values.decimals, values.separator};
        std::string path = fake.settingsFile + ".txt";
        snprintf(values.path, sizeof values.path, "%s", path.c_str());
        recordCount = 1;
        EXPECT_EQ(1, MakeFileBoxOk(values));
        for (int k = 0; k < 4; k++) {
            EXPECT_EQ(c.buttons[k], buttons[k]) << "group " << k << " of " << c.stored[k];
            EXPECT_EQ(c.written[k], ReadSetting(*keys[k])) << "group " << k;
        }
        EXPECT_NE("<missing>", ReadFileBytes(path));
        remove(path.c_str());
    }
}

TEST(RecordDialogs, MakeFileBoxOffersListingTxtInTheFolder) {
    struct Case {
        const char* folder;
        const char* path;
    } cases[] = {
        {"C:\\Users\\op\\Desktop", "C:\\Users\\op\\Desktop\\Listing.txt"},
        {"D:\\", "D:\\Listing.txt"},
        {"", "Listing.txt"},
        {nullptr, "Listing.txt"},
    };
    for (const Case& c : cases) {
        ResetFakeWorld();
        EXPECT_STREQ(c.path, OpenMakeFileBox(c.folder).path);
    }
    std::string longFolder(300, 'x');
    EXPECT_EQ(MakeFilePathSize - 1, (int)strlen(OpenMakeFileBox(longFolder.c_str()).path));
}

}  // namespace
