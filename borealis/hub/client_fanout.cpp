#include "borealis/hub/client_fanout.h"

#include "borealis/hub/socket_context.h"
#include "common/socket_server.h"

namespace {

bool HasRoom(const SocketClient* client, std::size_t limit) {
    return client->GetPendingOutput() < limit;
}

std::uint32_t OutputsOf(const SocketClient* client) {
    auto context = boost::dynamic_pointer_cast<BorealisSocketContext>(client->GetContext());
    return context ? context->outputs : 0;
}

}  // namespace

void ClientFanout::SendToClient(SocketClient* client, const std::string& text, std::size_t limit) {
    if (client && HasRoom(client, limit)) client->Send(text);
}

void ClientFanout::SendToAll(const std::string& text, std::size_t limit) {
    for (SocketClient* client : server_.GetClients())
        if (client && HasRoom(client, limit)) client->Send(text);
}

int ClientFanout::SendToFlagged(const std::string& text, std::uint32_t bit, std::size_t limit) {
    int flagged = 0;
    for (SocketClient* client : server_.GetClients()) {
        if (!client || !(OutputsOf(client) & bit)) continue;
        ++flagged;
        if (HasRoom(client, limit)) client->Send(text);
    }
    return flagged;
}
