#ifndef BOREALIS_SYSTEM_INTERFACE_STATUS_H
#define BOREALIS_SYSTEM_INTERFACE_STATUS_H

#include <cstddef>
#include <stdexcept>
#include <string>

#include "common/socket.h"

class Platform;

// A failure while looking at the network interfaces: the message, ": " and
// the system's text for the error number.
class NetworkError : public std::runtime_error {
public:
    NetworkError(const std::string& message, int error_number);
};

// What the kernel says about one network interface at the time it is made.
// A missing or down interface is not present and keeps every start value.
class NetworkInterfaceInfo {
public:
    // Asks the kernel about the host interface that stands for `name` on
    // `platform`, and the platform's interface folder about its bridge.
    // Throws ErrnoError when no socket can be made for the requests, and
    // NetworkError when a port's interface folder cannot be listed.
    NetworkInterfaceInfo(const Platform& platform, const std::string& name);

    std::string name;
    bool present = false;  // exists and is up
    unsigned index = 0;    // kernel interface index
    bool running = false;  // has carrier
    bool has_address = false;
    SocketAddress address{AF_INET};  // the IPv4 any-address when none
    std::string hardware_address;    // "00:1a:2b:3c:4d:5e"; empty when none
    bool is_bridge = false;
    bool is_bridge_port = false;
    std::string bridge;  // the bridge this interface is a port of

private:
    void ReadRequests(int fd, const std::string& host_name);
    void FindBridge(const Platform& platform);
};

// The host's name; empty when it cannot be read.
std::string GetHostName();
// The text of a host name buffer of `size` bytes, cut to `size` - 1
// characters when it holds no terminator.
std::string HostNameFromBuffer(char* buffer, std::size_t size);

// Reads the bridge id of interface `name` into `id`; false when it has none,
// that is when the interface is not a bridge.
bool ReadBridgeId(const Platform& platform, const std::string& name, std::string& id);
// The bridge's topology change timer and detected flag; 0 when unreadable.
int TopologyChangeTimer(const Platform& platform, const std::string& bridge);
int TopologyChangeDetected(const Platform& platform, const std::string& bridge);

#endif
