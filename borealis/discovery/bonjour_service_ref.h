#ifndef BOREALIS_DISCOVERY_BONJOUR_SERVICE_REF_H
#define BOREALIS_DISCOVERY_BONJOUR_SERVICE_REF_H

#include <dns_sd.h>

#include <cstdint>
#include <memory>
#include <string>

#include "borealis/discovery/txt_record.h"
#include "common/poll_item.h"

class BonjourClient;

// A service found by a browse, as far as it is known: what the browse
// reported, then what resolving it gave. Shared by its resolve and its
// address queries, and freed with the last of them.
struct BonjourService {
    std::string name, type, domain;
    std::string host;
    unsigned short port = 0;
    TxtMap txt;
};

// The replies of DNS-SD operations. The library calls the static callbacks
// with the processor as context; they hand each reply on unchanged.
class BonjourClientEventProcessor {
public:
    virtual ~BonjourClientEventProcessor() = default;

    virtual void RegisterReplied(DNSServiceErrorType error, const char* name, const char* type,
                                 const char* domain) = 0;
    virtual void BrowseReplied(DNSServiceFlags flags, std::uint32_t interface_index,
                               DNSServiceErrorType error, const char* name, const char* type,
                               const char* domain) = 0;
    // `port` in host byte order.
    virtual void ResolveReplied(DNSServiceFlags flags, std::uint32_t interface_index,
                                DNSServiceErrorType error, const char* host, std::uint16_t port,
                                const unsigned char* txt, std::uint16_t txt_length) = 0;
    virtual void QueryReplied(std::uint32_t interface_index, DNSServiceErrorType error,
                              std::uint16_t record_type, const void* data,
                              std::uint16_t length) = 0;

    // The library's callbacks; `context` is a BonjourClientEventProcessor*.
    static void DNSSD_API OnRegister(DNSServiceRef, DNSServiceFlags, DNSServiceErrorType error,
                                     const char* name, const char* type, const char* domain,
                                     void* context);
    static void DNSSD_API OnBrowse(DNSServiceRef, DNSServiceFlags flags,
                                   std::uint32_t interface_index, DNSServiceErrorType error,
                                   const char* name, const char* type, const char* domain,
                                   void* context);
    static void DNSSD_API OnResolve(DNSServiceRef, DNSServiceFlags flags,
                                    std::uint32_t interface_index, DNSServiceErrorType error,
                                    const char* full_name, const char* host, std::uint16_t port,
                                    std::uint16_t txt_length, const unsigned char* txt,
                                    void* context);
    static void DNSSD_API OnQuery(DNSServiceRef, DNSServiceFlags, std::uint32_t interface_index,
                                  DNSServiceErrorType error, const char* full_name,
                                  std::uint16_t record_type, std::uint16_t record_class,
                                  std::uint16_t length, const void* data, std::uint32_t ttl,
                                  void* context);
};

// One slot of a BonjourClient's pool: free while it holds no DNS-SD
// reference; busy, and polled on the reference's socket, while an operation
// runs on it.
class BonjourServiceRef : public PollItem, public BonjourClientEventProcessor {
public:
    // A free slot of `client`.
    explicit BonjourServiceRef(BonjourClient& client);
    // Ends the operation, if any.
    ~BonjourServiceRef() override;

    bool IsFree() const { return ref_ == nullptr; }
    // Where an operation's library call stores its reference.
    DNSServiceRef* Reference() { return &ref_; }
    // The context to hand the library with this slot's callbacks.
    void* Context() { return static_cast<BonjourClientEventProcessor*>(this); }
    // After the library call that started an operation: with `result` 0 the
    // slot is busy, polled and keeps `service`; otherwise it stays free.
    void Started(DNSServiceErrorType result, std::shared_ptr<BonjourService> service = nullptr);
    // Ends the operation (a registration is withdrawn) and frees the slot;
    // while one of its replies is being processed, as soon as that is done.
    // Never fails.
    void Release();

    // The reference's socket; -1 when free.
    int GetFd() override;
    // Processes one reply; a failure releases the slot and is reported
    // without throwing.
    void HandleRead() override;
    const char* GetName() override { return "BonjourServiceRef"; }

    void RegisterReplied(DNSServiceErrorType error, const char* name, const char* type,
                         const char* domain) override;
    void BrowseReplied(DNSServiceFlags flags, std::uint32_t interface_index,
                       DNSServiceErrorType error, const char* name, const char* type,
                       const char* domain) override;
    void ResolveReplied(DNSServiceFlags flags, std::uint32_t interface_index,
                        DNSServiceErrorType error, const char* host, std::uint16_t port,
                        const unsigned char* txt, std::uint16_t txt_length) override;
    void QueryReplied(std::uint32_t interface_index, DNSServiceErrorType error,
                      std::uint16_t record_type, const void* data, std::uint16_t length) override;

private:
    // Frees the slot and reports the failure of a reply.
    void Failed(const char* what, DNSServiceErrorType error);

    BonjourClient& client_;
    DNSServiceRef ref_ = nullptr;
    std::shared_ptr<BonjourService> service_;
    bool processing_ = false;
    bool release_pending_ = false;
};

#endif
