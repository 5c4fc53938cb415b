#ifndef BOREALIS_PLATFORM_PLATFORM_H
#define BOREALIS_PLATFORM_PLATFORM_H

#include <cstdint>
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

    // --- Signal-processor device and the clock of its programmable logic ---

    // Opens the signal-processor device named by the system path `path`
    // (normally "/dev/dsp4410") for reading and writing and returns the
    // descriptor, which the caller owns. Throws ErrnoError
    // ("StreamFile: Unable to open " + the path used).
    virtual int OpenDsp(const std::string& path) = 0;
    // Starts the CPLD clock through the open device `fd`, with root rights.
    // Throws ErrnoError("Unable to start CPLD clock").
    virtual void StartCpldClock(int fd) = 0;
    // Writes `value` into the CPLD register clock_yz through the open device
    // `fd`, with root rights. Throws ErrnoError("Unable to set CPLD clock_yz
    // register").
    virtual void SetClockYz(int fd, std::uint32_t value) = 0;
};

#endif
