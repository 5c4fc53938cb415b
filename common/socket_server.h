#ifndef COMMON_SOCKET_SERVER_H
#define COMMON_SOCKET_SERVER_H

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <list>
#include <string>

#include "common/delim_parser.h"
#include "common/poll_processor.h"
#include "common/registration_list.h"
#include "common/socket.h"

class SocketClient;

// Per-client state that a listener hangs on a client.
class SocketClientContext {
public:
    virtual ~SocketClientContext() = default;
};

// What the owner of a server learns about its clients. Every operation does
// nothing by default.
class SocketServerListener {
public:
    virtual ~SocketServerListener() = default;
    // A client was created with an open socket.
    virtual void ClientAdded(SocketClient*) {}
    // An open client is being closed.
    virtual void ClientRemoved(SocketClient*) {}
    // The client's socket was found ready for the first time.
    virtual void ClientConnected(SocketClient*) {}
    // A whole delimited message, or a raw chunk for a server without delimiter.
    virtual void GotRequest(SocketClient*, const std::string&) {}
};

// A listening TCP socket on the poll loop that turns every connection into a
// SocketClient it owns. A closed client stays in the list, so that callbacks
// may close clients freely, until the next connection is accepted.
class SocketServer : public PollItem {
public:
    // An empty delimiter makes plain clients that pass on raw chunks.
    SocketServer(const std::string& delimiter, int family);
    ~SocketServer() override;

    // Binds the any-address of the family on `port` and listens.
    void Listen(unsigned short port);
    // The same listener may be added twice and is then told twice.
    void AddListener(SocketServerListener* listener);
    // Removes every entry of `listener`.
    void RemoveListener(SocketServerListener* listener);
    // Makes an outgoing client of this server's kind; it is owned by the server.
    SocketClient* Connect(const SocketAddress& address, unsigned seconds);

    int GetFd() override { return socket_.GetFd(); }
    // The accept step.
    void HandleRead() override;
    const char* GetName() override { return "SocketServer"; }

    // The port listened on; -1 before Listen.
    int GetPort() const { return port_; }
    const std::string& GetDelimiter() const { return delimiter_; }
    Socket& GetSocket() { return socket_; }
    // Clients in creation order, closed ones included until the next accept.
    const std::list<SocketClient*>& GetClients() const { return clients_; }

    // Each tells every listener, in the order they were added.
    void NotifyClientAdded(SocketClient* client);
    void NotifyClientRemoved(SocketClient* client);
    void NotifyClientConnected(SocketClient* client);
    void NotifyGotRequest(SocketClient* client, const std::string& message);

private:
    void PurgeClosedClients();
    SocketClient* MakeClient();
    SocketClient* MakeClient(const SocketAddress& address, unsigned seconds);

    std::string delimiter_;
    RegistrationList<SocketServerListener> listeners_;
    std::list<SocketClient*> clients_;
    Socket socket_;
    int port_ = -1;
    int family_;
};

// One connection on the poll loop. Reads without blocking; everything sent is
// buffered and written out as the socket becomes writable.
class SocketClient : public PollItem {
public:
    // Accepts the connection pending on the server's socket.
    explicit SocketClient(SocketServer* server);
    // Connects to `address`, giving up after `seconds`; failures propagate.
    // Deliberately connects first and turns non-blocking afterwards: a
    // non-blocking connect returns at once and the limit could never apply.
    SocketClient(SocketServer* server, const SocketAddress& address, unsigned seconds);
    ~SocketClient() override = default;

    // Queues `data`; dropped silently when the client is closed or closing.
    void Send(const std::string& data);
    // Tells the listeners (once, while open), closes the socket and leaves
    // the poll loop. The object lives on until the server purges it.
    void Close();

    bool IsOpen() const { return socket_.GetFd() >= 0; }
    bool IsConnected() const { return flags_ & kConnected; }
    bool IsClosing() const { return flags_ & kClosing; }
    bool IsOutgoing() const { return flags_ & kOutgoing; }
    // Bytes accepted by Send and not yet written.
    std::size_t GetPendingOutput() const { return output_.size(); }
    // The peer's address as text, for messages; "unknown" when it cannot be
    // read.
    std::string PeerText();
    // Writes `reason` and the peer's address as one line to standard output
    // and closes the client: the way a client that breaks a limit is ended.
    void CloseForAbuse(const std::string& reason);

    boost::shared_ptr<SocketClientContext> GetContext() const { return context_; }
    void SetContext(const boost::shared_ptr<SocketClientContext>& context) { context_ = context; }

    SocketServer* GetServer() const { return server_; }
    Socket& GetSocket() { return socket_; }

    int GetFd() override { return socket_.GetFd(); }
    void HandleRead() override;
    void HandleWrite() override;
    void HandleError() override;
    void HandleInvalid() override;
    void HandleHangUp() override;
    // Passes received bytes on; the default reports them as one request.
    virtual void HandleData(const std::string& data);

private:
    enum Flags : unsigned { kConnected = 1, kClosing = 2, kOutgoing = 4 };

    void MarkConnected();
    void ReadOnce();
    void WriteOnce();
    void CloseAfterFailure();
    void CloseOnEvent(const char* line);

    SocketServer* server_;
    Socket socket_;
    std::string output_;
    unsigned flags_ = 0;
    boost::shared_ptr<SocketClientContext> context_;
};

// A client that cuts its input into messages at the server's delimiter. A
// message that grows past kLongestMessage bytes without its delimiter ends
// the client: nothing legitimate is that long, and the buffer must not grow
// for ever.
class SocketClientParseData : public SocketClient {
public:
    static constexpr std::size_t kLongestMessage = 1048576;

    SocketClientParseData(SocketServer* server, const std::string& delimiter);
    SocketClientParseData(SocketServer* server, const std::string& delimiter,
                          const SocketAddress& address, unsigned seconds);

    // Reports every whole message, delimiter included, while the client is open.
    void HandleData(const std::string& data) override;

private:
    DelimParser parser_;
};

#endif
