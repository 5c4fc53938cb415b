#ifndef TESTS_TOOLS_VELA_TEST_SUPPORT_H
#define TESTS_TOOLS_VELA_TEST_SUPPORT_H

// vela against the simulated analyzer and the real daemon, and host commands
// for the tests of the init script and the package.

#include <sys/wait.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/analyzer.h"
#include "tests/support/process.h"
#include "tests/support/temp_root.h"

// Starts vela with `args` and the analyzer's port; its standard output and
// error share one pipe, every line written whole.
inline std::unique_ptr<ChildProcess> StartVela(unsigned short port, std::vector<std::string> args) {
    args.insert(args.end(), {"--port", std::to_string(port)});
    return std::make_unique<ChildProcess>(VELA_EXE, args, std::vector<std::string>{"NO_COLOR=1"});
}

// What a vela that ran to its end printed, and its exit status.
struct VelaResult {
    int status;
    std::string output;
    bool operator==(const VelaResult& other) const {
        return status == other.status && output == other.output;
    }
};

inline std::ostream& operator<<(std::ostream& out, const VelaResult& result) {
    return out << "status " << result.status << ", output:\n" << result.output;
}

inline VelaResult RunVela(unsigned short port, const std::vector<std::string>& args) {
    auto vela = StartVela(port, args);
    const int status = vela->Wait();
    return {status, vela->Output()};
}

// Runs `command` with the host's shell (never through an emulator) and
// returns its exit status, with what it printed in `output`.
inline int HostCommand(const std::string& command, std::string& output) {
    output.clear();
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return -1;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, n);
    const int status = ::pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

#endif
