#include "borealis/platform/platform.h"

#include <limits.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "borealis/platform/linux_platform.h"
#include "borealis/platform/sim_platform.h"

namespace {

bool IsDirectory(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

unsigned short PortFromEnvironment() {
    const char* text = std::getenv("BOREALIS_PORT");
    if (!text || !*text) return 4410;
    char* end = nullptr;
    long port = std::strtol(text, &end, 10);
    if (*end || port < 1 || port > 65535)
        throw std::runtime_error(std::string("Invalid BOREALIS_PORT: ") + text);
    return static_cast<unsigned short>(port);
}

}  // namespace

Platform& Platform::Get() {
    // Chosen again whenever the environment changes, so that a process (a
    // test) can move to another simulated root.
    static std::unique_ptr<Platform> platform;
    static std::string chosen_root;
    static std::string chosen_port;
    const char* root_env = std::getenv("BOREALIS_ROOT");
    const char* port_env = std::getenv("BOREALIS_PORT");
    std::string root = root_env ? root_env : "";
    std::string port = port_env ? port_env : "";
    if (platform && root == chosen_root && port == chosen_port) return *platform;
    if (!root.empty() && IsDirectory(root)) {
        // Absolute, because a daemon changes to "/" when it detaches.
        char* absolute = ::realpath(root.c_str(), nullptr);
        if (absolute) {
            root = absolute;
            std::free(absolute);
        }
        platform.reset(new SimPlatform(root, PortFromEnvironment()));
    } else {
        platform.reset(new LinuxPlatform);
    }
    chosen_root = root_env ? root_env : "";
    chosen_port = port;
    return *platform;
}
