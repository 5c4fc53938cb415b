#ifndef BOREALIS_PLATFORM_PLATFORM_H
#define BOREALIS_PLATFORM_PLATFORM_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "borealis/platform/mirror_heater_device.h"

class SysLog;

// The narrow interface between the daemon and the analyzer's board: the
// paths it names, its devices, its privileged actions, its port and its
// syslog. The analyzer uses LinuxPlatform; SimPlatform stands in for the
// board under a root directory. `main` builds the one platform and hands it
// to the objects that reach the board; nothing else asks which one it is.
class Platform {
public:
    virtual ~Platform() = default;

    // The platform this process's environment asks for, read once:
    // SimPlatform under BOREALIS_ROOT when that names a directory (made
    // absolute, as a daemon changes to "/" when it detaches), with the port
    // BOREALIS_PORT (default 4410) and the bridge's host interface
    // BOREALIS_NETIF (default "lo"); otherwise LinuxPlatform. Throws
    // std::runtime_error("Invalid BOREALIS_PORT: " + text) for a port that is
    // no number from 1 to 65535.
    static std::unique_ptr<Platform> FromEnvironment();

    // --- Names ---

    // Where the absolute system path `path` (for example "/etc/vela.conf")
    // is found.
    virtual std::string Path(const std::string& path) const = 0;
    // The TCP port of the daemon.
    virtual unsigned short Port() const = 0;
    // The host network interface that stands for the analyzer's interface
    // `name` in kernel interface requests.
    virtual std::string InterfaceName(const std::string& name) const = 0;

    // --- Syslog ---

    // Makes `syslog` deliver its lines to this platform's syslog. Call it
    // once the identity is set; it never fails.
    virtual void RouteSyslog(SysLog& syslog) const = 0;

    // --- The devices read from the poll loop, and the programmable logic ---

    // Opens the device named by the system path `path` (the signal processor
    // "/dev/dsp4410", the network reset button "/dev/net_btn") for reading
    // and writing and returns the descriptor, which the caller owns. Throws
    // ErrnoError("StreamFile: Unable to open " + the path used).
    virtual int OpenDevice(const std::string& path) = 0;
    // Starts the CPLD clock through the open device `fd`, with root rights.
    // Throws ErrnoError("Unable to start CPLD clock").
    virtual void StartCpldClock(int fd) = 0;
    // Writes `value` into the CPLD register clock_yz through the open device
    // `fd`, with root rights. Throws ErrnoError("Unable to set CPLD clock_yz
    // register").
    virtual void SetClockYz(int fd, std::uint32_t value) = 0;

    // --- Clocks and local time ---

    // Sets the system clock to `seconds` since the epoch and `microseconds`;
    // call it with root rights. Throws ErrnoError("Unable to set system
    // time").
    virtual void SetSystemTime(std::int64_t seconds, long microseconds) = 0;
    // Sets the battery-backed clock `device` (a system path such as
    // "/dev/rtc0") to the UTC time of `seconds`; call it with root rights.
    // Throws ErrnoError("Unable to open clock device: " + device) or
    // ErrnoError("Unable to set hardware clock").
    virtual void SetHardwareClock(const std::string& device, std::int64_t seconds) = 0;
    // Makes local time follow the installed zone file "/etc/localtime" and
    // has the C library read it again now: call it at start and after the
    // file was replaced. It never fails.
    virtual void FollowLocalTimeFile() = 0;

    // --- Mirror and heater device ---

    // Opens the mirror and heater device named by the system path `path`
    // (normally "/dev/mirror4410"); the caller owns the result. Throws
    // std::runtime_error("Unable to open device: " + the path used).
    virtual std::unique_ptr<MirrorHeaterDevice> OpenMirror(const std::string& path) = 0;

    // --- Privileged actions ---

    // Runs `work` with root rights and gives the former effective user back
    // on every path out. Throws std::runtime_error("Unable to gain super
    // user priviledges: " + the system's text) when the rights cannot be
    // had; an exception of `work` passes through.
    virtual void AsSuperUser(const std::function<void()>& work) = 0;
    // Flushes the file systems and asks the system to restart (process 1
    // gets SIGTERM).
    virtual void Reboot() = 0;
};

#endif
