#include "common/run_command.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace {

// Runs in the forked child: only async-signal-safe calls until the exec.
[[noreturn]] void ExecShell(const char* command) {
    // Ignored actions survive an exec; the daemon ignores these two so that
    // a reset peer or its own detaching cannot end it.
    ::signal(SIGPIPE, SIG_DFL);
    ::signal(SIGHUP, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execl("/bin/sh", "sh", "-c", command, static_cast<char*>(nullptr));
    ::_exit(127);
}

}  // namespace

int RunCommand(const std::string& command) {
    // As system(3) does, SIGCHLD is held back while the command runs, so
    // that nothing else reaps it first. SIGINT and SIGQUIT are left as they
    // are: the daemon only records them and acts once the command is done.
    sigset_t child_ended, saved;
    sigemptyset(&child_ended);
    sigaddset(&child_ended, SIGCHLD);
    ::sigprocmask(SIG_BLOCK, &child_ended, &saved);

    int status = -1;
    pid_t pid = ::fork();
    if (pid == 0) ExecShell(command.c_str());
    if (pid > 0) {
        while (::waitpid(pid, &status, 0) < 0) {
            if (errno != EINTR) {
                status = -1;
                break;
            }
        }
    }
    ::sigprocmask(SIG_SETMASK, &saved, nullptr);
    return status;
}
