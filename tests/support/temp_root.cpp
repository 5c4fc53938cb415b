#include "tests/support/temp_root.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <netinet/in.h>
#include <sys/socket.h>

TempRoot::TempRoot(bool simulate) {
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/borealis-test-XXXXXX";
    if (!::mkdtemp(&pattern[0])) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
    if (simulate) {
        for (const char* dir : {"/etc", "/dev", "/var/run", "/var/log"})
            MakeDirectories(path_ + dir);
    }
}

TempRoot::~TempRoot() {
    std::string command = "rm -rf '" + path_ + "'";
    if (std::system(command.c_str()) != 0) {
        // Left behind in the temporary folder; nothing else to do.
    }
}

std::string TempRoot::operator/(const std::string& relative) const {
    return path_ + (relative.empty() || relative[0] == '/' ? "" : "/") + relative;
}

void MakeDirectories(const std::string& path) {
    for (std::size_t pos = 1; pos != std::string::npos;) {
        pos = path.find('/', pos + 1);
        ::mkdir(path.substr(0, pos).c_str(), 0755);
    }
}

void TempRoot::WriteFile(const std::string& relative, const std::string& content) const {
    std::string path = *this / relative;
    MakeDirectories(path.substr(0, path.rfind('/')));
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
    if (!out) throw std::runtime_error("cannot write " + path);
}

std::string TempRoot::ReadFile(const std::string& relative) const {
    std::ifstream in(*this / relative, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

unsigned short UniqueTestPort() {
    // Let the kernel pick a free port, then give it back for the test to use.
    int fd = ::socket(AF_INET6, SOCK_STREAM, 0);
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    socklen_t length = sizeof address;
    if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw std::runtime_error("cannot find a free port");
    ::close(fd);
    return ntohs(address.sin6_port);
}
