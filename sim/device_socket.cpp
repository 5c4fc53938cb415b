#include "sim/device_socket.h"

#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>

#include "sim/unix_socket.h"

namespace {

// How long waiting packets may find the daemon not reading before they are
// given up.
constexpr std::int64_t kStallNs = 10'000'000'000;
// How often the daemon's progress through what it was sent is looked at.
constexpr std::int64_t kReadCheckNs = 200'000;

}  // namespace

DeviceSocket::DeviceSocket(EventLoop& loop, const std::string& path)
    : loop_(loop),
      path_(path),
      listener_(ListenUnix(path, SOCK_SEQPACKET)),
      stall_timer_(loop, [this] { Stalled(); }),
      read_timer_(loop, [this] { CheckRead(); }) {
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
    loop_.Watch(peer_, POLLIN, [this](short revents) { Serve(revents); });
    std::cout << "vela-sim: " << path_ << " opened" << std::endl;
    if (handlers_.opened) handlers_.opened();
}

void DeviceSocket::Serve(short revents) {
    if (revents & POLLOUT) Flush();
    if (peer_ >= 0 && (revents & (POLLIN | POLLHUP | POLLERR))) Receive();
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
    if (handlers_.packet)
        handlers_.packet(std::string(buffer.data(), static_cast<std::size_t>(got)));
}

void DeviceSocket::Close() {
    loop_.Forget(peer_);
    ::close(peer_);
    peer_ = -1;
    std::cout << "vela-sim: " << path_ << " closed" << std::endl;
    if (!waiting_.empty())
        Finish(std::to_string(waiting_.size()) + " frames lost: " + path_ + " closed");
    FinishRead(path_ + " closed");
    if (handlers_.closed) handlers_.closed();
}

bool DeviceSocket::Send(const std::string& packet) {
    if (peer_ < 0) return false;
    if (keep_every_packet_) {
        if (waiting_.empty()) stall_timer_.StartAt(MonotonicNs() + kStallNs);
        waiting_.push_back(packet);
        ++queued_;
        Flush();
        return true;
    }
    ssize_t sent = ::send(peer_, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent >= 0) return true;
    // A full queue loses the packet, as a driver's full buffer would; a
    // broken connection is noticed here or by the next read.
    if (errno != EAGAIN && errno != EINTR) Close();
    return false;
}

void DeviceSocket::Flush() {
    while (peer_ >= 0 && !waiting_.empty()) {
        const std::string& packet = waiting_.front();
        ssize_t sent = ::send(peer_, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent < 0 && (errno == EAGAIN || errno == EINTR)) {
            loop_.SetEvents(peer_, POLLIN | POLLOUT);
            return;
        }
        if (sent < 0) {
            Close();
            return;
        }
        waiting_.pop_front();
        ++left_;
        stall_timer_.StartAt(MonotonicNs() + kStallNs);
        while (!sent_handlers_.empty() && sent_handlers_.front().first <= left_) {
            SentHandler handler = std::move(sent_handlers_.front().second);
            sent_handlers_.pop_front();
            handler("");
        }
    }
    if (peer_ >= 0) loop_.SetEvents(peer_, POLLIN);
    if (waiting_.empty()) Finish("");
}

void DeviceSocket::WhenSent(SentHandler sent) {
    if (waiting_.empty())
        sent("");
    else
        sent_handlers_.emplace_back(queued_, std::move(sent));
}

bool DeviceSocket::AllRead() const {
    // What the daemon has not read yet still counts against our sending side.
    int unread = 0;
    return waiting_.empty() &&
           (peer_ < 0 || (::ioctl(peer_, SIOCOUTQ, &unread) == 0 && unread == 0));
}

void DeviceSocket::WhenRead(SentHandler read) {
    if (AllRead()) {
        read("");
        return;
    }
    read_handlers_.push_back(std::move(read));
    read_deadline_ns_ = MonotonicNs() + kStallNs;
    read_timer_.StartAt(MonotonicNs() + kReadCheckNs);
}

void DeviceSocket::CheckRead() {
    if (AllRead())
        FinishRead("");
    else if (MonotonicNs() >= read_deadline_ns_)
        FinishRead("the daemon left what it was sent on " + path_ + " unread for 10 s");
    else
        read_timer_.StartAt(MonotonicNs() + kReadCheckNs);
}

void DeviceSocket::FinishRead(const std::string& error) {
    read_timer_.Stop();
    std::vector<SentHandler> handlers;
    handlers.swap(read_handlers_);
    for (SentHandler& handler : handlers) handler(error);
}

void DeviceSocket::Stalled() {
    if (waiting_.empty()) return;
    Finish(std::to_string(waiting_.size()) + " frames lost: the daemon read nothing from " + path_ +
           " for 10 s");
}

void DeviceSocket::Finish(const std::string& error) {
    left_ += waiting_.size();
    waiting_.clear();
    stall_timer_.Stop();
    std::deque<std::pair<std::uint64_t, SentHandler>> handlers;
    handlers.swap(sent_handlers_);
    for (auto& entry : handlers) entry.second(error);
}
