#include "bench/relay/processes.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <thread>

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

bool WaitFor(const std::function<bool()>& condition, double seconds) {
    const auto start = Clock::now();
    auto interval = std::chrono::milliseconds(1);
    while (!condition()) {
        if (SecondsSince(start) > seconds) return false;
        std::this_thread::sleep_for(interval);
        interval = std::min(2 * interval, std::chrono::milliseconds(32));
    }
    return true;
}

Child::Child(const std::vector<std::string>& argv, const std::vector<std::string>& environment,
             const std::string& log) {
    pid_ = fork();
    if (pid_ < 0) throw std::runtime_error("bench: fork failed");
    if (pid_ > 0) return;
    const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    dup2(out, 1);
    dup2(out, 2);
    for (const std::string& entry : environment) putenv(const_cast<char*>(entry.c_str()));
    std::vector<char*> args;
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    _exit(127);
}

Child::~Child() {
    if (pid_ > 0) Stop(SIGTERM);
}

std::int64_t Child::CpuNs() const {
    std::ifstream in("/proc/" + std::to_string(pid_) + "/schedstat");
    std::int64_t running_ns = 0;
    in >> running_ns;
    return running_ns;
}

long Child::ResidentKiB() const {
    std::ifstream in("/proc/" + std::to_string(pid_) + "/status");
    std::string word;
    while (in >> word)
        if (word == "VmRSS:") {
            long kib = 0;
            in >> kib;
            return kib;
        }
    return 0;
}

void Child::Stop(int signal) {
    if (pid_ <= 0) return;
    kill(pid_, signal);
    const bool gone = WaitFor([this] { return waitpid(pid_, nullptr, WNOHANG) == pid_; }, 10);
    if (!gone) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    pid_ = -1;
}

SimControl::SimControl(const std::string& root) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = root + "/run/vela-sim.ctl";
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    fd_ = socket(AF_UNIX, SOCK_STREAM, 0);
    if (connect(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("bench: cannot reach " + path);
}

SimControl::~SimControl() { close(fd_); }

std::string SimControl::Command(const std::string& command) {
    const std::string line = command + "\n";
    if (write(fd_, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
        throw std::runtime_error("bench: the simulator is gone");
    std::string answer;
    char byte;
    while (read(fd_, &byte, 1) == 1) {
        if (byte == '\n') return answer;
        answer += byte;
    }
    throw std::runtime_error("bench: the simulator is gone");
}

TempDir::TempDir() {
    char pattern[] = "/tmp/borealis-bench.XXXXXX";
    if (!mkdtemp(pattern)) throw std::runtime_error("bench: mkdtemp failed");
    path_ = pattern;
}

TempDir::~TempDir() {
    const std::string command = "rm -rf '" + path_ + "'";
    if (!getenv("BENCH_KEEP") && std::system(command.c_str()) != 0) {
        // A leftover folder under /tmp harms nothing.
    }
}
