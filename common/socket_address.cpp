#include <arpa/inet.h>
#include <netdb.h>

#include <algorithm>
#include <cstring>

#include "common/socket.h"

namespace {
const std::size_t kMaxPathLength = sizeof(sockaddr_un::sun_path) - 1;  // 107
const std::size_t kIPv6TextSize = 52;

[[noreturn]] void ThrowUnknownFamily() {
    throw SocketError("SocketAddress: unknown socket family");
}
}  // namespace

SocketAddress::SocketAddress() { Clear(); }

SocketAddress::SocketAddress(int family) {
    Clear();
    storage_.generic.sa_family = static_cast<sa_family_t>(family);
    SetAnyAddress();
}

SocketAddress::SocketAddress(const in_addr& address) {
    Clear();
    storage_.ipv4.sin_family = AF_INET;
    storage_.ipv4.sin_addr = address;
}

SocketAddress::SocketAddress(const in6_addr& address) {
    Clear();
    storage_.ipv6.sin6_family = AF_INET6;
    storage_.ipv6.sin6_addr = address;
}

SocketAddress::SocketAddress(const sockaddr* address) {
    Clear();
    Assign(address);
}

SocketAddress::SocketAddress(const std::string& text) { Parse(text); }

SocketAddress::SocketAddress(const std::string& host, int family) {
    Clear();
    storage_.generic.sa_family = static_cast<sa_family_t>(family);
    Resolve(host, family);
    SetPort(0);
}

void SocketAddress::Clear() { std::memset(&storage_, 0, sizeof storage_); }

void SocketAddress::Assign(const sockaddr* address) {
    Clear();
    switch (address->sa_family) {
    case AF_INET: std::memcpy(&storage_.ipv4, address, sizeof(sockaddr_in)); break;
    case AF_INET6: std::memcpy(&storage_.ipv6, address, sizeof(sockaddr_in6)); break;
    case AF_UNIX: {
        const sockaddr_un* local = reinterpret_cast<const sockaddr_un*>(address);
        storage_.local.sun_family = AF_UNIX;
        std::memcpy(storage_.local.sun_path, local->sun_path,
                    strnlen(local->sun_path, kMaxPathLength));
        break;
    }
    default: ThrowUnknownFamily();
    }
}

void SocketAddress::Parse(const std::string& text) {
    Clear();
    if (text.find('/') != std::string::npos) {
        storage_.local.sun_family = AF_UNIX;
        text.copy(storage_.local.sun_path, kMaxPathLength);
        return;
    }
    int result;
    if (text.find(':') != std::string::npos) {
        storage_.ipv6.sin6_family = AF_INET6;
        result = inet_pton(AF_INET6, text.c_str(), &storage_.ipv6.sin6_addr);
    } else {
        storage_.ipv4.sin_family = AF_INET;
        result = inet_pton(AF_INET, text.c_str(), &storage_.ipv4.sin_addr);
    }
    if (result == 0) throw SocketError("SocketAddress: illegal address " + text);
}

void SocketAddress::Resolve(const std::string& host, int family) {
    addrinfo hints;
    std::memset(&hints, 0, sizeof hints);
    hints.ai_family = family;
    addrinfo* results = nullptr;
    int code = getaddrinfo(host.c_str(), nullptr, &hints, &results);
    if (code != 0)
        throw HostNotFound("SocketAddress: " + host + " not found: " + gai_strerror(code));
    const addrinfo* chosen = nullptr;
    for (const addrinfo* r = results; r && !chosen; r = r->ai_next)
        if (r->ai_socktype == SOCK_STREAM || r->ai_socktype == SOCK_DGRAM) chosen = r;
    try {
        if (!chosen) throw HostNotFound("SocketAddress: " + host + " not found");
        Assign(chosen->ai_addr);
    } catch (...) {
        freeaddrinfo(results);
        throw;
    }
    freeaddrinfo(results);
}

void SocketAddress::SetPort(unsigned short port) {
    switch (GetFamily()) {
    case AF_INET: storage_.ipv4.sin_port = htons(port); break;
    case AF_INET6: storage_.ipv6.sin6_port = htons(port); break;
    case AF_UNIX: break;
    default: ThrowUnknownFamily();
    }
}

unsigned short SocketAddress::GetPort() const {
    switch (GetFamily()) {
    case AF_INET: return ntohs(storage_.ipv4.sin_port);
    case AF_INET6: return ntohs(storage_.ipv6.sin6_port);
    case AF_UNIX: return 0;
    default: ThrowUnknownFamily();
    }
}

void SocketAddress::SetAnyAddress() {
    switch (GetFamily()) {
    case AF_INET: storage_.ipv4.sin_addr.s_addr = htonl(INADDR_ANY); break;
    case AF_INET6: storage_.ipv6.sin6_addr = in6addr_any; break;
    case AF_UNIX: storage_.local.sun_path[0] = '\0'; break;
    default: ThrowUnknownFamily();
    }
}

void SocketAddress::SetScopeId(std::uint32_t id) {
    switch (GetFamily()) {
    case AF_INET6: storage_.ipv6.sin6_scope_id = id; break;
    case AF_INET:
    case AF_UNIX: break;
    default: ThrowUnknownFamily();
    }
}

socklen_t SocketAddress::GetLength() const {
    switch (GetFamily()) {
    case AF_INET: return sizeof(sockaddr_in);
    case AF_INET6: return sizeof(sockaddr_in6);
    case AF_UNIX:
        return static_cast<socklen_t>(strnlen(storage_.local.sun_path, kMaxPathLength) +
                                      offsetof(sockaddr_un, sun_path));
    default: ThrowUnknownFamily();
    }
}

std::string SocketAddress::ToString() const {
    switch (GetFamily()) {
    case AF_INET: return inet_ntoa(storage_.ipv4.sin_addr);
    case AF_INET6: {
        char text[kIPv6TextSize];
        if (!inet_ntop(AF_INET6, &storage_.ipv6.sin6_addr, text, sizeof text))
            throw SocketError("SocketAddress: bad IPv6 address");
        return text;
    }
    case AF_UNIX: return storage_.local.sun_path;
    default: ThrowUnknownFamily();
    }
}

SocketAddress SocketAddress::BroadcastAddress(const SocketAddress& address,
                                              const SocketAddress& netmask) {
    switch (address.GetFamily()) {
    case AF_INET: {
        in_addr broadcast;
        broadcast.s_addr =
            address.storage_.ipv4.sin_addr.s_addr | ~netmask.storage_.ipv4.sin_addr.s_addr;
        return SocketAddress(broadcast);
    }
    case AF_INET6:
    case AF_UNIX: return SocketAddress(address.GetFamily());
    default: ThrowUnknownFamily();
    }
}

std::size_t SocketAddress::CompareLength(const SocketAddress& other) const {
    // Unix-domain lengths differ with the path; the storage beyond a path is
    // zero, so comparing over the longer length tells "/a" from "/ab".
    return std::max(GetLength(), other.GetLength());
}

bool SocketAddress::operator==(const SocketAddress& other) const {
    return GetFamily() == other.GetFamily() &&
           std::memcmp(&storage_, &other.storage_, CompareLength(other)) == 0;
}

bool SocketAddress::operator<(const SocketAddress& other) const {
    if (GetFamily() != other.GetFamily()) return GetFamily() < other.GetFamily();
    return std::memcmp(&storage_, &other.storage_, CompareLength(other)) < 0;
}
