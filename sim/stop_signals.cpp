#include "sim/stop_signals.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "common/errno_error.h"

namespace {

sigset_t StopSet() {
    sigset_t set;
    ::sigemptyset(&set);
    ::sigaddset(&set, SIGINT);
    ::sigaddset(&set, SIGTERM);
    return set;
}

}  // namespace

StopSignals::StopSignals(EventLoop& loop, std::function<void()> stop) : loop_(loop) {
    sigset_t set = StopSet();
    if (::sigprocmask(SIG_BLOCK, &set, nullptr) != 0)
        throw ErrnoError("vela-sim: cannot block signals");
    fd_ = ::signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
    if (fd_ < 0) throw ErrnoError("vela-sim: cannot watch signals");
    loop_.Watch(fd_, POLLIN, [this, stop](short) {
        signalfd_siginfo info;
        if (::read(fd_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) stop();
    });
}

StopSignals::~StopSignals() {
    loop_.Forget(fd_);
    ::close(fd_);
    sigset_t set = StopSet();
    ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
}
