// The network reset button's device on the analyzer.
#include <fcntl.h>

#include <cerrno>

#include "borealis/platform/linux_platform.h"
#include "common/errno_error.h"

int LinuxPlatform::OpenNetButton(const std::string& path) {
    int fd = ::open(path.c_str(), O_RDWR);
    // errno is taken before the message is built: building it allocates.
    if (fd < 0) {
        int error = errno;
        throw ErrnoError("StreamFile: Unable to open " + path, error);
    }
    return fd;
}
