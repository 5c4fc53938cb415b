#include "common/daemon_app.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/temp_root.h"

namespace {

TEST(Signals, RecordedOnceAndClearedByTest) {
    sigset_t& set = received_signals();
    catch_signal(set, SIGUSR2);
    EXPECT_FALSE(test_and_clear_signal(set, SIGUSR2));
    ::raise(SIGUSR2);
    ::raise(SIGUSR2);
    EXPECT_TRUE(test_and_clear_signal(set, SIGUSR2));
    EXPECT_FALSE(test_and_clear_signal(set, SIGUSR2));

    ::raise(SIGUSR2);
    ignore_signal(set, SIGUSR2);  // forgets what was recorded
    EXPECT_FALSE(test_and_clear_signal(set, SIGUSR2));
    ::raise(SIGUSR2);             // ignored: not recorded, not fatal
    EXPECT_FALSE(test_and_clear_signal(set, SIGUSR2));
    default_signal(set, SIGUSR2);
}

TEST(Signals, InvalidSignalThrows) {
    try {
        catch_signal(received_signals(), SIGKILL);
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), "Unable to install signal handler: Invalid argument");
    }
}

TEST(DaemonApp, PidFileHoldsPidAndIsRemovedByItsOwnerOnly) {
    TempRoot root(false);
    const std::string path = root / "borealis.pid";
    {
        DaemonApp app(path);
        app.create_pid_file();
        EXPECT_EQ(root.ReadFile("borealis.pid"), std::to_string(::getpid()) + "\n");
        DaemonApp control(path);  // a control invocation removes nothing
    }
    EXPECT_NE(::access(path.c_str(), F_OK), 0);
}

TEST(DaemonApp, SendSignalReportsMissingOrUnreadablePidFile) {
    TempRoot root(false);
    const std::string path = root / "borealis.pid";
    DaemonApp app(path);
    struct Case { const char* content; std::string message; };
    const Case cases[] = {
        {nullptr, "PID file not found: " + path},
        {"not a number\n", "Unable to read PID file: " + path},
        {"", "Unable to read PID file: " + path},
    };
    for (const Case& c : cases) {
        if (c.content) root.WriteFile("borealis.pid", c.content);
        try {
            app.send_signal(SIGUSR1);
            ADD_FAILURE() << "no exception for " << c.message;
        } catch (const std::runtime_error& e) {
            EXPECT_EQ(std::string(e.what()), c.message);
        }
    }
}

TEST(DaemonApp, SendSignalReachesTheNamedProcess) {
    TempRoot root(false);
    root.WriteFile("borealis.pid", std::to_string(::getpid()) + "\n");
    catch_signal(received_signals(), SIGUSR1);
    DaemonApp(root / "borealis.pid").send_signal(SIGUSR1);
    EXPECT_TRUE(test_and_clear_signal(received_signals(), SIGUSR1));
}

}  // namespace
