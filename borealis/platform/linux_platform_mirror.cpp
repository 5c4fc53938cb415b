// The mirror and heater device on the analyzer: a character device.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

#include "borealis/platform/linux_platform.h"
#include "common/errno_error.h"
#include "common/stream_file.h"

namespace {

class MirrorCharacterDevice : public MirrorHeaterDevice {
public:
    // The device is not created when missing: a plain file under /dev would
    // swallow every command without a word.
    explicit MirrorCharacterDevice(const std::string& path) : path_(path) {
        int out = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
        if (out >= 0) out_.SetFd(out);
        int in = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (in >= 0) in_.SetFd(in);
        if (out < 0 || in < 0) throw std::runtime_error("Unable to open device: " + path);
    }

    void WriteLine(const std::string& line) override {
        ssize_t written = ::write(out_.GetFd(), line.data(), line.size());
        if (written < 0) throw ErrnoError("Unable to write to device " + path_);
        if (static_cast<std::size_t>(written) != line.size())
            throw ErrnoError("Unable to write to device " + path_, EIO);
    }

    // The driver answers every read with the motor's current value.
    bool ReadStatus(std::int16_t& status) override {
        char text[32];
        ssize_t count = ::read(in_.GetFd(), text, sizeof text);
        return count > 0 && ParseMotorStatus(std::string(text, count), status);
    }

private:
    std::string path_;
    StreamFileBase out_;
    StreamFileBase in_;
};

}  // namespace

std::unique_ptr<MirrorHeaterDevice> LinuxPlatform::OpenMirror(const std::string& path) {
    return std::make_unique<MirrorCharacterDevice>(path);
}
