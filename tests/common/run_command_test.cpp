#include "common/run_command.h"

#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

TEST(RunCommand, CommandGetsDefaultSignalActionsAndNoMask) {
    // The daemon ignores the first two and the command must not inherit
    // that; the third stands for any signal the daemon blocks.
    struct sigaction ignore = {}, saved_pipe, saved_hangup;
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignore, &saved_pipe);
    ::sigaction(SIGHUP, &ignore, &saved_hangup);
    sigset_t terminate, saved_mask;
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &terminate, &saved_mask);

    // Ended by the signal, the shell's wait status is the signal's number.
    const std::pair<const char*, int> signals[] = {
        {"PIPE", SIGPIPE}, {"HUP", SIGHUP}, {"TERM", SIGTERM}};
    for (auto [name, number] : signals)
        EXPECT_EQ(RunCommand(std::string("kill -s ") + name + " $$"), number) << name;

    ::sigprocmask(SIG_SETMASK, &saved_mask, nullptr);
    ::sigaction(SIGPIPE, &saved_pipe, nullptr);
    ::sigaction(SIGHUP, &saved_hangup, nullptr);
}

TEST(RunCommand, CommandInheritsNoDescriptorOfTheDaemon) {
    // A socket on a standard descriptor (as after detaching) and one above.
    int pair[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    const int saved_input = ::dup(0);
    ASSERT_GE(::dup2(pair[0], 0), 0);
    const std::string inherited = "[ -e /proc/self/fd/" + std::to_string(pair[1]) + " ]";
    EXPECT_EQ(RunCommand(inherited), 1 << 8);
    EXPECT_EQ(RunCommand("[ \"$(readlink /proc/self/fd/0)\" = /dev/null ]"), 0);
    ::dup2(saved_input, 0);
    for (int fd : {saved_input, pair[0], pair[1]}) ::close(fd);
}
