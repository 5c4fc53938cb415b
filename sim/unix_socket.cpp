#include "sim/unix_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "common/errno_error.h"

int ListenUnix(const std::string& path, int type) {
    const std::string failure = "vela-sim: cannot listen on " + path;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) throw ErrnoError(failure, ENAMETOOLONG);
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);

    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode)) ::unlink(path.c_str());

    int fd = ::socket(AF_UNIX, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0) throw ErrnoError(failure);
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(fd, 8) != 0) {
        int error = errno;
        ::close(fd);
        throw ErrnoError(failure, error);
    }
    return fd;
}

int AcceptUnix(int listener) {
    return ::accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
}
