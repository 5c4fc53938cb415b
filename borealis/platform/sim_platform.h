#ifndef BOREALIS_PLATFORM_SIM_PLATFORM_H
#define BOREALIS_PLATFORM_SIM_PLATFORM_H

#include <string>

#include "borealis/platform/platform.h"

// A simulated analyzer under a root directory: every system path lives
// below the root, the devices are sockets played by the simulator, and
// privileged actions are logged instead of done to the host.
class SimPlatform : public Platform {
public:
    // `root` is an absolute directory; `netif` is the host interface that
    // plays the analyzer's bridge "br0".
    SimPlatform(const std::string& root, unsigned short port, const std::string& netif = "lo");

    std::string Path(const std::string& path) const override { return root_ + path; }
    unsigned short Port() const override { return port_; }
    // "br0" becomes the host interface given at construction; other names
    // stay as they are.
    std::string InterfaceName(const std::string& name) const override;

    // Each line goes as one datagram to the socket <root>/dev/log when
    // something listens there, otherwise to the host's syslog.
    void RouteSyslog(SysLog& syslog) const override;

    // --- The devices read from the poll loop, and the programmable logic ---
    // A device is a SOCK_SEQPACKET socket under the root, played by the
    // simulator (one packet per read or write of the driver); the CPLD
    // requests become writes of decimal text to files under
    // <root>/sys/devices/platform/io4410/.
    int OpenDevice(const std::string& path) override;
    void StartCpldClock(int fd) override;
    void SetClockYz(int fd, std::uint32_t value) override;

    // --- Clocks and local time ---
    // The host's clocks are left alone: the lines "settime <seconds>
    // <microseconds>" and "rtc <YYYY-MM-DD HH:MM:SS>" (UTC) are logged as
    // privileged actions instead.
    void SetSystemTime(std::int64_t seconds, long microseconds) override;
    void SetHardwareClock(const std::string& device, std::int64_t seconds) override;
    // Local time follows <root>/etc/localtime: TZ names that file.
    void FollowLocalTimeFile() override;

    // --- Mirror and heater device ---
    // A SOCK_SEQPACKET socket under the root, played by the simulator: each
    // command line is one packet; a status read sends the packet "?" and
    // takes the answer packet, and no answer within 100 ms is a failed read.
    std::unique_ptr<MirrorHeaterDevice> OpenMirror(const std::string& path) override;

    // --- Privileged actions ---
    // Nothing is done to the host: the effective user is left alone, and
    // actions on the system are appended as lines to
    // <root>/var/log/platform-actions.log.
    void AsSuperUser(const std::function<void()>& work) override { work(); }
    // Flushes the file systems and logs "reboot".
    void Reboot() override;

    // Appends `line` and a newline to the log of privileged actions.
    void LogAction(const std::string& line) const;

private:
    std::string root_;
    unsigned short port_;
    std::string netif_;
};

#endif
