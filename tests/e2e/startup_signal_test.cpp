// A stop request that arrives while the daemon is still starting.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>

#include "tests/support/analyzer.h"
#include "tests/support/process.h"
#include "tests/support/temp_root.h"

namespace {

TEST(DaemonStartUp, SigintBeforeTheLoopEndsItWithoutServing) {
    TempRoot root;
    // Starting the CPLD clock writes this file: as a pipe, it holds the
    // daemon in its start-up, after its handlers are in place and before
    // its loop, until the test reads it.
    const std::string clock_start = root / "/sys/devices/platform/io4410/clock_start";
    MakeDirectories(clock_start.substr(0, clock_start.rfind('/')));
    ASSERT_EQ(::mkfifo(clock_start.c_str(), 0644), 0);
    SimulatedAnalyzer sim(root, {"--manual"});
    ChildProcess daemon(BorealisExecutable(), {}, DaemonEnvironment(root, UniqueTestPort()));
    const std::string opened = "vela-sim: " + (root / "/dev/dsp4410") + " opened\n";
    ASSERT_TRUE(
        WaitUntil([&] { return sim.Process().Output().find(opened) != std::string::npos; }));

    daemon.Signal(SIGINT);
    const int fd = ::open(clock_start.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(fd, 0);
    std::string written;
    EXPECT_TRUE(WaitUntil([&] {
        char buffer[16];
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got > 0) written.append(buffer, static_cast<std::size_t>(got));
        return written == "1";
    }));
    ::close(fd);

    // The loop checks for the signal before it serves anything, not even
    // the processor's first message.
    EXPECT_EQ(daemon.Wait(), 0);
    EXPECT_EQ(daemon.Output(), "Exiting...\n");
}

}  // namespace
