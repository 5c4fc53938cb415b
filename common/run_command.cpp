#include "common/run_command.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace {

// The command gets none of the daemon's descriptors: a program it leaves
// running (the PTP daemon) must not hold the daemon's listening port or its
// devices. After detaching, the daemon's standard descriptors may be such
// sockets or devices too; they become /dev/null, while a terminal, a pipe or
// a file stays for the command's own output.
void CloseInheritedDescriptors() {
    for (int fd = 0; fd <= 2; ++fd) {
        struct stat st;
        if (::fstat(fd, &st) != 0 || S_ISREG(st.st_mode) || S_ISFIFO(st.st_mode) || ::isatty(fd))
            continue;
        const int null = ::open("/dev/null", O_RDWR);
        if (null >= 0 && null != fd) {
            ::dup2(null, fd);
            ::close(null);
        }
    }
    const long highest = ::sysconf(_SC_OPEN_MAX);
    for (long fd = 3; fd < (highest > 0 ? highest : 1024); ++fd) ::close(static_cast<int>(fd));
}

// Runs in the forked child: only async-signal-safe calls until the exec.
[[noreturn]] void ExecShell(const char* command) {
    CloseInheritedDescriptors();
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
