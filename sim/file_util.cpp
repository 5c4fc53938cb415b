#include "sim/file_util.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <sstream>

#include "common/errno_error.h"

void MakeFolders(const std::string& path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        std::string folder = path.substr(0, end);
        if (::mkdir(folder.c_str(), 0755) != 0 && errno != EEXIST)
            throw ErrnoError("vela-sim: cannot make " + folder);
        if (end == std::string::npos) return;
    }
}

void WriteNewFile(const std::string& path, const std::string& content, mode_t mode) {
    MakeFolders(path.substr(0, path.rfind('/')));
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (fd < 0) {
        if (errno == EEXIST) return;
        throw ErrnoError("vela-sim: cannot write " + path);
    }
    std::size_t done = 0;
    while (done < content.size()) {
        ssize_t wrote = ::write(fd, content.data() + done, content.size() - done);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote < 0) {
            int error = errno;
            ::close(fd);
            throw ErrnoError("vela-sim: cannot write " + path, error);
        }
        done += static_cast<std::size_t>(wrote);
    }
    // The mode given to open is narrowed by the umask; the init script
    // must stay executable.
    ::fchmod(fd, mode);
    ::close(fd);
}

bool ReadWholeFile(const std::string& path, std::string& content) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream text;
    text << in.rdbuf();
    content = text.str();
    return true;
}

bool IsFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}
