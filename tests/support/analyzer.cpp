#include "tests/support/analyzer.h"

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "tests/support/line_client.h"

std::string VelaSimExecutable() { return VELA_SIM_EXE; }

std::vector<std::string> DaemonEnvironment(const TempRoot& root, unsigned short port) {
    return {"BOREALIS_ROOT=" + root.path(), "BOREALIS_PORT=" + std::to_string(port)};
}

SimulatedAnalyzer::SimulatedAnalyzer(const TempRoot& root, const std::vector<std::string>& options)
    : root_(root) {
    std::vector<std::string> args{"--root", root.path()};
    args.insert(args.end(), options.begin(), options.end());
    process_ = std::make_unique<ChildProcess>(VelaSimExecutable(), args);
    const std::string ready = "vela-sim: ready " + root.path() + "\n";
    WaitUntil([&] { return process_->Output().find(ready) != std::string::npos; });
}

std::string SimulatedAnalyzer::Ask(const std::string& command) {
    const std::string path = root_ / "/run/vela-sim.ctl";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        return "";
    }
    const std::string line = command + "\n";
    std::string answer;
    if (::write(fd, line.data(), line.size()) == static_cast<ssize_t>(line.size())) {
        const bool listing = command == "received" || command == "mirror" || command == "help" ||
                             command.rfind("box received", 0) == 0;
        char buffer[4096];
        pollfd entry{fd, POLLIN, 0};
        while ((listing ? answer.find("end\n") : answer.find('\n')) == std::string::npos &&
               ::poll(&entry, 1, 10000) == 1) {
            ssize_t got = ::read(fd, buffer, sizeof buffer);
            if (got <= 0) break;
            answer.append(buffer, static_cast<std::size_t>(got));
        }
    }
    ::close(fd);
    return answer;
}

DaemonUnderTest::DaemonUnderTest(const TempRoot& root, unsigned short port,
                                 const std::vector<std::string>& options)
    : process_(std::make_unique<ChildProcess>(BorealisExecutable(), options,
                                              DaemonEnvironment(root, port))) {
    ready_ = WaitForGreeting(port);
}

DaemonUnderTest::~DaemonUnderTest() { process_->Signal(SIGKILL); }
