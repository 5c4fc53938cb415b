#include "borealis/system/network_settings.h"

#include "borealis/platform/platform.h"
#include "borealis/system/system_file.h"

NetworkSettings::NetworkSettings(Platform& platform, const std::string& interface_name,
                                 const std::string& host_name_file,
                                 const std::string& interfaces_file)
    : platform_(platform),
      interface_name_(interface_name),
      host_name_file_(host_name_file),
      interfaces_file_(interfaces_file) {
    Reload();
}

void NetworkSettings::Reload() {
    host_name_ = ReadFirstLine(platform_.Path(host_name_file_)).value_or("ch4-xxxx");
    host_name_changed_ = false;
    ReadInterfaces();
    interface_changed_ = false;
}

void NetworkSettings::ReadInterfaces() {
    const auto text = ReadTextFile(platform_.Path(interfaces_file_));
    config_ = ReadInterfaceConfig(text.value_or(""), interface_name_);
}

void NetworkSettings::Update(const std::string& host_name, bool dhcp, const SocketAddress& address,
                             const SocketAddress& netmask, const SocketAddress& gateway) {
    if (host_name != host_name_) {
        host_name_ = host_name;
        host_name_changed_ = true;
    }
    const InterfaceConfig updated{dhcp, address, netmask, gateway};
    if (updated.dhcp != config_.dhcp || updated.address != config_.address ||
        updated.netmask != config_.netmask || updated.gateway != config_.gateway) {
        config_ = updated;
        interface_changed_ = true;
    }
    Apply();
}

void NetworkSettings::SetDhcp() {
    if (!config_.dhcp) {
        config_.dhcp = true;
        interface_changed_ = true;
    }
    Apply();
}

void NetworkSettings::Apply() {
    if (host_name_changed_) {
        platform_.AsSuperUser([&] {
            WriteTextFile(platform_.Path(host_name_file_), host_name_ + "\n");
            host_name_changed_ = false;
        });
    }
    if (interface_changed_) {
        platform_.AsSuperUser([&] {
            WriteInterfaces();
            interface_changed_ = false;
        });
    }
}

// The file is replaced, never rewritten in place: the system may read it
// at any time.
void NetworkSettings::WriteInterfaces() {
    const std::string path = platform_.Path(interfaces_file_);
    const auto text = ReadTextFile(path);
    ReplaceFile(path, WriteInterfaceConfig(text.value_or(""), interface_name_, config_));
}
