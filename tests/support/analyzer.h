#ifndef TESTS_SUPPORT_ANALYZER_H
#define TESTS_SUPPORT_ANALYZER_H

#include <memory>
#include <string>
#include <vector>

#include "tests/support/process.h"
#include "tests/support/temp_root.h"

// The simulated analyzer (vela-sim) playing the hardware under a test's
// root, ready once its sockets listen.
class SimulatedAnalyzer {
public:
    SimulatedAnalyzer(const TempRoot& root, const std::vector<std::string>& options = {});

    // The answer to one control command: one line, or for a listing the
    // lines up to and including "end".
    std::string Ask(const std::string& command);
    ChildProcess& Process() { return *process_; }

private:
    const TempRoot& root_;
    std::unique_ptr<ChildProcess> process_;
};

// The daemon started in the foreground against a root and a port; ready
// once it has greeted a client. It is stopped with SIGKILL if a test ends
// without stopping it.
class DaemonUnderTest {
public:
    DaemonUnderTest(const TempRoot& root, unsigned short port,
                    const std::vector<std::string>& options = {});
    ~DaemonUnderTest();

    bool Ready() const { return ready_; }
    ChildProcess& Process() { return *process_; }

private:
    std::unique_ptr<ChildProcess> process_;
    bool ready_ = false;
};

// The environment of a daemon under `root` listening on `port`.
std::vector<std::string> DaemonEnvironment(const TempRoot& root, unsigned short port);

// The vela-sim executable under test.
std::string VelaSimExecutable();

#endif
