// vela serve in a real browser: the simulator in real time without noise,
// the daemon, vela serve, and headless Chromium driven by
// tests/browser/serve_view.mjs, which checks the page and saves the
// screenshot of the README (build/<preset>/vela-serve.png).

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <regex>

#include "tests/tools/vela_test_support.h"

namespace {

TEST(VelaServe, PageFollowsTheAnalyzerAndChangesItsRate) {
#ifndef VELA_SERVE
    GTEST_SKIP() << "this vela is built without serve (no libcpp-httplib-dev)";
#endif
    const std::string driver = std::string(BOREALIS_TEST_DATA_DIR) + "/browser/";
    if (::access("/usr/bin/chromium", X_OK) != 0 ||
        ::access((driver + "node_modules/playwright-core").c_str(), F_OK) != 0)
        GTEST_SKIP() << "no /usr/bin/chromium or no playwright-core in tests/browser "
                        "(scripts/setup installs both)";
    TempRoot root;
    SimulatedAnalyzer sim{root, {"--no-noise"}};
    const unsigned short port = UniqueTestPort();
    DaemonUnderTest daemon{root, port};
    auto serve = StartVela(port, {"serve", "--listen", "127.0.0.1:0"});
    std::string url;
    ASSERT_TRUE(WaitUntil([&] {
        std::smatch found;
        const std::string output = serve->Output();
        if (std::regex_search(output, found, std::regex("http://127.0.0.1:[0-9]+/")))
            url = found.str();
        return !url.empty();
    })) << serve->Output();

    ChildProcess browser("/usr/bin/env",
                         {"node", driver + "serve_view.mjs", url, root / "/run/vela-sim.ctl",
                          BOREALIS_BINARY_DIR "/vela-serve.png"});
    EXPECT_EQ(browser.Wait(std::chrono::seconds(120)), 0) << browser.Output();
    EXPECT_EQ(RunVela(port, {"get", "output/rate"}), (VelaResult{0, "10\n"}));
    serve->Signal(SIGINT);
    EXPECT_EQ(serve->Wait(), 0) << serve->Output();
}

}  // namespace
