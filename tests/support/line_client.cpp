#include "tests/support/line_client.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

LineClient::LineClient(unsigned short port, int receive_buffer) {
    fd_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (receive_buffer > 0)
        ::setsockopt(fd_, SOL_SOCKET, SO_RCVBUF, &receive_buffer, sizeof receive_buffer);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

LineClient::~LineClient() {
    if (fd_ >= 0) ::close(fd_);
}

unsigned short LineClient::LocalPort() const {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    if (fd_ < 0 || ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return 0;
    return ntohs(address.sin_port);
}

std::size_t LineClient::Unacknowledged() const {
    int bytes = 0;
    if (fd_ < 0 || ::ioctl(fd_, SIOCOUTQ, &bytes) != 0) return 0;
    return static_cast<std::size_t>(bytes);
}

void LineClient::ShutdownSending() {
    if (fd_ >= 0) ::shutdown(fd_, SHUT_WR);
}

void LineClient::Send(const std::string& text) {
    for (std::size_t sent = 0; fd_ >= 0 && sent < text.size();) {
        ssize_t n = ::send(fd_, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (n <= 0) return;
        sent += static_cast<std::size_t>(n);
    }
}

// Reads what arrives before `end`; false when nothing more can come.
bool LineClient::Fill(std::chrono::steady_clock::time_point end) {
    if (fd_ < 0 || closed_) return false;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd entry{fd_, POLLIN, 0};
    if (::poll(&entry, 1, static_cast<int>(left.count())) != 1) return false;
    char chunk[65536];
    ssize_t n = ::recv(fd_, chunk, sizeof chunk, 0);
    if (n <= 0) {
        closed_ = true;
        return false;
    }
    buffer_.append(chunk, static_cast<std::size_t>(n));
    return true;
}

std::string LineClient::ReadLine(std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    std::size_t newline;
    while ((newline = buffer_.find('\n')) == std::string::npos)
        if (!Fill(end)) return "";
    std::string line = buffer_.substr(0, newline + 1);
    buffer_.erase(0, newline + 1);
    return line;
}

std::string LineClient::ReadLineStartingWith(const std::string& prefix,
                                             std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        std::string line = ReadLine(std::max(left, std::chrono::milliseconds(0)));
        if (line.empty() || line.rfind(prefix, 0) == 0) return line;
    }
}

bool LineClient::WaitClosed(std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    buffer_.clear();
    while (Fill(end)) buffer_.clear();
    return closed_;
}

bool WaitForGreeting(unsigned short port, std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (std::chrono::steady_clock::now() < end) {
        LineClient client(port);
        if (client.Connected() && !client.ReadLine(std::chrono::seconds(5)).empty()) {
            // Leaves without a reset (which the daemon would report), once
            // the daemon has let the connection go.
            client.ShutdownSending();
            client.WaitClosed(std::chrono::seconds(5));
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}
