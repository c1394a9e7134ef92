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

TEST_F(AccessoryModes, EmptySettingsTurnTzrOnAtPortOpen) {
    ASSERT_EQ(1, ApplyTzrMode());
    EXPECT_EQ((std::vector<std::string>{"MS 1", "MN 10", "MC 1", "MI 1"}), FramesSent());
    EXPECT_TRUE(statusFlags & STATUS_TZR_MODE);
    EXPECT_EQ("<absent>", Setting(KeyTzrEnable));
    EXPECT_EQ("0", Setting(KeyAr3000aEnable));
    EXPECT_EQ("0", Setting(KeyGpsDiffEnable));
    EXPECT_TRUE(fake.questions.empty());

    // Off: "MS 0" only, and only its own bit changes.
    fake.wire.clear();
    WriteSetting(KeyTzrEnable, "0");
    statusFlags |= STATUS_AR3000A_MODE;
    EXPECT_EQ(1, ApplyTzrMode());
    EXPECT_EQ(std::vector<std::string>{"MS 0"}, FramesSent());
    EXPECT_EQ(STATUS_AR3000A_MODE, statusFlags);
    EXPECT_TRUE(fake.questions.empty());

    // A closed port: the switch fails.
    fake.portOpen = false;
    EXPECT_EQ(0, ApplyTzrMode());
}

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

TEST_F(AccessoryModes, GpsDiffChangesFlagsBeforeSending) {
    WriteSetting(KeyGpsDiffEnable, "1");
    WriteSetting(KeyGpsDiffBaudRate, "2400");
    statusFlags = STATUS_AR3000A_MODE;
    fake.answers.push_back(0);
    ApplyGpsDiffMode();
    EXPECT_EQ("<< Error setting GPS differential configuration >>", fake.statusLines.back());
    EXPECT_EQ(STATUS_AR3000A_MODE, statusFlags);

    fake.portOpen = false;
    fake.answers.push_back(1);
    ApplyGpsDiffMode();
    EXPECT_EQ(STATUS_GPS_DIFF_MODE, statusFlags);  // kept although the send failed
    EXPECT_EQ(2, CountStatus("<< Error setting GPS differential configuration >>"));

    fake.portOpen = true;
    ApplyGpsDiffMode();  // already on: nothing to ask
    EXPECT_EQ(std::vector<std::string>{"GD 1 2400"}, FramesSent());
    WriteSetting(KeyGpsDiffEnable, "0");
    ApplyGpsDiffMode();
    EXPECT_EQ((std::vector<std::string>{"GD 1 2400", "GD 0 0"}), FramesSent());
    EXPECT_EQ(0u, statusFlags);
    EXPECT_EQ(2u, fake.questions.size());
}

}  // namespace
