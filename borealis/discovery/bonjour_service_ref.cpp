#include "borealis/discovery/bonjour_service_ref.h"

#include <arpa/inet.h>
#include <poll.h>

#include <cstring>

#include "borealis/discovery/bonjour_client.h"

namespace {

BonjourClientEventProcessor& Processor(void* context) {
    return *static_cast<BonjourClientEventProcessor*>(context);
}

}  // namespace

void BonjourClientEventProcessor::OnRegister(DNSServiceRef, DNSServiceFlags,
                                             DNSServiceErrorType error, const char* name,
                                             const char* type, const char* domain, void* context) {
    Processor(context).RegisterReplied(error, name, type, domain);
}

void BonjourClientEventProcessor::OnBrowse(DNSServiceRef, DNSServiceFlags flags,
                                           std::uint32_t interface_index, DNSServiceErrorType error,
                                           const char* name, const char* type, const char* domain,
                                           void* context) {
    Processor(context).BrowseReplied(flags, interface_index, error, name, type, domain);
}

void BonjourClientEventProcessor::OnResolve(DNSServiceRef, DNSServiceFlags flags,
                                            std::uint32_t interface_index,
                                            DNSServiceErrorType error, const char*,
                                            const char* host, std::uint16_t port,
                                            std::uint16_t txt_length, const unsigned char* txt,
                                            void* context) {
    Processor(context).ResolveReplied(flags, interface_index, error, host, ntohs(port), txt,
                                      txt_length);
}

void BonjourClientEventProcessor::OnQuery(DNSServiceRef, DNSServiceFlags,
                                          std::uint32_t interface_index, DNSServiceErrorType error,
                                          const char*, std::uint16_t record_type, std::uint16_t,
                                          std::uint16_t length, const void* data, std::uint32_t,
                                          void* context) {
    Processor(context).QueryReplied(interface_index, error, record_type, data, length);
}

BonjourServiceRef::BonjourServiceRef(BonjourClient& client)
    : PollItem(POLLIN, false), client_(client) {}

BonjourServiceRef::~BonjourServiceRef() {
    processing_ = false;
    Release();
}

void BonjourServiceRef::Started(DNSServiceErrorType result,
                                std::shared_ptr<BonjourService> service) {
    if (result != kDNSServiceErr_NoError) {
        ref_ = nullptr;  // the library leaves it undefined
        return;
    }
    service_ = std::move(service);
    Register();
}

void BonjourServiceRef::Release() {
    if (processing_) {
        // The library is still inside this reference's reply.
        release_pending_ = true;
        return;
    }
    release_pending_ = false;
    // Out of the loop first: deallocating closes the socket.
    Unregister();
    if (ref_) DNSServiceRefDeallocate(ref_);
    ref_ = nullptr;
    service_.reset();
}

int BonjourServiceRef::GetFd() { return ref_ ? DNSServiceRefSockFD(ref_) : -1; }

void BonjourServiceRef::HandleRead() {
    if (!ref_) return;
    processing_ = true;
    const DNSServiceErrorType result = DNSServiceProcessResult(ref_);
    processing_ = false;
    if (release_pending_) Release();
    if (result != kDNSServiceErr_NoError) Failed("Unable to process result", result);
}

void BonjourServiceRef::Failed(const char* what, DNSServiceErrorType error) {
    Release();
    client_.ReportCode(what, error, false);
}

void BonjourServiceRef::RegisterReplied(DNSServiceErrorType error, const char* name,
                                        const char* type, const char* domain) {
    if (error != kDNSServiceErr_NoError) return Failed("Error registering", error);
    if (client_.listener()) client_.listener()->ServiceRegistered(name, type, domain);
}

void BonjourServiceRef::BrowseReplied(DNSServiceFlags flags, std::uint32_t interface_index,
                                      DNSServiceErrorType error, const char* name, const char* type,
                                      const char* domain) {
    if (error != kDNSServiceErr_NoError) return Failed("Error browsing", error);
    if (flags & kDNSServiceFlagsAdd)
        client_.Resolve(interface_index, name, type, domain);
    else if (client_.listener())
        client_.listener()->ServiceRemoved(name, type, domain);
}

void BonjourServiceRef::ResolveReplied(DNSServiceFlags flags, std::uint32_t interface_index,
                                       DNSServiceErrorType error, const char* host,
                                       std::uint16_t port, const unsigned char* txt,
                                       std::uint16_t txt_length) {
    if (error != kDNSServiceErr_NoError) return Failed("Error resolving", error);
    service_->host = host;
    service_->port = port;
    service_->txt = DecodeTxtRecord(txt, txt_length);
    client_.QueryAddresses(interface_index, service_);
    // The addresses are the queries' business now.
    if (!(flags & kDNSServiceFlagsMoreComing)) Release();
}

void BonjourServiceRef::QueryReplied(std::uint32_t interface_index, DNSServiceErrorType error,
                                     std::uint16_t record_type, const void* data,
                                     std::uint16_t length) {
    if (error != kDNSServiceErr_NoError) return Failed("Error querying", error);
    SocketAddress address;
    if (record_type == kDNSServiceType_A && length >= sizeof(in_addr)) {
        in_addr ipv4;
        std::memcpy(&ipv4, data, sizeof ipv4);
        address = SocketAddress(ipv4);
    } else if (record_type == kDNSServiceType_AAAA && length >= sizeof(in6_addr)) {
        in6_addr ipv6;
        std::memcpy(&ipv6, data, sizeof ipv6);
        address = SocketAddress(ipv6);
        address.SetScopeId(interface_index);
    } else {
        return;
    }
    address.SetPort(service_->port);
    if (client_.listener())
        client_.listener()->ServiceResolved(service_->name, service_->type, service_->domain,
                                            interface_index, service_->host, address,
                                            service_->txt);
}
