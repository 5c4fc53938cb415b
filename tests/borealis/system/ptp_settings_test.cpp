#include "borealis/system/ptp_settings.h"

#include <gtest/gtest.h>

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

}  // namespace
