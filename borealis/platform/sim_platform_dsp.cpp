// The simulated signal-processor device and CPLD clock requests.
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "borealis/platform/sim_platform.h"
#include "common/errno_error.h"

namespace {

const char kCpldDirectory[] = "/sys/devices/platform/io4410/";

int ConnectSeqPacket(const std::string& path) {
    const std::string failure = "StreamFile: Unable to open " + path;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) throw ErrnoError(failure, ENAMETOOLONG);
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    int fd = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
    if (fd < 0) throw ErrnoError(failure);
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        int error = errno;
        ::close(fd);
        throw ErrnoError(failure, error);
    }
    return fd;
}

// Writes `text` as the whole content of `path`; a failure is reported with
// the request's own message.
void WriteRequestFile(const std::string& path, const std::string& text, const char* failure) {
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) throw ErrnoError(failure);
    ssize_t written = ::write(fd, text.data(), text.size());
    int error = written < 0 ? errno : (static_cast<std::size_t>(written) != text.size() ? EIO : 0);
    if (::close(fd) != 0 && !error) error = errno;
    if (error) throw ErrnoError(failure, error);
}

}  // namespace

int SimPlatform::OpenDevice(const std::string& path) { return ConnectSeqPacket(Path(path)); }

void SimPlatform::StartCpldClock(int) {
    WriteRequestFile(Path(std::string(kCpldDirectory) + "clock_start"), "1",
                     "Unable to start CPLD clock");
}

void SimPlatform::SetClockYz(int, std::uint32_t value) {
    WriteRequestFile(Path(std::string(kCpldDirectory) + "clock_yz"), std::to_string(value),
                     "Unable to set CPLD clock_yz register");
}
