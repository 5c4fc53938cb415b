#include "borealis/system/ptp_settings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "borealis/platform/sim_platform.h"
#include "tests/support/temp_root.h"

namespace {

TEST(PtpOptions, ReadsTheModeFromTheOptionLines) {
    const struct {
        const char* text;
        int mode;
    } cases[] = {
        {"PTPD_OPTS=-g\n", PtpSettings::kSlaveOnly},
        {"PTPD_OPTS=-p", PtpSettings::kPreferred},
        {"PTPD_OPTS=\"-g -p\"\n", PtpSettings::kPreferred},
        {"PTPD_OPTS=-p\nPTPD_OPTS=-g\n", PtpSettings::kSlaveOnly},
        {"PTPD_INTERFACE=br0\n# PTPD_OPTS=-g\n", PtpSettings::kAuto},
        {"", PtpSettings::kAuto},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadPtpOptions(c.text), c.mode) << c.text;
}

TEST(PtpOptions, WritesTheOptionLineLast) {
    const struct {
        const char* text;
        int mode;
        const char* expected;
    } cases[] = {
        {"A=1\nPTPD_OPTS=-g\nB=2", PtpSettings::kPreferred, "A=1\nB=2\nPTPD_OPTS=-p\n"},
        {"PTPD_OPTS=-p\nA=1\nPTPD_OPTS=-g\n", PtpSettings::kAuto, "A=1\n"},
        {"", PtpSettings::kSlaveOnly, "PTPD_OPTS=-g\n"},
    };
    for (const auto& c : cases) EXPECT_EQ(WritePtpOptions(c.text, c.mode), c.expected);
}

TEST(PtpSettings, RewritesAndRestartsOnlyForAModeNotInForce) {
    TempRoot root;
    root.WriteFile("/etc/sysconfig/ptpd", "PTPD_INTERFACE=br0\n");
    root.WriteFile("/etc/rc.d/init.d/ptpd", "#!/bin/sh\necho \"$1\" >> \"$0.log\"\n");
    ASSERT_EQ(::chmod((root / "/etc/rc.d/init.d/ptpd").c_str(), 0755), 0);
    SimPlatform platform(root.path(), 4410);
    PtpSettings ptp(platform);

    ptp.ModeChanged(0);
    ptp.ModeChanged(2);
    ptp.ModeChanged(2);
    ptp.ModeChanged(7);  // any index other than auto and preferred is slave only
    EXPECT_EQ(root.ReadFile("/etc/sysconfig/ptpd"), "PTPD_INTERFACE=br0\nPTPD_OPTS=-g\n");
    EXPECT_EQ(root.ReadFile("/etc/rc.d/init.d/ptpd.log"), "restart\nrestart\n");
    EXPECT_EQ(PtpSettings(platform).mode(), PtpSettings::kSlaveOnly);
}

}  // namespace
