#include "borealis/platform/sim_syslog.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cstring>

namespace {

bool SendDatagram(const std::string& socket_path, const std::string& message) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (socket_path.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, socket_path.c_str(), socket_path.size() + 1);
    // A socket per message: a daemon closes every descriptor when it detaches.
    int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    ssize_t sent = ::sendto(fd, message.data(), message.size(), 0,
                            reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(fd);
    return sent == static_cast<ssize_t>(message.size());
}

}  // namespace

SysLog::Writer SimSyslogWriter(const std::string& socket_path, const std::string& identity) {
    return [socket_path, identity](int priority, const std::string& text) {
        std::string message =
            "<" + std::to_string(LOG_USER | priority) + ">" + identity + ": " + text;
        if (!SendDatagram(socket_path, message)) ::syslog(priority, "%s", text.c_str());
    };
}
