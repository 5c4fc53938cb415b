#ifndef BENCH_RELAY_PROCESSES_H
#define BENCH_RELAY_PROCESSES_H

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using Clock = std::chrono::steady_clock;

// Seconds since `start` on the steady clock.
double SecondsSince(Clock::time_point start);

// Waits until `condition` holds, looking after 1 ms, then at doubling
// intervals up to 32 ms, so that the harness itself hardly wakes while it
// measures what the relay costs; false when `seconds` passed first. Times
// that matter are taken by the clients' reader, not by this wait.
bool WaitFor(const std::function<bool()>& condition, double seconds);

// A child process measured from outside, through /proc. Its output goes to
// `log`. Stopped with SIGTERM (then SIGKILL) when destroyed.
class Child {
public:
    Child(const std::vector<std::string>& argv, const std::vector<std::string>& environment,
          const std::string& log);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t pid() const { return pid_; }
    // CPU time used so far, user and system, in nanoseconds: the scheduler's
    // own count (/proc/PID/schedstat), which is utime + stime of
    // /proc/PID/stat without the clock tick's rounding.
    std::int64_t CpuNs() const;
    // Resident memory in KiB (VmRSS of /proc/PID/status).
    long ResidentKiB() const;
    // Stops the process with `signal` and waits for it.
    void Stop(int signal);

private:
    pid_t pid_ = -1;
};

// The control socket of a running vela-sim.
class SimControl {
public:
    explicit SimControl(const std::string& root);
    ~SimControl();
    SimControl(const SimControl&) = delete;
    SimControl& operator=(const SimControl&) = delete;

    // Sends one command and returns its one-line answer ("ok", a value, or
    // an error); throws when the simulator is gone.
    std::string Command(const std::string& command);

private:
    int fd_ = -1;
};

// A fresh temporary directory, removed with everything in it when destroyed.
class TempDir {
public:
    TempDir();
    ~TempDir();
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

#endif
