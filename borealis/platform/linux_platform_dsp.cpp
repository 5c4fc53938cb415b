// The devices read from the poll loop and the CPLD clock requests on the analyzer.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>

#include "borealis/platform/linux_platform.h"
#include "borealis/platform/root_rights.h"
#include "common/errno_error.h"

namespace {

// Request numbers of the signal-processor driver for its CPLD.
const unsigned long kStartCpldClockRequest = 0x8008DE01ul;  // reads 8 bytes
const unsigned long kSetClockYzRequest = 0x4004DE02ul;      // writes 4 bytes

void Request(int fd, unsigned long request, void* argument, const char* failure) {
    int error = 0;
    {
        RootRights root;
        if (::ioctl(fd, request, argument) < 0) error = errno;
    }
    if (error) throw ErrnoError(failure, error);
}

}  // namespace

int LinuxPlatform::OpenDevice(const std::string& path) {
    int fd = ::open(path.c_str(), O_RDWR);
    // errno is taken before the message is built: building it allocates.
    if (fd < 0) {
        int error = errno;
        throw ErrnoError("StreamFile: Unable to open " + path, error);
    }
    return fd;
}

void LinuxPlatform::StartCpldClock(int fd) {
    unsigned char answer[8] = {};  // the driver fills it; nothing uses it
    Request(fd, kStartCpldClockRequest, answer, "Unable to start CPLD clock");
}

void LinuxPlatform::SetClockYz(int fd, std::uint32_t value) {
    Request(fd, kSetClockYzRequest, &value, "Unable to set CPLD clock_yz register");
}
