#include "tests/support/syslog_catcher.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

#include "tests/support/process.h"

SyslogCatcher::SyslogCatcher(const std::string& socket_path) {
    fd_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socket_path.c_str(), sizeof address.sun_path - 1);
    if (fd_ < 0 || ::bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("cannot bind " + socket_path);
}

SyslogCatcher::~SyslogCatcher() { ::close(fd_); }

const std::vector<std::string>& SyslogCatcher::Messages() {
    char buffer[65536];
    for (ssize_t n; (n = ::recv(fd_, buffer, sizeof buffer, 0)) >= 0;)
        messages_.emplace_back(buffer, n);
    return messages_;
}

bool SyslogCatcher::WaitFor(const std::string& message) {
    return WaitUntil([&] {
        for (const auto& m : Messages())
            if (m == message) return true;
        return false;
    });
}

bool SyslogCatcher::WaitForPrefix(const std::string& prefix) {
    return WaitUntil([&] {
        for (const auto& m : Messages())
            if (m.compare(0, prefix.size(), prefix) == 0) return true;
        return false;
    });
}
