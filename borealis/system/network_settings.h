#ifndef BOREALIS_SYSTEM_NETWORK_SETTINGS_H
#define BOREALIS_SYSTEM_NETWORK_SETTINGS_H

#include <string>

#include "borealis/system/interfaces_file.h"
#include "common/socket.h"

class Platform;

// The analyzer's host name and the IPv4 settings of its interface, as the
// system's own files hold them. Changes are written to those files and take
// effect when the system next brings the interface up; no network tool is
// started.
class NetworkSettings {
public:
    // Reads the host-name and interfaces files (system paths, found through
    // `platform`). Never fails.
    explicit NetworkSettings(Platform& platform, const std::string& interface_name = "br0",
                             const std::string& host_name_file = "/etc/hostname",
                             const std::string& interfaces_file = "/etc/network/interfaces");

    // Reads both files again and forgets unwritten changes; a file that
    // cannot be read leaves its defaults ("ch4-xxxx", InterfaceConfig). Never
    // fails.
    void Reload();
    // Reads the interface's settings from the interfaces file. Never fails.
    void ReadInterfaces();
    // Stores each value that differs from the stored one and writes the
    // files of what changed (Apply). Throws as Apply.
    void Update(const std::string& host_name, bool dhcp, const SocketAddress& address,
                const SocketAddress& netmask, const SocketAddress& gateway);
    // Switches the interface to DHCP and writes the interfaces file when it
    // was static (the network reset). Throws as Apply.
    void SetDhcp();
    // With root rights, writes the host-name file and the interfaces file
    // when their values changed; a file that cannot be written is given up
    // without a message. Throws std::runtime_error when root rights cannot
    // be had, and the changes stay pending then.
    void Apply();

    const std::string& host_name() const { return host_name_; }
    const InterfaceConfig& config() const { return config_; }

private:
    void WriteInterfaces();

    Platform& platform_;
    std::string interface_name_;
    std::string host_name_file_;
    std::string interfaces_file_;
    std::string host_name_;
    InterfaceConfig config_;
    bool host_name_changed_ = false;
    bool interface_changed_ = false;
};

#endif
