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

// The simulator (by default on the manual clock without noise, so that
// records carry exactly the values set and times counted from 2026-01-01
// 00:00:00 UTC) and the daemon against it on a port of the test's own.
struct AnalyzerUnderTest {
    explicit AnalyzerUnderTest(const std::vector<std::string>& sim_options = {"--manual",
                                                                              "--no-noise"})
        : sim(root, sim_options), daemon(root, port) {}
    TempRoot root;
    SimulatedAnalyzer sim;
    unsigned short port = UniqueTestPort();
    DaemonUnderTest daemon;
};

// The environment of a daemon under `root` listening on `port`.
std::vector<std::string> DaemonEnvironment(const TempRoot& root, unsigned short port);

// The vela-sim executable under test.
std::string VelaSimExecutable();

#endif
