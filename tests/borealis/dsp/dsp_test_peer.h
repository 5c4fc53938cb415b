#ifndef TESTS_BOREALIS_DSP_DSP_TEST_PEER_H
#define TESTS_BOREALIS_DSP_DSP_TEST_PEER_H

// The signal processor's side of the simulated device: a SOCK_SEQPACKET
// socket listening at <root>/dev/dsp4410, and helpers to build frames, run
// the poll loop with a deadline and capture standard output.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/poll_processor.h"
#include "tests/support/temp_root.h"

using Bytes = std::vector<std::uint8_t>;

// A frame as the driver delivers it: arrival time, code, length, payload.
inline Bytes Frame(std::uint16_t cmd, const std::vector<std::uint16_t>& words,
                   std::uint32_t seconds = 0, std::uint32_t nanoseconds = 0) {
    Bytes bytes;
    auto put16 = [&](std::uint16_t v) {
        bytes.push_back(v & 0xFF);
        bytes.push_back(v >> 8);
    };
    put16(seconds & 0xFFFF);
    put16(seconds >> 16);
    put16(nanoseconds & 0xFFFF);
    put16(nanoseconds >> 16);
    put16(cmd);
    put16(static_cast<std::uint16_t>(words.size()));
    for (auto w : words) put16(w);
    return bytes;
}

inline Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// Runs the poll loop until `done` holds; false when the deadline passed.
inline bool PumpUntil(const std::function<bool()>& done,
                      std::chrono::milliseconds deadline = std::chrono::seconds(10)) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        PollProcessor::Instance().Poll(10);
    }
    return true;
}

class DspPeer {
public:
    explicit DspPeer(const TempRoot& root) {
        const std::string path = root / "/dev/dsp4410";
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        listen_fd_ = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
        if (listen_fd_ < 0 ||
            ::bind(listen_fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(listen_fd_, 1) != 0)
            throw std::runtime_error("cannot listen at " + path);
    }
    ~DspPeer() {
        if (fd_ >= 0) ::close(fd_);
        ::close(listen_fd_);
    }
    // Takes the device's connection (after the device was made).
    void Accept() {
        fd_ = ::accept(listen_fd_, nullptr, nullptr);
        if (fd_ < 0) throw std::runtime_error("accept failed");
    }
    // One packet: what one read of the device returns.
    void Send(const Bytes& packet) {
        if (::send(fd_, packet.data(), packet.size(), 0) != static_cast<ssize_t>(packet.size()))
            throw std::runtime_error("send failed");
    }
    // One packet written by the device, running the loop meanwhile; empty
    // when none came before the deadline.
    Bytes Receive() {
        Bytes packet(65536);
        ssize_t n = -1;
        PumpUntil([&] { return (n = ::recv(fd_, packet.data(), packet.size(), MSG_DONTWAIT)) >= 0; });
        packet.resize(n < 0 ? 0 : n);
        return packet;
    }

private:
    int listen_fd_ = -1;
    int fd_ = -1;
};

// Captures what is printed on standard output while it lives.
class CaptureStdout {
public:
    CaptureStdout() : saved_(std::cout.rdbuf(text_.rdbuf())) {}
    ~CaptureStdout() { std::cout.rdbuf(saved_); }
    std::string Text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf* saved_;
};

#endif
