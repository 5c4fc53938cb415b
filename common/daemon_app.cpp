#include "common/daemon_app.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "common/errno_error.h"

sigset_t& received_signals() {
    static sigset_t set = [] {
        sigset_t empty;
        sigemptyset(&empty);
        return empty;
    }();
    return set;
}

namespace {

void record_signal(int number) { sigaddset(&received_signals(), number); }

void install(int number, void (*handler)(int), const char* failure) {
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    // An alarm must interrupt the system call it is timing, so it is the one
    // signal whose calls are not restarted.
#ifdef SA_INTERRUPT
    action.sa_flags = number == SIGALRM ? SA_INTERRUPT : SA_RESTART;
#else
    action.sa_flags = number == SIGALRM ? 0 : SA_RESTART;
#endif
    if (sigaction(number, &action, nullptr) != 0) throw ErrnoError(failure);
}

}  // namespace

void catch_signal(sigset_t& set, int number) {
    sigdelset(&set, number);
    install(number, record_signal, "Unable to install signal handler");
}

void default_signal(sigset_t& set, int number) {
    install(number, SIG_DFL, "Unable to set default action on signal");
    sigdelset(&set, number);
}

void ignore_signal(sigset_t& set, int number) {
    install(number, SIG_IGN, "Unable to ignore signal");
    sigdelset(&set, number);
}

bool test_and_clear_signal(sigset_t& set, int number) {
    if (sigismember(&set, number) != 1) return false;
    sigdelset(&set, number);
    return true;
}

DaemonApp::DaemonApp(const std::string& pid_path) : pid_path_(pid_path) {}

DaemonApp::~DaemonApp() {
    if (pid_fd_ >= 0 && ::close(pid_fd_) == 0) ::unlink(pid_path_.c_str());
}

bool DaemonApp::daemon_init() {
    // Whatever is buffered must not be written once by each process.
    std::cout.flush();
    std::cerr.flush();
    pid_t pid = ::fork();
    if (pid < 0) throw ErrnoError("Unable to fork first time");
    if (pid > 0) return false;

    ::setsid();
    ignore_signal(received_signals(), SIGHUP);
    pid = ::fork();
    if (pid < 0) throw ErrnoError("Unable to fork second time");
    if (pid > 0) return false;

    if (::chdir("/") != 0) {
        // Staying in the old directory is harmless.
    }
    ::umask(0);
    for (int fd = 0; fd < 64; ++fd) ::close(fd);
    return true;
}

void DaemonApp::create_pid_file() {
    pid_fd_ = ::open(pid_path_.c_str(), O_WRONLY | O_CREAT, 0644);
    if (pid_fd_ < 0) throw ErrnoError("Unable to open pid file");

    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    if (::fcntl(pid_fd_, F_SETLK, &lock) != 0) {
        int error = errno;
        ErrnoError failure(error == EAGAIN || error == EACCES ? "Another process is already running"
                                                              : "Unable to lock pid file",
                           error);
        ::close(pid_fd_);
        pid_fd_ = -1;
        throw failure;
    }

    if (::ftruncate(pid_fd_, 0) != 0) throw ErrnoError("Unable to truncate pid file");
    std::string text = std::to_string(::getpid()) + "\n";
    if (::write(pid_fd_, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw ErrnoError("Unable to write to pid file");

    int flags = ::fcntl(pid_fd_, F_GETFD);
    if (flags < 0) throw ErrnoError("Unable to read close-on-exec flag for pid file");
    if (::fcntl(pid_fd_, F_SETFD, flags | FD_CLOEXEC) != 0)
        throw ErrnoError("Unable to set close-on-exec flag for pid file");
}

void DaemonApp::send_signal(int number) {
    std::ifstream file(pid_path_);
    if (!file) throw std::runtime_error("PID file not found: " + pid_path_);
    int pid = 0;
    // 0 and negative numbers would signal a process group or every process.
    if (!(file >> pid) || pid < 1)
        throw std::runtime_error("Unable to read PID file: " + pid_path_);
    if (::kill(pid, number) != 0) throw ErrnoError("Unable to signal");
}
