#include "common/socket_server.h"

#include <poll.h>

namespace {
const int kBacklog = 1024;
}  // namespace

SocketServer::SocketServer(const std::string& delimiter, int family)
    : PollItem(POLLIN | POLLPRI | POLLOUT, true),
      delimiter_(delimiter),
      socket_(family, SOCK_STREAM, 0),
      family_(family) {}

SocketServer::~SocketServer() {
    // Every client is closed before any is deleted: a ClientRemoved listener
    // may walk the client list to tell the others.
    for (SocketClient* client : clients_) {
        try {
            client->Close();
        } catch (const std::exception&) {
            // Going away regardless; the descriptor is released either way.
        }
    }
    for (SocketClient* client : clients_) delete client;
    clients_.clear();
    try {
        socket_.Close();
    } catch (const std::exception&) {
    }
    Unregister();
}

void SocketServer::Listen(unsigned short port) {
    SocketAddress address(family_);
    address.SetPort(port);
    socket_.Bind(address);
    socket_.Listen(kBacklog);
    port_ = port;
}

void SocketServer::AddListener(SocketServerListener* listener) { listeners_.Add(listener); }

void SocketServer::RemoveListener(SocketServerListener* listener) { listeners_.Remove(listener); }

void SocketServer::HandleRead() {
    PurgeClosedClients();
    clients_.push_back(MakeClient());
}

SocketClient* SocketServer::Connect(const SocketAddress& address, unsigned seconds) {
    PurgeClosedClients();
    SocketClient* client = MakeClient(address, seconds);
    clients_.push_back(client);
    return client;
}

void SocketServer::PurgeClosedClients() {
    for (auto it = clients_.begin(); it != clients_.end();) {
        if ((*it)->IsOpen()) {
            ++it;
        } else {
            delete *it;
            it = clients_.erase(it);
        }
    }
}

SocketClient* SocketServer::MakeClient() {
    if (delimiter_.empty()) return new SocketClient(this);
    return new SocketClientParseData(this, delimiter_);
}

SocketClient* SocketServer::MakeClient(const SocketAddress& address, unsigned seconds) {
    if (delimiter_.empty()) return new SocketClient(this, address, seconds);
    return new SocketClientParseData(this, delimiter_, address, seconds);
}

void SocketServer::NotifyClientAdded(SocketClient* client) {
    listeners_.ForEach([client](SocketServerListener* l) { l->ClientAdded(client); });
}

void SocketServer::NotifyClientRemoved(SocketClient* client) {
    listeners_.ForEach([client](SocketServerListener* l) { l->ClientRemoved(client); });
}

void SocketServer::NotifyClientConnected(SocketClient* client) {
    listeners_.ForEach([client](SocketServerListener* l) { l->ClientConnected(client); });
}

void SocketServer::NotifyGotRequest(SocketClient* client, const std::string& message) {
    listeners_.ForEach(
        [client, &message](SocketServerListener* l) { l->GotRequest(client, message); });
}
