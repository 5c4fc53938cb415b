#include "borealis/system/hardware_identity.h"

#include <gtest/gtest.h>

#include "borealis/platform/sim_platform.h"
#include "tests/support/temp_root.h"

namespace {

void WriteIdentity(const TempRoot& root, const char* rev, const char* build,
                   const char* year_month, const char* day_hour) {
    const std::string dir = "/sys/bus/platform/devices/io4410/";
    root.WriteFile(dir + "rev", rev);
    root.WriteFile(dir + "build", build);
    root.WriteFile(dir + "year_month", year_month);
    root.WriteFile(dir + "day_hour", day_hour);
}

}  // namespace

TEST(HardwareIdentity, FormatsRevisionAndBuildDate) {
    TempRoot root;
    WriteIdentity(root, "258\n", "7\n", "32165\n", "3593\n");  // 2010 * 16 + 5, 14 * 256 + 9
    EXPECT_EQ(GetHardwareIdentity(SimPlatform(root.path(), 4410)), "1.2.7 (2010-05-14 09:00)");
}

TEST(HardwareIdentity, SmallRevisionIsAMinorNumber) {
    TempRoot root;
    WriteIdentity(root, "5", "0", "0", "0");
    EXPECT_EQ(GetHardwareIdentity(SimPlatform(root.path(), 4410)), "0.5.0 (0000-00-00 00:00)");
}

TEST(HardwareIdentity, MissingOrUnreadableFilesCountAsZero) {
    TempRoot root;
    const SimPlatform platform(root.path(), 4410);
    EXPECT_EQ(GetHardwareIdentity(platform), "0.0.0 (0000-00-00 00:00)");
    root.WriteFile("/sys/bus/platform/devices/io4410/rev", "x258");
    root.WriteFile("/sys/bus/platform/devices/io4410/build", "12");
    EXPECT_EQ(GetHardwareIdentity(platform), "0.0.12 (0000-00-00 00:00)");
}
