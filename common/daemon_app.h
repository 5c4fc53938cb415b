#ifndef COMMON_DAEMON_APP_H
#define COMMON_DAEMON_APP_H

#include <signal.h>

#include <string>

// The process-wide set of signals received by the recording handler. The
// handler only adds to it; the main loop tests and clears its members.
sigset_t& received_signals();

// Forgets `number` in `set`, then installs the recording handler for it.
void catch_signal(sigset_t& set, int number);
// Restores the default action for `number`, then forgets it in `set`.
void default_signal(sigset_t& set, int number);
// Ignores `number`, then forgets it in `set`.
void ignore_signal(sigset_t& set, int number);
// True, once, when `number` has been received since it was last cleared.
bool test_and_clear_signal(sigset_t& set, int number);

// A program that can detach itself as a daemon, hold its locked pid file,
// and signal the instance that holds it.
class DaemonApp {
public:
    explicit DaemonApp(const std::string& pid_path);
    DaemonApp(const DaemonApp&) = delete;
    DaemonApp& operator=(const DaemonApp&) = delete;
    // Closes and removes the pid file if this process created it.
    virtual ~DaemonApp();

    // Forks twice and detaches; true only in the detached grandchild.
    bool daemon_init();
    // Opens, write-locks and fills the pid file; throws when another
    // process holds the lock.
    void create_pid_file();
    // Sends `number` to the process named in the pid file; throws when the
    // file is missing, holds no process id above 0, or the signal fails.
    void send_signal(int number);

    const std::string& pid_path() const { return pid_path_; }

private:
    std::string pid_path_;
    int pid_fd_ = -1;
};

#endif
