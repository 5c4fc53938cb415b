#include "bench/relay/relays.h"

#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void WaitForLine(const std::string& log, const std::string& line, const char* what) {
    if (!WaitFor([&] { return ReadFile(log).find(line) != std::string::npos; }, 20))
        throw std::runtime_error(std::string("bench: ") + what + " did not start; see " + log);
}

}  // namespace

int NextPort() {
    // A port the kernel finds free now: fixed numbers would collide with
    // whatever else runs on the machine.
    const int fd = socket(AF_INET6, SOCK_STREAM, 0);
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    socklen_t length = sizeof address;
    if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw std::runtime_error("bench: no free port");
    close(fd);
    return ntohs(address.sin6_port);
}

DaemonRelay::DaemonRelay(const Programs& programs, int port, bool manual) : Relay(port) {
    const std::string root = root_.path() + "/root";
    std::vector<std::string> sim_args = {programs.vela_sim, "--root", root, "--port",
                                         std::to_string(port)};
    if (manual) sim_args.push_back("--manual");
    sim_.reset(new Child(sim_args, {}, root_.path() + "/sim.log"));
    WaitForLine(root_.path() + "/sim.log", "vela-sim: ready", "vela-sim");
    control_.reset(new SimControl(root));
    if (manual) control_->Command("noise 1");
    started_ = Clock::now();
    daemon_.reset(new Child({programs.borealis},
                            {"BOREALIS_ROOT=" + root, "BOREALIS_PORT=" + std::to_string(port)},
                            root_.path() + "/borealis.log"));
}

DaemonRelay::~DaemonRelay() {
    // The daemon goes first: it never has to outlive its devices.
    daemon_->Stop(SIGINT);
    control_.reset();
    sim_->Stop(SIGTERM);
}

BaselineRelay::BaselineRelay(const Programs& programs, int port, int clients, int rate, int length)
    : Relay(port) {
    const std::string log = dir_.path() + "/baseline.log";
    baseline_.reset(new Child({programs.baseline, std::to_string(port), std::to_string(clients),
                               std::to_string(rate), std::to_string(length)},
                              {}, log));
    WaitForLine(log, "bench-baseline: ready", "bench-baseline");
}
