#include "sim/control_server.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "sim/unix_socket.h"

namespace {

// A client that sends this much without a line end is cut off.
constexpr std::size_t kMaxLine = 65536;

}  // namespace

ControlServer::ControlServer(EventLoop& loop, const std::string& path, Executor executor)
    : loop_(loop),
      path_(path),
      listener_(ListenUnix(path, SOCK_STREAM)),
      executor_(std::move(executor)) {
    loop_.Watch(listener_, POLLIN, [this](short) { Accept(); });
}

ControlServer::~ControlServer() {
    while (!clients_.empty()) Drop(clients_.begin()->first);
    loop_.Forget(listener_);
    ::close(listener_);
    ::unlink(path_.c_str());
}

void ControlServer::Accept() {
    int fd = AcceptUnix(listener_);
    if (fd < 0) return;
    Client client;
    client.serial = next_serial_++;
    clients_[fd] = client;
    loop_.Watch(fd, POLLIN, [this, fd](short revents) { Serve(fd, revents); });
}

void ControlServer::Serve(int fd, short revents) {
    auto found = clients_.find(fd);
    if (found == clients_.end()) return;
    Client& client = found->second;
    if (revents & (POLLIN | POLLHUP | POLLERR)) Read(fd, client);
    RunCommands(fd);
    // Reading or a command may have dropped the client.
    found = clients_.find(fd);
    if (found != clients_.end()) Write(fd, found->second);
}

void ControlServer::Read(int fd, Client& client) {
    if (client.ending) return;
    char buffer[4096];
    ssize_t got = ::recv(fd, buffer, sizeof buffer, MSG_DONTWAIT);
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (got <= 0) {
        client.ending = true;
        return;
    }
    client.input.append(buffer, static_cast<std::size_t>(got));
    const std::size_t last_end = client.input.rfind('\n');
    const std::size_t tail =
        client.input.size() - (last_end == std::string::npos ? 0 : last_end + 1);
    if (tail > kMaxLine) {
        client.input.resize(client.input.size() - tail);
        client.too_long = true;
        client.ending = true;
    }
}

void ControlServer::RunCommands(int fd) {
    for (auto found = clients_.find(fd); found != clients_.end(); found = clients_.find(fd)) {
        Client& client = found->second;
        if (client.waiting) return;
        const std::size_t end = client.input.find('\n');
        if (end == std::string::npos) {
            if (client.too_long) client.output += "error: line too long\n";
            client.too_long = false;
            return;
        }
        std::string line = client.input.substr(0, end);
        client.input.erase(0, end + 1);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        client.waiting = true;
        const unsigned long serial = client.serial;
        executor_(line,
                  [this, fd, serial](const std::string& answer) { Answered(fd, serial, answer); });
    }
}

void ControlServer::Answered(int fd, unsigned long serial, const std::string& answer) {
    auto found = clients_.find(fd);
    if (found == clients_.end() || found->second.serial != serial) return;  // gone meanwhile
    found->second.output += answer;
    found->second.waiting = false;
    // Written, and the client's next command run, when the loop serves it.
    loop_.SetEvents(fd, POLLOUT);
}

void ControlServer::Write(int fd, Client& client) {
    if (!client.output.empty()) {
        ssize_t sent =
            ::send(fd, client.output.data(), client.output.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN && errno != EINTR) {
            Drop(fd);
            return;
        }
        if (sent > 0) client.output.erase(0, static_cast<std::size_t>(sent));
    }
    const bool lines_left = client.input.find('\n') != std::string::npos;
    if (client.ending && client.output.empty() && !client.waiting && !lines_left) {
        Drop(fd);
        return;
    }
    short events = client.ending ? 0 : POLLIN;
    if (!client.output.empty()) events |= POLLOUT;
    loop_.SetEvents(fd, events);
}

void ControlServer::Drop(int fd) {
    loop_.Forget(fd);
    ::close(fd);
    clients_.erase(fd);
}
