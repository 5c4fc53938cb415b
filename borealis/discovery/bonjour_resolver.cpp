#include "borealis/discovery/bonjour_resolver.h"

#include <algorithm>

void BonjourResolver::ServiceResolved(const std::string& name, const std::string& type,
                                      const std::string& domain, std::uint32_t interface_index,
                                      const std::string& host, const SocketAddress& address,
                                      const TxtMap& txt) {
    boost::shared_ptr<HostInfo> info = Find(name);
    if (!info) {
        info.reset(new HostInfo);
        info->name = name;
        hosts_.push_back(info);
    }
    // The latest resolve tells where the service is now.
    info->type = type;
    info->domain = domain;
    info->interface_index = interface_index;
    info->host = host;
    info->port = address.GetPort();
    info->txt = txt;
    info->addresses.insert(address);
    changed_ = true;
}

void BonjourResolver::ServiceRemoved(const std::string& name, const std::string&,
                                     const std::string&) {
    hosts_.erase(
        std::remove_if(hosts_.begin(), hosts_.end(),
                       [&](const boost::shared_ptr<HostInfo>& info) { return info->name == name; }),
        hosts_.end());
    changed_ = true;
}

boost::shared_ptr<HostInfo> BonjourResolver::Find(const std::string& name) const {
    for (const auto& info : hosts_)
        if (info->name == name) return info;
    return nullptr;
}
