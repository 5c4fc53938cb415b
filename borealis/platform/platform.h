#ifndef BOREALIS_PLATFORM_PLATFORM_H
#define BOREALIS_PLATFORM_PLATFORM_H

#include <string>

// The narrow interface between the daemon and the analyzer's board: the
// paths it names, its devices, its privileged actions and its port. The
// analyzer uses LinuxPlatform; when the environment variable BOREALIS_ROOT
// names a directory, SimPlatform stands in for the board under that root.
class Platform {
public:
    virtual ~Platform() = default;

    // The platform for the current environment.
    static Platform& Get();

    // Where the absolute system path `path` (for example "/etc/vela.conf")
    // is found.
    virtual std::string Path(const std::string& path) const = 0;
    // The TCP port of the daemon.
    virtual unsigned short Port() const = 0;
    // True when the board's hardware is simulated.
    virtual bool IsSimulated() const = 0;

    // The host network interface that stands for the analyzer's interface
    // `name` in kernel interface requests.
    virtual std::string InterfaceName(const std::string& name) const = 0;
};

#endif
