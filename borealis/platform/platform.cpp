#include "borealis/platform/platform.h"

#include <limits.h>
#include <sys/stat.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "borealis/platform/linux_platform.h"
#include "borealis/platform/sim_platform.h"

namespace {

// The value of the environment variable `name`; empty when unset.
std::string Environment(const char* name) {
    const char* text = std::getenv(name);
    return text ? text : "";
}

bool IsDirectory(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

std::string Absolute(const std::string& path) {
    char* absolute = ::realpath(path.c_str(), nullptr);
    if (!absolute) return path;
    std::string result = absolute;
    std::free(absolute);
    return result;
}

unsigned short ParsePort(const std::string& text) {
    if (text.empty()) return 4410;
    char* end = nullptr;
    long port = std::strtol(text.c_str(), &end, 10);
    if (*end || port < 1 || port > 65535)
        throw std::runtime_error("Invalid BOREALIS_PORT: " + text);
    return static_cast<unsigned short>(port);
}

}  // namespace

std::unique_ptr<Platform> Platform::FromEnvironment() {
    const std::string root = Environment("BOREALIS_ROOT");
    if (root.empty() || !IsDirectory(root)) return std::make_unique<LinuxPlatform>();
    const std::string netif = Environment("BOREALIS_NETIF");
    return std::make_unique<SimPlatform>(Absolute(root), ParsePort(Environment("BOREALIS_PORT")),
                                         netif.empty() ? "lo" : netif);
}
