#include "borealis/platform/platform.h"

#include <stdlib.h>

#include <gtest/gtest.h>

#include "tests/support/temp_root.h"

namespace {

TEST(Platform, SimulatesUnderAnExistingRootOnly) {
    ::unsetenv("BOREALIS_PORT");
    ::setenv("BOREALIS_ROOT", "/nonexistent/borealis-root", 1);
    EXPECT_FALSE(Platform::Get().IsSimulated());
    EXPECT_EQ(Platform::Get().Path("/etc/vela.conf"), "/etc/vela.conf");
    EXPECT_EQ(Platform::Get().Port(), 4410);

    TempRoot root;  // sets BOREALIS_ROOT
    EXPECT_TRUE(Platform::Get().IsSimulated());
    EXPECT_EQ(Platform::Get().Path("/etc/vela.conf"), root.path() + "/etc/vela.conf");

    ::setenv("BOREALIS_PORT", "14410", 1);
    EXPECT_EQ(Platform::Get().Port(), 14410);
    ::unsetenv("BOREALIS_PORT");
}

TEST(Platform, SimulatedRootIsMadeAbsolute) {
    TempRoot root;
    ASSERT_EQ(::chdir(root.path().c_str()), 0);
    ::setenv("BOREALIS_ROOT", ".", 1);
    // A daemon changes to "/" when it detaches, so "." must not stay relative.
    EXPECT_EQ(Platform::Get().Path("/var/run/borealis.pid"), root.path() + "/var/run/borealis.pid");
    ASSERT_EQ(::chdir("/"), 0);
}

}  // namespace
