#ifndef BOREALIS_PLATFORM_SIM_PLATFORM_H
#define BOREALIS_PLATFORM_SIM_PLATFORM_H

#include <string>

#include "borealis/platform/platform.h"

// A simulated analyzer under a root directory: every system path lives
// below the root, the devices are sockets played by the simulator, and
// privileged actions are logged instead of done to the host.
class SimPlatform : public Platform {
public:
    SimPlatform(const std::string& root, unsigned short port);

    std::string Path(const std::string& path) const override { return root_ + path; }
    unsigned short Port() const override { return port_; }
    bool IsSimulated() const override { return true; }

    // The bridge "br0" is played by the host interface named in
    // BOREALIS_NETIF, by default the loopback interface.
    std::string InterfaceName(const std::string& name) const override;

    const std::string& Root() const { return root_; }

    // --- Signal-processor device and the clock of its programmable logic ---
    // The device is a SOCK_SEQPACKET socket under the root, played by the
    // simulator; the CPLD requests become writes of decimal text to files
    // under <root>/sys/devices/platform/io4410/.
    int OpenDsp(const std::string& path) override;
    void StartCpldClock(int fd) override;
    void SetClockYz(int fd, std::uint32_t value) override;

private:
    std::string root_;
    unsigned short port_;
};

#endif
