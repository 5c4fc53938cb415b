#include "tests/support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <thread>

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

std::string BorealisExecutable() { return BOREALIS_EXE; }

static std::vector<std::string> CommandLine(const std::string& program,
                                            const std::vector<std::string>& args) {
    std::vector<std::string> words;
    std::istringstream emulator(BOREALIS_TEST_EMULATOR);
    for (std::string word; emulator >> word;) words.push_back(word);
    words.push_back(program);
    words.insert(words.end(), args.begin(), args.end());
    return words;
}

// The entries of `changes` and those of this process's environment whose
// names they do not set.
static std::vector<std::string> Environment(const std::vector<std::string>& changes) {
    std::vector<std::string> entries = changes;
    for (char** entry = environ; *entry; ++entry) {
        const std::string name(*entry, std::strcspn(*entry, "=") + 1);
        bool changed = false;
        for (const auto& change : changes)
            changed = changed || change.compare(0, name.size(), name) == 0;
        if (!changed) entries.push_back(*entry);
    }
    return entries;
}

static std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts) pointers.push_back(&text[0]);
    pointers.push_back(nullptr);
    return pointers;
}

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& args,
                           const std::vector<std::string>& environment) {
    std::vector<std::string> words = CommandLine(program, args);
    std::vector<std::string> entries = Environment(environment);
    // Built before the fork: the child only duplicates descriptors and execs.
    std::vector<char*> argv = Pointers(words), envp = Pointers(entries);
    Fork([&](int output_fd) {
        ::dup2(output_fd, 1);
        ::dup2(output_fd, 2);
        ::execve(argv[0], argv.data(), envp.data());
    });
}

ChildProcess::ChildProcess(const std::function<int(int)>& body) {
    std::fflush(nullptr);  // or the child would print the test's pending output again
    Fork([&](int output_fd) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        // exit, not _exit: the leak checker looks at the child's process too.
        std::exit(body(output_fd));
    });
}

void ChildProcess::Fork(const std::function<void(int)>& child) {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
    pid_ = ::fork();
    if (pid_ < 0) throw std::runtime_error("fork failed");
    if (pid_ == 0) {
        child(fds[1]);
        ::_exit(127);
    }
    ::close(fds[1]);
    output_fd_ = fds[0];
}

ChildProcess::~ChildProcess() {
    if (status_ < 0 && pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    if (output_fd_ >= 0) ::close(output_fd_);
}

void ChildProcess::Drain() {
    char buffer[4096];
    pollfd p{output_fd_, POLLIN, 0};
    while (output_fd_ >= 0 && ::poll(&p, 1, 0) > 0) {
        ssize_t n = ::read(output_fd_, buffer, sizeof buffer);
        if (n <= 0) {
            ::close(output_fd_);
            output_fd_ = -1;
            break;
        }
        output_.append(buffer, n);
    }
}

int ChildProcess::Wait(std::chrono::milliseconds deadline) {
    WaitUntil(
        [this] {
            Drain();
            if (status_ >= 0) return true;
            int status;
            if (::waitpid(pid_, &status, WNOHANG) == pid_)
                status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return false;
        },
        deadline);
    Drain();
    return status_;
}

const std::string& ChildProcess::Output() {
    Drain();
    return output_;
}

void ChildProcess::Signal(int number) {
    if (pid_ > 0 && status_ < 0) ::kill(pid_, number);
}
