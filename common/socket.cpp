#include "common/socket.h"

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "common/daemon_app.h"

namespace {

// Clears the file-creation mask and puts the old one back on every path.
class ClearedUmask {
public:
    ClearedUmask() : saved_(::umask(0)) {}
    ~ClearedUmask() { ::umask(saved_); }
    ClearedUmask(const ClearedUmask&) = delete;
    ClearedUmask& operator=(const ClearedUmask&) = delete;

private:
    mode_t saved_;
};

}  // namespace

Socket::Socket(int fd) : StreamFileBase(fd) {}

Socket::Socket(int family, int type, int protocol) {
    int fd = ::socket(family, type, protocol);
    if (fd == -1) throw ErrnoError("Socket: unable to create socket");
    SetFd(fd);
}

void Socket::Bind(const SocketAddress& address) {
    CheckOpen();
    int result;
    int error;
    {
        ClearedUmask cleared;
        result = ::bind(GetFd(), address.GetSockAddr(), address.GetLength());
        error = errno;
    }
    if (result == -1) throw ErrnoError("Socket: unable to bind to " + address.ToString(), error);
}

void Socket::Listen(int backlog) {
    CheckOpen();
    if (::listen(GetFd(), backlog) == -1) throw ErrnoError("Socket: unable to listen");
    SetNonBlocking();
}

Socket Socket::Accept(SocketAddress* peer) {
    CheckOpen();
    socklen_t length = SocketAddress::Capacity();
    if (peer) *peer = SocketAddress();
    int fd = peer ? ::accept(GetFd(), peer->GetSockAddr(), &length)
                  : ::accept(GetFd(), nullptr, nullptr);
    if (fd == -1) {
        if (errno == ECONNABORTED) throw EConnAborted("Socket: client aborted connection");
        throw ErrnoError("Socket: accept error");
    }
    return Socket(fd);
}

void Socket::Connect(const SocketAddress& address) {
    CheckOpen();
    if (::connect(GetFd(), address.GetSockAddr(), address.GetLength()) == -1) {
        int error = errno;
        throw ErrnoError("Socket: unable to connect to " + address.ToString(), error);
    }
}

void Socket::Connect(const SocketAddress& address, unsigned seconds) {
    CheckOpen();
    // The recording handler for the alarm interrupts the connect.
    catch_signal(received_signals(), SIGALRM);
    ::alarm(seconds);
    try {
        Connect(address);
    } catch (const std::exception& failure) {
        // Nothing left on the alarm means it fired: the time ran out and the
        // connect was interrupted.
        unsigned remaining = ::alarm(0);
        if (seconds > 0 && remaining == 0)
            throw SocketConnectionTimedOut(std::string(failure.what()) + ": timed out");
        throw;
    }
    ::alarm(0);
}

void Socket::Shutdown(int how) {
    CheckOpen();
    if (::shutdown(GetFd(), how) == -1) throw ErrnoError("Socket: error shutting down socket");
}

std::size_t Socket::Recv(void* buffer, std::size_t length, int flags) {
    CheckOpen();
    ssize_t n = ::recv(GetFd(), buffer, length, flags);
    if (n == -1) throw ErrnoError("Socket: error in Recv");
    return static_cast<std::size_t>(n);
}

std::size_t Socket::RecvFrom(void* buffer, std::size_t length, int flags, SocketAddress* from) {
    CheckOpen();
    if (!from) return Recv(buffer, length, flags);
    socklen_t address_length = SocketAddress::Capacity();
    *from = SocketAddress();
    ssize_t n = ::recvfrom(GetFd(), buffer, length, flags, from->GetSockAddr(), &address_length);
    if (n == -1) throw ErrnoError("Socket: error in RecvFrom");
    return static_cast<std::size_t>(n);
}

std::size_t Socket::Send(const void* data, std::size_t length, int flags) {
    CheckOpen();
    ssize_t n = ::send(GetFd(), data, length, flags);
    if (n == -1) throw ErrnoError("Socket: error in Send");
    return static_cast<std::size_t>(n);
}

std::size_t Socket::SendTo(const void* data, std::size_t length, int flags,
                           const SocketAddress& to) {
    CheckOpen();
    ssize_t n = ::sendto(GetFd(), data, length, flags, to.GetSockAddr(), to.GetLength());
    if (n == -1) throw ErrnoError("Socket: error in SendTo");
    return static_cast<std::size_t>(n);
}

void Socket::GetPeerName(SocketAddress* out) {
    CheckOpen();
    if (!out) return;
    socklen_t length = SocketAddress::Capacity();
    *out = SocketAddress();
    if (::getpeername(GetFd(), out->GetSockAddr(), &length) == -1)
        throw ErrnoError("Socket: getpeername error");
}

void Socket::GetSockName(SocketAddress* out) {
    CheckOpen();
    if (!out) return;
    socklen_t length = SocketAddress::Capacity();
    *out = SocketAddress();
    if (::getsockname(GetFd(), out->GetSockAddr(), &length) == -1)
        throw ErrnoError("Socket: getsockname error");
}
