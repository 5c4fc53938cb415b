#ifndef BOREALIS_DISCOVERY_BONJOUR_RESOLVER_H
#define BOREALIS_DISCOVERY_BONJOUR_RESOLVER_H

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "borealis/discovery/bonjour_client.h"

// Everything known about one resolved service.
struct HostInfo {
    std::string name, type, domain;
    std::uint32_t interface_index = 0;
    std::string host;
    unsigned short port = 0;
    TxtMap txt;
    std::set<SocketAddress> addresses;  // with the service's port
};

// A listener that collects the services a browse resolves, one record per
// service name, and drops a record when its service goes away.
class BonjourResolver : public BonjourClientListener {
public:
    // Adds the address to the service's record, making the record when it is
    // the first; sets the changed flag.
    void ServiceResolved(const std::string& name, const std::string& type,
                         const std::string& domain, std::uint32_t interface_index,
                         const std::string& host, const SocketAddress& address,
                         const TxtMap& txt) override;
    // Drops the record of service `name`, if any, and sets the changed flag.
    void ServiceRemoved(const std::string& name, const std::string& type,
                        const std::string& domain) override;

    // The records, in the order their services were first resolved.
    const std::vector<boost::shared_ptr<HostInfo>>& Hosts() const { return hosts_; }
    // The record of service `name`; null when there is none.
    boost::shared_ptr<HostInfo> Find(const std::string& name) const;
    // True when a record was added, grown or dropped since the flag was cleared.
    bool Changed() const { return changed_; }
    void ClearChanged() { changed_ = false; }

private:
    std::vector<boost::shared_ptr<HostInfo>> hosts_;
    bool changed_ = false;
};

#endif
