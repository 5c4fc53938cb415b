#ifndef TESTS_SUPPORT_PROCESS_H
#define TESTS_SUPPORT_PROCESS_H

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

// Waits until `condition` holds, checking every few milliseconds; false when
// the deadline passed first.
bool WaitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds deadline = std::chrono::seconds(20));

// A child process with its standard output and error captured in one pipe.
class ChildProcess {
public:
    // Starts `program` with `args`, through the build's emulator if any, in
    // this process's environment with the `environment` entries ("NAME=value")
    // added or put in place of those of the same name. Throws
    // std::runtime_error when no pipe or process can be made.
    ChildProcess(const std::string& program, const std::vector<std::string>& args,
                 const std::vector<std::string>& environment = {});
    // Runs `body` in a forked copy of this process that dies with the test
    // process; `body` writes its output to the descriptor it is given and
    // returns the exit status.
    explicit ChildProcess(const std::function<int(int output_fd)>& body);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return pid_; }
    // Collects output until the child exits or the deadline passes; returns
    // the exit status (0..255), or -1 when the child is still running.
    int Wait(std::chrono::milliseconds deadline = std::chrono::seconds(20));
    // Everything the child printed so far.
    const std::string& Output();
    // Reads what is available without waiting.
    void Drain();
    // Sends signal `number` to the child.
    void Signal(int number);

private:
    // Forks, with the pipe's writing end given to `child` in the child.
    void Fork(const std::function<void(int output_fd)>& child);

    pid_t pid_ = -1;
    int output_fd_ = -1;
    int status_ = -1;
    std::string output_;
};

// The borealis executable under test.
std::string BorealisExecutable();

#endif
