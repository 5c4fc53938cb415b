#ifndef BOREALIS_PLATFORM_LINUX_PLATFORM_H
#define BOREALIS_PLATFORM_LINUX_PLATFORM_H

#include "borealis/platform/platform.h"

// The analyzer itself: real paths, devices and system calls.
class LinuxPlatform : public Platform {
public:
    std::string Path(const std::string& path) const override { return path; }
    unsigned short Port() const override { return 4410; }
    std::string InterfaceName(const std::string& name) const override { return name; }

    // Leaves the lines with the host's syslog.
    void RouteSyslog(SysLog&) const override {}

    // --- The devices read from the poll loop, and the programmable logic ---
    int OpenDevice(const std::string& path) override;
    void StartCpldClock(int fd) override;
    void SetClockYz(int fd, std::uint32_t value) override;

    // --- Clocks and local time ---
    void SetSystemTime(std::int64_t seconds, long microseconds) override;
    void SetHardwareClock(const std::string& device, std::int64_t seconds) override;
    // The library reads /etc/localtime by itself while TZ is unset: tzset.
    void FollowLocalTimeFile() override;

    // --- Mirror and heater device ---
    // The character device, opened once for writing (truncating) and once
    // for reading; each status read is one read of the device.
    std::unique_ptr<MirrorHeaterDevice> OpenMirror(const std::string& path) override;

    // --- Privileged actions ---
    void AsSuperUser(const std::function<void()>& work) override;
    void Reboot() override;
};

#endif
