// The borealis executable as a process, under a simulated root.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/support/analyzer.h"
#include "tests/support/line_client.h"
#include "tests/support/process.h"
#include "tests/support/syslog_catcher.h"
#include "tests/support/temp_root.h"

namespace {

const char kHelp[] =
    "borealis 1.0.14\n"
    "usage: borealis [options]\n"
    "\n"
    "  -h   Show this help\n"
    "  -b   Run in the background (as a daemon)\n"
    "  -t   Run as a real-time process (superuser only)\n"
    "  -s   Reroute stdout to syslog (daemon does this too)\n"
    "  -k   Kill borealis\n"
    "  -r   Reread configuration file\n"
    "  -d   Debug mode: output lots of debug info\n"
    "  -z   Don't adjust the clock_yz register\n"
    "\n";

const char kPidFile[] = "/var/run/borealis.pid";
const char kAlreadyRunning[] = "ERROR: Another process is already running: ";

class BorealisProcess : public testing::Test {
protected:
    void TearDown() override {
        // A daemon left behind by a failed test must not outlive it.
        std::string pid = root.ReadFile(kPidFile);
        if (!pid.empty()) ::kill(std::stoi(pid), SIGKILL);
    }

    // Starts borealis with `args` under the test's root.
    std::unique_ptr<ChildProcess> Start(const std::vector<std::string>& args) {
        return std::make_unique<ChildProcess>(BorealisExecutable(), args,
                                              DaemonEnvironment(root, port));
    }

    // Runs borealis with `args` to its end; returns the exit status.
    int Run(const std::vector<std::string>& args, std::string* output = nullptr) {
        auto child = Start(args);
        int status = child->Wait();
        if (output) *output = child->Output();
        return status;
    }

    // Starts a daemon in the foreground and waits until it holds its pid
    // file and greets clients (its signal handlers are in place then).
    std::unique_ptr<ChildProcess> StartForeground() {
        auto child = Start({});
        EXPECT_TRUE(WaitForGreeting(port));
        EXPECT_EQ(root.ReadFile(kPidFile), std::to_string(child->pid()) + "\n");
        return child;
    }

    TempRoot root;
    SimulatedAnalyzer analyzer{root};
    const unsigned short port = UniqueTestPort();
};

TEST_F(BorealisProcess, HelpPrintsExactlyAndTouchesNoPidFile) {
    std::string output;
    EXPECT_EQ(Run({"-h"}, &output), 0);
    EXPECT_EQ(output, kHelp);
    EXPECT_EQ(root.ReadFile(kPidFile), "");
    // Ignored and unknown options do not stop parsing.
    EXPECT_EQ(Run({"-a", "-x", "-q", "-h"}, &output), 0);
    EXPECT_NE(output.find("invalid option"), std::string::npos);  // getopt's own complaint
    EXPECT_EQ(output.substr(output.size() - std::min(output.size(), sizeof kHelp - 1)), kHelp);

    auto daemon = StartForeground();
    const std::string content = root.ReadFile(kPidFile);
    EXPECT_EQ(Run({"-h", "-k"}, &output), 0);  // -h ends parsing before -k
    EXPECT_EQ(output, kHelp);
    EXPECT_EQ(root.ReadFile(kPidFile), content);
}

TEST_F(BorealisProcess, SecondStartFailsAndLeavesTheFirstWithItsPidFile) {
    SyslogCatcher syslog(root / "/dev/log");
    auto daemon = StartForeground();
    const std::string content = root.ReadFile(kPidFile);
    std::string output;
    EXPECT_EQ(Run({}, &output), 255);
    EXPECT_EQ(output.rfind(kAlreadyRunning, 0), 0u) << output;
    EXPECT_EQ(output.find('\n'), output.size() - 1) << "one line: " << output;
    EXPECT_EQ(Run({"-b"}), 0);  // both parents of the daemon exit 0
    EXPECT_TRUE(syslog.WaitForPrefix(std::string("<14>borealis: ") + kAlreadyRunning));
    EXPECT_EQ(root.ReadFile(kPidFile), content);
    EXPECT_EQ(daemon->Wait(std::chrono::milliseconds(0)), -1) << "first daemon still runs";
}

TEST_F(BorealisProcess, ControlOptionsSignalTheDaemonOrFindItsPidFileMissing) {
    auto daemon = StartForeground();
    const std::string content = root.ReadFile(kPidFile);
    EXPECT_EQ(Run({"-r"}), 0);  // the daemon rereads and serves on
    EXPECT_TRUE(WaitForGreeting(port));
    EXPECT_EQ(daemon->Wait(std::chrono::milliseconds(0)), -1);
    EXPECT_EQ(root.ReadFile(kPidFile), content) << "a control invocation removes nothing";
    EXPECT_EQ(Run({"-k"}), 0);
    EXPECT_EQ(daemon->Wait(), 0);
    EXPECT_NE(daemon->Output().find("Exiting...\n"), std::string::npos);
    EXPECT_EQ(::access((root / kPidFile).c_str(), F_OK), -1);

    std::string output;
    EXPECT_EQ(Run({"-k"}, &output), 255);
    EXPECT_EQ(output, "shutdown: Got exception: PID file not found: " + (root / kPidFile) + "\n");
    EXPECT_EQ(Run({"-r"}, &output), 255);
    EXPECT_EQ(output, "readconfig: Got exception: PID file not found: " + (root / kPidFile) + "\n");
}

TEST_F(BorealisProcess, RealTimeWithoutTheRightEndsStartUp) {
#ifdef BOREALIS_UNDER_EMULATION
    GTEST_SKIP() << "the emulator runs only executables of this build, not setpriv";
#endif
    if (::geteuid() != 0 || ::access("/usr/bin/setpriv", X_OK) != 0)
        GTEST_SKIP() << "needs root and setpriv to start borealis as an unprivileged user";
    // The unprivileged user must reach the pid file.
    ASSERT_EQ(::chmod(root.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((root / "/var/run").c_str(), 0777), 0);
    ChildProcess child(
        "/usr/bin/setpriv",
        {"--reuid=65534", "--regid=65534", "--clear-groups", BorealisExecutable(), "-t"},
        DaemonEnvironment(root, port));
    EXPECT_EQ(child.Wait(), 255);
    EXPECT_EQ(child.Output(),
              "ERROR: set_real_time_priority: Unable to set real-time priority: Operation not "
              "permitted\n");
}

// A stop request that arrives while the daemon is still starting.
TEST_F(BorealisProcess, SigintBeforeTheLoopEndsItWithoutServing) {
    // Starting the CPLD clock writes this file: as a pipe, it holds the
    // daemon in its start-up, after its handlers are in place and before
    // its loop, until the test reads it.
    const std::string clock_start = root / "/sys/devices/platform/io4410/clock_start";
    ASSERT_EQ(::unlink(clock_start.c_str()), 0);
    ASSERT_EQ(::mkfifo(clock_start.c_str(), 0644), 0);
    auto daemon = Start({});
    const std::string opened = "vela-sim: " + (root / "/dev/dsp4410") + " opened\n";
    ASSERT_TRUE(
        WaitUntil([&] { return analyzer.Process().Output().find(opened) != std::string::npos; }));

    daemon->Signal(SIGINT);
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
    EXPECT_EQ(daemon->Wait(), 0);
    EXPECT_EQ(daemon->Output(), "Exiting...\n");
}

TEST_F(BorealisProcess, DaemonSendsItsOutputToSyslogLineByLine) {
    SyslogCatcher syslog(root / "/dev/log");
    std::string output;
    EXPECT_EQ(Run({"-b", "-d"}, &output), 0);
    EXPECT_EQ(output, "");
    EXPECT_TRUE(
        syslog.WaitFor("<14>borealis: DATAMSG\tINIT message from DSP: VELA DSP 2.3 ready\n"));
    EXPECT_TRUE(WaitUntil([&] { return !root.ReadFile(kPidFile).empty(); }));
    EXPECT_EQ(Run({"-k"}), 0);
    EXPECT_TRUE(syslog.WaitFor("<14>borealis: Exiting...\n"));
    EXPECT_TRUE(WaitUntil([&] { return ::access((root / kPidFile).c_str(), F_OK) == -1; }));
}

}  // namespace
