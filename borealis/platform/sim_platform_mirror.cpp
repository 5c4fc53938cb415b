// The simulated mirror and heater device: a SOCK_SEQPACKET socket played by
// the simulator.
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>

#include "borealis/platform/sim_platform.h"
#include "common/errno_error.h"
#include "common/stream_file.h"

namespace {

const std::chrono::milliseconds kStatusTimeout(100);

int ConnectSeqPacket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return -1;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    int fd = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (fd >= 0 &&
        ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

class MirrorSocket : public MirrorHeaterDevice {
public:
    explicit MirrorSocket(const std::string& path) : path_(path) {
        int fd = ConnectSeqPacket(path);
        if (fd < 0) throw std::runtime_error("Unable to open device: " + path);
        socket_.SetFd(fd);
    }

    // Never waits: a simulator that stops reading makes the write fail
    // instead of stalling the daemon. A vanished peer gives EPIPE, not
    // SIGPIPE.
    void WriteLine(const std::string& line) override {
        if (!Send(line)) throw ErrnoError("Unable to write to device " + path_);
    }

    bool ReadStatus(std::int16_t& status) override {
        // An answer that came after an earlier read gave up would otherwise
        // be taken for the answer to this one.
        char packet[64];
        while (::recv(socket_.GetFd(), packet, sizeof packet, MSG_DONTWAIT) > 0) {
        }
        if (!Send("?") || !WaitForAnswer()) return false;
        ssize_t count = ::recv(socket_.GetFd(), packet, sizeof packet, MSG_DONTWAIT);
        return count > 0 && ParseMotorStatus(std::string(packet, count), status);
    }

private:
    bool Send(const std::string& packet) {
        // A packet goes whole or not at all.
        return ::send(socket_.GetFd(), packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL) ==
               static_cast<ssize_t>(packet.size());
    }

    // True when an answer is ready within the time-out; a signal does not
    // shorten the wait.
    bool WaitForAnswer() {
        using Clock = std::chrono::steady_clock;
        const Clock::time_point deadline = Clock::now() + kStatusTimeout;
        for (;;) {
            auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
            pollfd item{socket_.GetFd(), POLLIN, 0};
            int ready = ::poll(&item, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
            if (ready > 0) return (item.revents & POLLIN) != 0;
            if (ready == 0 || errno != EINTR) return false;
        }
    }

    std::string path_;
    StreamFileBase socket_;
};

}  // namespace

std::unique_ptr<MirrorHeaterDevice> SimPlatform::OpenMirror(const std::string& path) {
    return std::make_unique<MirrorSocket>(Path(path));
}
