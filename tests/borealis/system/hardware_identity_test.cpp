#include "borealis/system/hardware_identity.h"

#include <gtest/gtest.h>

#include "borealis/platform/sim_platform.h"
#include "tests/support/temp_root.h"

namespace {

TEST(HardwareIdentity, FormatsRevisionAndBuildDate) {
    const struct {
        const char *rev, *build, *year_month, *day_hour;  // nullptr: no file
        const char* expected;
    } cases[] = {
        {"258\n", "7\n", "32165\n", "3593\n",
         "1.2.7 (2010-05-14 09:00)"},  // 2010 * 16 + 5, 14 * 256 + 9
        {"5", "0", "0", "0", "0.5.0 (0000-00-00 00:00)"},
        {nullptr, nullptr, nullptr, nullptr, "0.0.0 (0000-00-00 00:00)"},
        {"x258", "12", nullptr, nullptr, "0.0.12 (0000-00-00 00:00)"},
    };
    for (const auto& c : cases) {
        TempRoot root;
        const std::string folder = "/sys/bus/platform/devices/io4410/";
        const std::pair<const char*, const char*> files[] = {{"rev", c.rev},
                                                             {"build", c.build},
                                                             {"year_month", c.year_month},
                                                             {"day_hour", c.day_hour}};
        for (const auto& file : files)
            if (file.second) root.WriteFile(folder + file.first, file.second);
        EXPECT_EQ(GetHardwareIdentity(SimPlatform(root.path(), 4410)), c.expected);
    }
}

}  // namespace
