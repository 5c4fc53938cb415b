#include "common/durable_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace {

bool WriteAll(int fd, const std::string& text) {
    std::string::size_type done = 0;
    while (done < text.size()) {
        const ssize_t written = ::write(fd, text.data() + done, text.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        done += static_cast<std::string::size_type>(written);
    }
    return true;
}

bool WriteAndSync(const std::string& path, const std::string& text) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return false;
    const bool written = WriteAll(fd, text) && ::fsync(fd) == 0;
    return ::close(fd) == 0 && written;
}

// A folder's entries last only once the folder itself is flushed.
void SyncFolderOf(const std::string& path) {
    const std::string::size_type slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

}  // namespace

bool WriteFileDurably(const std::string& path, const std::string& text) {
    const std::string temporary = path + ".new";
    if (!WriteAndSync(temporary, text) || ::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    SyncFolderOf(path);
    return true;
}
