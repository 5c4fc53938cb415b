#include "borealis/platform/platform.h"

#include <stdlib.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/error_text.h"
#include "tests/support/temp_root.h"

namespace {

// The factory reads the environment; each case sets exactly the variables
// it names and clears the others.
std::unique_ptr<Platform> FromEnvironment(const char* root, const char* port = nullptr,
                                          const char* netif = nullptr) {
    const std::pair<const char*, const char*> variables[] = {
        {"BOREALIS_ROOT", root}, {"BOREALIS_PORT", port}, {"BOREALIS_NETIF", netif}};
    for (const auto& variable : variables)
        variable.second ? ::setenv(variable.first, variable.second, 1) : ::unsetenv(variable.first);
    return Platform::FromEnvironment();
}

TEST(Platform, AnalyzerUnlessTheRootNamesADirectory) {
    for (const char* root : {static_cast<const char*>(nullptr), "", "/nonexistent/borealis-root"}) {
        auto platform = FromEnvironment(root, "x");
        EXPECT_EQ(platform->Path("/etc/vela.conf"), "/etc/vela.conf");
        EXPECT_EQ(platform->Port(), 4410);
        EXPECT_EQ(platform->InterfaceName("br0"), "br0");
    }
}

TEST(Platform, SimulatesUnderTheRootMadeAbsolute) {
    TempRoot root;
    ASSERT_EQ(::chdir(root.path().c_str()), 0);
    // A daemon changes to "/" when it detaches, so "." must not stay relative.
    auto platform = FromEnvironment(".");
    ASSERT_EQ(::chdir("/"), 0);
    EXPECT_EQ(platform->Path("/var/run/borealis.pid"), root.path() + "/var/run/borealis.pid");
    EXPECT_EQ(platform->Port(), 4410);
    EXPECT_EQ(platform->InterfaceName("br0"), "lo");

    platform = FromEnvironment(root.path().c_str(), "14410", "eth7");
    EXPECT_EQ(platform->Port(), 14410);
    EXPECT_EQ(platform->InterfaceName("br0"), "eth7");
    EXPECT_EQ(platform->InterfaceName("lo"), "lo");
}

TEST(Platform, RejectsAPortThatIsNoNumberFrom1To65535) {
    TempRoot root;
    for (const char* port : {"0", "65536", "12ab", "-1", " "})
        EXPECT_EQ(ErrorText([&] { FromEnvironment(root.path().c_str(), port); }),
                  std::string("Invalid BOREALIS_PORT: ") + port);
    EXPECT_EQ(FromEnvironment(root.path().c_str(), "65535")->Port(), 65535);
}

}  // namespace
