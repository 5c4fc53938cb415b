#include "sim/device_socket.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <vector>

#include "sim/unix_socket.h"

DeviceSocket::DeviceSocket(EventLoop& loop, const std::string& path)
    : loop_(loop), path_(path), listener_(ListenUnix(path, SOCK_SEQPACKET)) {
    loop_.Watch(listener_, POLLIN, [this](short) { Accept(); });
}

DeviceSocket::~DeviceSocket() {
    if (peer_ >= 0) {
        loop_.Forget(peer_);
        ::close(peer_);
    }
    loop_.Forget(listener_);
    ::close(listener_);
    ::unlink(path_.c_str());
}

void DeviceSocket::Accept() {
    int fd = AcceptUnix(listener_);
    if (fd < 0) return;
    if (peer_ >= 0) Close();
    peer_ = fd;
    loop_.Watch(peer_, POLLIN, [this](short) { Receive(); });
    std::cout << "vela-sim: " << path_ << " opened" << std::endl;
    if (handlers_.opened) handlers_.opened();
}

void DeviceSocket::Receive() {
    // The daemon's largest write is its whole transmit queue of 8192 words.
    std::vector<char> buffer(65536);
    ssize_t got = ::recv(peer_, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (got <= 0) {
        Close();
        return;
    }
    if (handlers_.packet) handlers_.packet(std::string(buffer.data(), static_cast<std::size_t>(got)));
}

void DeviceSocket::Close() {
    loop_.Forget(peer_);
    ::close(peer_);
    peer_ = -1;
    std::cout << "vela-sim: " << path_ << " closed" << std::endl;
    if (handlers_.closed) handlers_.closed();
}

bool DeviceSocket::Send(const std::string& packet) {
    if (peer_ < 0) return false;
    ssize_t sent = ::send(peer_, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent >= 0) return true;
    // A full queue loses the packet, as a driver's full buffer would; a
    // broken connection is noticed here or by the next read.
    if (errno != EAGAIN && errno != EINTR) Close();
    return false;
}
