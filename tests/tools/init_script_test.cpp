// The analyzer's init script, as installed, driving the real daemon against
// the simulated analyzer under a temporary root.

#include <gtest/gtest.h>
#include <signal.h>

#include <fstream>

#include "tests/support/line_client.h"
#include "tests/tools/vela_test_support.h"

namespace {

// Runs the init script with `action` for the daemon under `root` on `port`.
int InitScript(const TempRoot& root, unsigned short port, const std::string& action,
               std::string& output) {
    return HostCommand("BOREALIS_ROOT='" + root.path() + "' BOREALIS_PORT=" + std::to_string(port) +
                           " BOREALIS_DAEMON='" + BorealisExecutable() + "' " +
                           BOREALIS_INIT_SCRIPT + " " + action,
                       output);
}

// Stops a detached daemon that a failing test leaves behind.
struct PidFileGuard {
    std::string path;
    ~PidFileGuard() {
        std::ifstream file(path);
        pid_t pid = 0;
        if (file >> pid && pid > 0) ::kill(pid, SIGKILL);
    }
};

TEST(InitScript, StartsReloadsAndStopsTheDaemon) {
#ifdef BOREALIS_UNDER_EMULATION
    GTEST_SKIP()
        << "the init script starts the daemon as a host program, not under user-mode emulation";
#endif
    TempRoot root;
    SimulatedAnalyzer sim(root, {"--manual"});
    const unsigned short port = UniqueTestPort();
    PidFileGuard guard{root / "/var/run/borealis.pid"};
    std::string output;

    EXPECT_EQ(InitScript(root, port, "start", output), 0) << output;
    EXPECT_EQ(output, "Starting borealis: done\n");
    ASSERT_TRUE(WaitForGreeting(port));
    LineClient client(port);
    ASSERT_FALSE(client.ReadLineStartingWith("DATADIAGH\t").empty());
    EXPECT_EQ(InitScript(root, port, "start", output), 0);
    EXPECT_EQ(output, "borealis is already running\n");

    // A configuration changed on disk is taken at the reload and announced.
    root.WriteFile("/etc/vela.conf",
                   "<norvance><vela><output><rate>5</rate></output></vela></norvance>\n");
    EXPECT_EQ(InitScript(root, port, "reload", output), 0) << output;
    EXPECT_EQ(output, "Reloading the borealis configuration: done\n");
    EXPECT_EQ(client.ReadLineStartingWith("DATAEVENT\t"), "DATAEVENT\tCONFIGCHANGED\n");

    EXPECT_EQ(InitScript(root, port, "stop", output), 0) << output;
    EXPECT_EQ(output, "Stopping borealis: done\n");
    EXPECT_TRUE(client.WaitClosed());
    EXPECT_EQ(InitScript(root, port, "status", output), 3);
    EXPECT_EQ(output, "borealis is stopped\n");
    EXPECT_EQ(InitScript(root, port, "stop", output), 0);
    EXPECT_EQ(output, "borealis is not running\n");
}

}  // namespace
