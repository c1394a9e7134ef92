#include "link/accessory_modes.h"

#include <gtest/gtest.h>
#include <string.h>

#include "fake_platform.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"

namespace {

class AccessoryModes : public ::testing::Test {
protected:
    void SetUp() override {
        ResetFakeWorld();
        fake.portOpen = true;
    }
    static std::string Setting(const IntSetting& s) { return StoredSetting(s.section, s.key); }
};

TEST_F(AccessoryModes, TzrAsksBeforeTakingOverAnotherMode) {
    statusFlags = STATUS_GPS_DIFF_MODE;
    fake.answers.push_back(0);
    EXPECT_EQ(0, ApplyTzrMode());
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(STATUS_GPS_DIFF_MODE, statusFlags);
    EXPECT_EQ(
        "Enabling TRZ scan mode will disable AR3000A differential mode.\nDo you want to continue?",
        fake.questions[0]);

    statusFlags = STATUS_AR3000A_MODE | STATUS_GPS_DIFF_MODE;  // a hand-edited file
    fake.answers = {1, 1};
    EXPECT_EQ(1, ApplyTzrMode());
    EXPECT_EQ(STATUS_TZR_MODE, statusFlags);
    EXPECT_EQ("Enabling TZR4100 mode will disable AR3000A scan mode.\nDo you want to continue?",
              fake.questions[1]);
    EXPECT_EQ(3u, fake.questions.size());
}

TEST_F(AccessoryModes, Ar3000aConfigurationAndExclusion) {
    char body[128];
    BuildAr3000aConfiguration(body, sizeof body);
    EXPECT_STREQ("AC T88.0W,T89.0W,T90.0W,T91.0W,4800", body);
    WriteSetting(KeyAr3000aMode[1], "USB");
    WriteSetting(KeyAr3000aMode[2], "CW");
    WriteSetting(KeyAr3000aAttOn[3], "1");
    WriteSetting(KeyAr3000aBaudRate, "9600");
    BuildAr3000aConfiguration(body, sizeof body);
    EXPECT_STREQ("AC T88.0W,T89.0U,T90.0C,R91.0W,9600", body);
    // Absurdly long settings are cut, never overflow.
    WriteSetting(KeyAr3000aFreq[0], std::string(200, '9').c_str());
    BuildAr3000aConfiguration(body, sizeof body);
    EXPECT_LE(strlen(body), 127u);

    WriteSetting(KeyAr3000aFreq[0], "88.0");
    WriteSetting(KeyAr3000aEnable, "1");
    statusFlags = STATUS_TZR_MODE;
    fake.answers.push_back(0);
    EXPECT_EQ(0, ApplyAr3000aMode());
    EXPECT_TRUE(fake.wire.empty());
    EXPECT_EQ(STATUS_TZR_MODE, statusFlags);

    fake.answers.push_back(1);
    EXPECT_EQ(1, ApplyAr3000aMode());
    EXPECT_EQ((std::vector<std::string>{"AC T88.0W,T89.0U,T90.0C,R91.0W,9600", "AS 1"}),
              FramesSent());
    EXPECT_EQ(STATUS_AR3000A_MODE, statusFlags);
    EXPECT_EQ("0", Setting(KeyTzrEnable));
    EXPECT_EQ("0", Setting(KeyGpsDiffEnable));

    fake.wire.clear();
    WriteSetting(KeyAr3000aEnable, "0");
    EXPECT_EQ(1, ApplyAr3000aMode());
    EXPECT_EQ(std::vector<std::string>{"AS 0"}, FramesSent());
    EXPECT_EQ(0u, statusFlags);
    EXPECT_EQ(2u, fake.questions.size());

    // A failed send leaves the flags as they were.
    WriteSetting(KeyAr3000aEnable, "1");
    fake.portOpen = false;
    EXPECT_EQ(0, ApplyAr3000aMode());
    EXPECT_EQ(0u, statusFlags);
}

}  // namespace
