// vela find in the mDNS lab (tests/e2e/mdns_lab.h): the daemon on the
// simulated analyzer inside a private network namespace with its own
// avahi-daemon, and vela browsing from inside it. The lab needs root;
// elsewhere the test skips, saying why.

#include <gtest/gtest.h>

#include <regex>

#include "tests/e2e/mdns_lab.h"
#include "tests/tools/vela_test_support.h"

namespace {

TEST(VelaFind, ListsTheAnalyzerWithItsAddressPortAndTxtRecord) {
    MdnsLab lab;
    if (const std::string why = lab.Start(); !why.empty()) GTEST_SKIP() << why;
    TempRoot root;
    const unsigned short port = UniqueTestPort();
    const auto [sim, daemon] = lab.RunAnalyzer(root, port);

    auto vela = lab.Run({VELA_EXE, "find", "--timeout", "4"});
    ASSERT_EQ(vela->Wait(), 0) << vela->Output();
    // The analyzer's line follows vela's own; the responder may have found
    // the IPv6 link-local address too.
    const std::string& output = vela->Output();
    const std::string line = output.substr(output.find('\n') + 1);
    EXPECT_TRUE(std::regex_match(
        line,
        std::regex("vela-0042\tvela-0042\\.local\\.\t10\\.77\\.0\\.1(,fe80::ff:fe4c:1001%v0)?\t" +
                   std::to_string(port) +
                   "\tcompany=Norvance Instruments\tcpld=1\\.3\\.12 \\(2021-06-15 10:00\\)"
                   "\tmacaddress=02:00:00:4c:10:01\tmodel=VELA\tsn=ch4-XXXX\ttype=Borealis Analyzer"
                   "\tver=1\\.0\\.14\n")))
        << output << daemon->Output();
}

}  // namespace
