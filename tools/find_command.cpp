#include <net/if.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "borealis/discovery/bonjour_client.h"
#include "borealis/discovery/bonjour_resolver.h"
#include "common/poll_processor.h"
#include "tools/commands.h"
#include "tools/stop_request.h"
#include "tools/vela_error.h"

namespace {

const char kServiceType[] = "_norvance-vela._tcp";

// A resolver that keeps the failures, so that a missing responder is told.
class AnalyzerFinder : public BonjourResolver {
public:
    bool HandleError(const std::string& message) override {
        errors.push_back(message);
        return false;
    }
    std::vector<std::string> errors;
};

// An address as text; a link-local IPv6 address with its interface.
std::string AddressText(const SocketAddress& address) {
    std::string text = address.ToString();
    if (address.GetFamily() == AF_INET6) {
        const auto* ipv6 = reinterpret_cast<const sockaddr_in6*>(address.GetSockAddr());
        char interface[IF_NAMESIZE];
        if (ipv6->sin6_scope_id && ::if_indextoname(ipv6->sin6_scope_id, interface))
            text += std::string("%") + interface;
    }
    return text;
}

// One analyzer on one line, fields separated by tabs: name, host, addresses
// (separated by commas, IPv4 first), port, then each TXT entry as key=value.
std::string Describe(const HostInfo& info) {
    std::string addresses;
    for (const auto& address : info.addresses)
        addresses += (addresses.empty() ? "" : ",") + AddressText(address);
    std::string line =
        info.name + "\t" + info.host + "\t" + addresses + "\t" + std::to_string(info.port);
    for (const auto& entry : info.txt) line += "\t" + entry.first + "=" + entry.second;
    return line;
}

}  // namespace

int RunFind(const VelaOptions& options) {
    // Avahi's compatibility library warns on standard error at its first use.
    ::setenv("AVAHI_COMPAT_NOWARN", "1", 0);
    const int timeout_ms = options.TimeoutMs(3);
    AnalyzerFinder finder;
    BonjourClient client(&finder);
    client.Browse(kServiceType, "local");
    if (!finder.errors.empty())
        throw CannotConnect("cannot browse for analyzers: " + finder.errors.front() +
                            " (is an mDNS responder such as avahi-daemon running?)");
    std::cerr << "vela: looking for analyzers for " << timeout_ms / 1000.0 << " s" << std::endl;
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    for (auto now = std::chrono::steady_clock::now(); now < end && !StopRequested();
         now = std::chrono::steady_clock::now())
        PollProcessor::Instance().Poll(static_cast<std::int32_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(end - now).count()));
    for (const auto& host : finder.Hosts()) std::cout << Describe(*host) << "\n";
    if (finder.Hosts().empty()) throw VelaError("no analyzer found");
    return kExitOk;
}
