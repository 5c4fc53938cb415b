#ifndef COMMON_SOCKET_H
#define COMMON_SOCKET_H

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "common/errno_error.h"
#include "common/stream_file.h"

// An address that cannot be used: unknown family, illegal or unprintable text.
class SocketError : public StreamFileBaseError {
public:
    explicit SocketError(const std::string& message) : StreamFileBaseError(message) {}
};

// A connect that ran out of time; the text ends in ": timed out".
class SocketConnectionTimedOut : public SocketError {
public:
    explicit SocketConnectionTimedOut(const std::string& message) : SocketError(message) {}
};

// A host name that the resolver does not know.
class HostNotFound : public SocketError {
public:
    explicit HostNotFound(const std::string& message) : SocketError(message) {}
};

// An IPv4, IPv6 or Unix-domain socket address. The storage is zeroed before
// every assignment so that addresses compare byte by byte.
class SocketAddress {
public:
    // Family 0: every operation that depends on the family throws until an
    // address is stored.
    SocketAddress();
    // The any-address of `family`, port 0.
    explicit SocketAddress(int family);
    explicit SocketAddress(const in_addr& address);
    explicit SocketAddress(const in6_addr& address);
    explicit SocketAddress(const sockaddr* address);
    // Text: a path when it holds "/", IPv6 when it holds ":", else IPv4.
    explicit SocketAddress(const std::string& text);
    // The first address `host` resolves to in `family`.
    SocketAddress(const std::string& host, int family);

    void Parse(const std::string& text);
    void Resolve(const std::string& host, int family);

    void SetPort(unsigned short port);
    // The port in host byte order; 0 for Unix-domain addresses.
    unsigned short GetPort() const;
    void SetAnyAddress();
    void SetScopeId(std::uint32_t id);

    int GetFamily() const { return storage_.generic.sa_family; }
    socklen_t GetLength() const;
    // The address alone, without the port.
    std::string ToString() const;

    const sockaddr* GetSockAddr() const { return &storage_.generic; }
    sockaddr* GetSockAddr() { return &storage_.generic; }
    // Room for any address this class holds (112 bytes).
    static socklen_t Capacity() { return sizeof(Storage); }

    // The IPv4 address with every host bit set; the any-address of the
    // family for IPv6 and Unix-domain addresses.
    static SocketAddress BroadcastAddress(const SocketAddress& address,
                                          const SocketAddress& netmask);

    bool operator==(const SocketAddress& other) const;
    bool operator!=(const SocketAddress& other) const { return !(*this == other); }
    // Family first, then the address bytes, so that addresses can key maps.
    bool operator<(const SocketAddress& other) const;

private:
    union Storage {
        sockaddr generic;
        sockaddr_in ipv4;
        sockaddr_in6 ipv6;
        sockaddr_un local;
    };
    void Clear();
    void Assign(const sockaddr* address);
    // The number of storage bytes two addresses are compared over.
    std::size_t CompareLength(const SocketAddress& other) const;

    Storage storage_;
};

// A socket descriptor. Every failure is an exception; data transfers are
// done once and return what the system returned, without retrying.
class Socket : public StreamFileBase {
public:
    // accept(2) failed because the peer gave up before it was accepted.
    class EConnAborted : public ErrnoError {
    public:
        explicit EConnAborted(const std::string& message) : ErrnoError(message) {}
    };

    // Adopts an existing socket descriptor.
    explicit Socket(int fd);
    Socket(int family, int type, int protocol);
    Socket(const Socket& other) = default;

    // Binds with the file-creation mask cleared, so that a Unix-domain socket
    // file is created with full permissions.
    void Bind(const SocketAddress& address);
    // Listens and makes the socket non-blocking.
    void Listen(int backlog);
    // The accepted connection; `peer` (optional) receives its address.
    Socket Accept(SocketAddress* peer = nullptr);
    void Connect(const SocketAddress& address);
    // Connects, giving up when `seconds` pass first: SocketConnectionTimedOut.
    // 0 waits without limit, and any failure is then the connect's own
    // ErrnoError, rethrown unchanged: this is deliberate, as only a limit
    // that ran out is a time-out.
    void Connect(const SocketAddress& address, unsigned seconds);
    void Shutdown(int how);

    std::size_t Recv(void* buffer, std::size_t length, int flags);
    std::size_t RecvFrom(void* buffer, std::size_t length, int flags, SocketAddress* from);
    std::size_t Send(const void* data, std::size_t length, int flags);
    std::size_t SendTo(const void* data, std::size_t length, int flags, const SocketAddress& to);

    void GetPeerName(SocketAddress* out);
    void GetSockName(SocketAddress* out);
};

#endif
