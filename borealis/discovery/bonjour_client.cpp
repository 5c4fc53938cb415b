#include "borealis/discovery/bonjour_client.h"

#include <cstdlib>

#include <arpa/inet.h>
#include <dns_sd.h>

#include <map>

#include "borealis/discovery/bonjour_service_ref.h"

namespace {

// The texts of the library's error codes; -65546 has none.
const std::map<std::int32_t, const char*>& ErrorTexts() {
    static const std::map<std::int32_t, const char*> texts = {
        {kDNSServiceErr_NoError, "Success"},
        {kDNSServiceErr_Unknown, "Unknown Error"},
        {kDNSServiceErr_NoSuchName, "No Such Name"},
        {kDNSServiceErr_NoMemory, "Out Of Memory"},
        {kDNSServiceErr_BadParam, "Bad Parameter"},
        {kDNSServiceErr_BadReference, "Bad Reference"},
        {kDNSServiceErr_BadState, "Bad State"},
        {kDNSServiceErr_BadFlags, "Bad Flags"},
        {kDNSServiceErr_Unsupported, "Unsupported"},
        {kDNSServiceErr_NotInitialized, "Not Initialized"},
        {kDNSServiceErr_AlreadyRegistered, "Already Registered"},
        {kDNSServiceErr_NameConflict, "Name Conflict"},
        {kDNSServiceErr_Invalid, "Invalid"},
        {kDNSServiceErr_Firewall, "Firewall"},
        {kDNSServiceErr_Incompatible, "Incompatible"},
        {kDNSServiceErr_BadInterfaceIndex, "Bad Interface Index"},
        {kDNSServiceErr_Refused, "Refused"},
        {kDNSServiceErr_NoSuchRecord, "No Such Record"},
        {kDNSServiceErr_NoAuth, "No Authorization"},
        {kDNSServiceErr_NoSuchKey, "No Such Key"},
        {kDNSServiceErr_NATTraversal, "NAT Traversal"},
        {kDNSServiceErr_DoubleNAT, "Double NAT"},
        {kDNSServiceErr_BadTime, "Bad Time"},
    };
    return texts;
}

const char kOutOfResources[] = ": Out of resources";

}  // namespace

BonjourClient::BonjourClient(BonjourClientListener* listener) : listener_(listener) {
    // The responder's compatibility library would otherwise print a warning
    // on standard error (and so into syslog) at its first use.
    ::setenv("AVAHI_COMPAT_NOWARN", "1", 0);
    ErrorTexts();
    for (std::size_t i = 0; i < kPoolSize; ++i)
        pool_.push_back(std::make_unique<BonjourServiceRef>(*this));
}

BonjourClient::~BonjourClient() = default;

void BonjourClient::Reset() {
    for (auto& slot : pool_) slot->Release();
}

BonjourServiceRef* BonjourClient::FreeSlot() {
    for (auto& slot : pool_)
        if (slot->IsFree()) return slot.get();
    return nullptr;
}

void BonjourClient::Register(const std::string& name, const std::string& type,
                             const std::string& domain, unsigned short port, const TxtMap& txt) {
    const std::string prefix = "Unable to register service: " + name;
    BonjourServiceRef* slot = FreeSlot();
    if (!slot) return Report(prefix + kOutOfResources, true);
    const std::string record = EncodeTxtRecord(txt);
    const DNSServiceErrorType result = DNSServiceRegister(
        slot->Reference(), 0, 0, name.c_str(), type.c_str(), domain.c_str(), nullptr, htons(port),
        static_cast<std::uint16_t>(record.size()), record.data(),
        &BonjourClientEventProcessor::OnRegister, slot->Context());
    slot->Started(result);
    ReportCode(prefix, result, true);
}

void BonjourClient::Browse(const std::string& type, const std::string& domain) {
    const std::string prefix = "Unable to browse for service: " + type;
    BonjourServiceRef* slot = FreeSlot();
    if (!slot) return Report(prefix + kOutOfResources, true);
    const DNSServiceErrorType result =
        DNSServiceBrowse(slot->Reference(), 0, 0, type.c_str(), domain.c_str(),
                         &BonjourClientEventProcessor::OnBrowse, slot->Context());
    slot->Started(result);
    ReportCode(prefix, result, true);
}

void BonjourClient::Resolve(std::uint32_t interface_index, const std::string& name,
                            const std::string& type, const std::string& domain) {
    BonjourServiceRef* slot = FreeSlot();
    if (!slot) return Report(std::string("Error browsing") + kOutOfResources, false);
    auto service = std::make_shared<BonjourService>();
    service->name = name;
    service->type = type;
    service->domain = domain;
    const DNSServiceErrorType result =
        DNSServiceResolve(slot->Reference(), 0, interface_index, name.c_str(), type.c_str(),
                          domain.c_str(), &BonjourClientEventProcessor::OnResolve, slot->Context());
    slot->Started(result, service);
    ReportCode("Error resolving", result, false);
}

void BonjourClient::QueryAddresses(std::uint32_t interface_index,
                                   const std::shared_ptr<BonjourService>& service) {
    for (std::uint16_t record_type : {kDNSServiceType_A, kDNSServiceType_AAAA}) {
        BonjourServiceRef* slot = FreeSlot();
        if (!slot) return Report(std::string("Error resolving") + kOutOfResources, false);
        const DNSServiceErrorType result = DNSServiceQueryRecord(
            slot->Reference(), 0, interface_index, service->host.c_str(), record_type,
            kDNSServiceClass_IN, &BonjourClientEventProcessor::OnQuery, slot->Context());
        slot->Started(result, service);
        ReportCode("Error querying", result, false);
    }
}

void BonjourClient::Reconfirm(const std::string& record_name, const std::string& address_text) {
    const std::string prefix = "Unable to confirm: " + record_name;
    in_addr address;
    if (::inet_pton(AF_INET, address_text.c_str(), &address) != 1)
        return Report(prefix + ": Invalid IP address: " + address_text, true);
    ReportCode(prefix,
               DNSServiceReconfirmRecord(0, 0, record_name.c_str(), kDNSServiceType_A,
                                         kDNSServiceClass_IN, sizeof address, &address),
               true);
}

void BonjourClient::Report(const std::string& message, bool throw_allowed) {
    if (listener_ && listener_->HandleError(message) && throw_allowed) throw Error(message);
}

void BonjourClient::ReportCode(const std::string& prefix, std::int32_t code, bool throw_allowed) {
    if (code == kDNSServiceErr_NoError) return;
    const auto text = ErrorTexts().find(code);
    Report(text == ErrorTexts().end() ? prefix : prefix + ": " + text->second, throw_allowed);
}
