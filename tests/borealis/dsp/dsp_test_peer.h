#ifndef TESTS_BOREALIS_DSP_DSP_TEST_PEER_H
#define TESTS_BOREALIS_DSP_DSP_TEST_PEER_H

// The signal processor's side of the simulated device: a SOCK_SEQPACKET
// socket listening at <root>/dev/dsp4410, and frames as the driver delivers
// them.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/pump.h"
#include "tests/support/temp_root.h"

using Bytes = std::vector<std::uint8_t>;

// A frame as the driver delivers it: arrival time, code, length, payload,
// every word little-endian.
inline Bytes Frame(std::uint16_t cmd, const std::vector<std::uint16_t>& words,
                   std::uint32_t seconds = 0, std::uint32_t nanoseconds = 0) {
    std::vector<std::uint16_t> all = {
        static_cast<std::uint16_t>(seconds), static_cast<std::uint16_t>(seconds >> 16),
        static_cast<std::uint16_t>(nanoseconds), static_cast<std::uint16_t>(nanoseconds >> 16),
        cmd, static_cast<std::uint16_t>(words.size())};
    all.insert(all.end(), words.begin(), words.end());
    Bytes bytes;
    for (std::uint16_t w : all) bytes.insert(bytes.end(), {std::uint8_t(w & 0xFF), std::uint8_t(w >> 8)});
    return bytes;
}

inline Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
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

#endif
