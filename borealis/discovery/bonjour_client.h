#ifndef BOREALIS_DISCOVERY_BONJOUR_CLIENT_H
#define BOREALIS_DISCOVERY_BONJOUR_CLIENT_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "borealis/discovery/txt_record.h"
#include "common/socket.h"

// What a BonjourClient reports, from inside the poll loop. Every operation
// does nothing by default. Replies come from inside the DNS-SD library, so
// no callback may throw.
class BonjourClientListener {
public:
    virtual ~BonjourClientListener() = default;
    // A browsed service was resolved and one of its addresses found;
    // `address` carries the service's port.
    virtual void ServiceResolved(const std::string& /*name*/, const std::string& /*type*/,
                                 const std::string& /*domain*/, std::uint32_t /*interface_index*/,
                                 const std::string& /*host*/, const SocketAddress& /*address*/,
                                 const TxtMap& /*txt*/) {}
    // A browsed service went away.
    virtual void ServiceRemoved(const std::string& /*name*/, const std::string& /*type*/,
                                const std::string& /*domain*/) {}
    // The responder announced a registration, under the name it actually used.
    virtual void ServiceRegistered(const std::string& /*name*/, const std::string& /*type*/,
                                   const std::string& /*domain*/) {}
    // A failure, as text; returning true asks for it to be thrown where the
    // operation allows that. The default keeps every failure silent.
    virtual bool HandleError(const std::string& /*message*/) { return false; }
};

class BonjourServiceRef;
struct BonjourService;

// The daemon's client of the system's mDNS responder: every outstanding
// DNS-SD operation runs on one of a fixed pool of slots, each polled by the
// poll loop, so that replies are processed without threads.
class BonjourClient {
public:
    // A failure thrown because the listener asked for it.
    class Error : public std::runtime_error {
    public:
        explicit Error(const std::string& message) : std::runtime_error(message) {}
    };

    // The number of operations that can be outstanding at once.
    static constexpr std::size_t kPoolSize = 100;

    // An empty pool reporting to `listener` (not owned; may be null).
    explicit BonjourClient(BonjourClientListener* listener);
    // Ends every operation, withdrawing every registration.
    ~BonjourClient();
    BonjourClient(const BonjourClient&) = delete;
    BonjourClient& operator=(const BonjourClient&) = delete;

    // Ends every operation at once: registrations are withdrawn, browses and
    // the lookups they started stop, and all slots are free. Never fails.
    void Reset();
    // Announces service `name` (empty: the responder's choice) of `type` in
    // `domain` on `port` on every interface, with `txt` as its TXT record.
    // Failures are reported with "Unable to register service: " + name (the
    // listener may have them thrown), a later refusal with "Error registering".
    void Register(const std::string& name, const std::string& type, const std::string& domain,
                  unsigned short port, const TxtMap& txt);
    // Browses for services of `type` in `domain`; each one found is resolved
    // and its addresses looked up, each address reported by ServiceResolved.
    // Failures are reported with "Unable to browse for service: " + type (the
    // listener may have them thrown), later ones without throwing.
    void Browse(const std::string& type, const std::string& domain);
    // Asks the responder to verify the IPv4 address record `record_name` ->
    // `address_text` (dotted decimal). Failures are reported with "Unable to
    // confirm: " + record_name; the listener may have them thrown.
    void Reconfirm(const std::string& record_name, const std::string& address_text);

    // Tells the listener about a failure; throws Error(message) when the
    // listener returns true and `throw_allowed` is set. Nothing without a
    // listener.
    void Report(const std::string& message, bool throw_allowed);
    // Nothing for code 0; otherwise reports prefix + ": " + the code's text,
    // or the prefix alone for a code without text.
    void ReportCode(const std::string& prefix, std::int32_t code, bool throw_allowed);

private:
    friend class BonjourServiceRef;

    BonjourServiceRef* FreeSlot();
    // Starts resolving a service found by a browse on `interface_index`.
    void Resolve(std::uint32_t interface_index, const std::string& name, const std::string& type,
                 const std::string& domain);
    // Starts the A and AAAA queries for the host of a resolved service.
    void QueryAddresses(std::uint32_t interface_index,
                        const std::shared_ptr<BonjourService>& service);
    BonjourClientListener* listener() const { return listener_; }

    BonjourClientListener* listener_;
    std::vector<std::unique_ptr<BonjourServiceRef>> pool_;
};

#endif
