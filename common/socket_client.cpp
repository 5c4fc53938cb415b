#include <poll.h>

#include <algorithm>
#include <iostream>

#include "common/socket_server.h"

SocketClient::SocketClient(SocketServer* server)
    : PollItem(POLLIN, true), server_(server), socket_(server->GetSocket().Accept(nullptr)) {
    socket_.SetNonBlocking();
    if (IsOpen()) server_->NotifyClientAdded(this);
}

SocketClient::SocketClient(SocketServer* server, const SocketAddress& address, unsigned seconds)
    : PollItem(POLLIN, true),
      server_(server),
      socket_(address.GetFamily(), SOCK_STREAM, 0),
      flags_(kOutgoing) {
    // The time limit only means something on a blocking connect, so the
    // socket turns non-blocking once it is connected.
    socket_.Connect(address, seconds);
    socket_.SetNonBlocking();
    if (IsOpen()) server_->NotifyClientAdded(this);
}

void SocketClient::Send(const std::string& data) {
    if (!IsOpen() || IsClosing()) return;
    output_ += data;
    if (!(GetEvents() & POLLOUT)) SetEvents(GetEvents() | POLLOUT);
}

void SocketClient::Close() {
    Unregister();
    if (!IsOpen()) return;
    try {
        server_->NotifyClientRemoved(this);
    } catch (...) {
        socket_.Close();
        throw;
    }
    socket_.Close();
}

void SocketClient::HandleData(const std::string& data) { server_->NotifyGotRequest(this, data); }

std::string SocketClient::PeerText() {
    try {
        SocketAddress peer;
        socket_.GetPeerName(&peer);
        return peer.ToString();
    } catch (const std::exception&) {
        return "unknown";
    }
}

void SocketClient::CloseForAbuse(const std::string& reason) {
    std::cout << "SocketClient: " << reason << " from " << PeerText() << "; closing" << std::endl;
    CloseAfterFailure();
}

void SocketClient::MarkConnected() {
    if (IsConnected()) return;
    flags_ |= kConnected;
    server_->NotifyClientConnected(this);
}

void SocketClient::HandleRead() {
    if (!IsOpen()) return;
    try {
        ReadOnce();
    } catch (const std::exception& e) {
        std::cout << "SocketClient::HandleRead(): Got exception " << e.what() << std::endl;
        CloseAfterFailure();
    }
}

void SocketClient::ReadOnce() {
    MarkConnected();
    std::string data;
    if (socket_.Read(data) > 0) {
        HandleData(data);
    } else if (output_.empty()) {
        Close();
    } else {
        // The peer stopped sending but still gets what was queued for it.
        flags_ |= kClosing;
        SetEvents(GetEvents() & ~POLLIN);
    }
}

void SocketClient::HandleWrite() {
    if (!IsOpen()) return;
    try {
        WriteOnce();
    } catch (const std::exception& e) {
        std::cout << "SocketClient::HandleWrite(): Got exception " << e.what() << std::endl;
        CloseAfterFailure();
    }
}

void SocketClient::WriteOnce() {
    MarkConnected();
    if (!output_.empty()) {
        std::size_t written = socket_.Write(output_);
        output_.erase(0, std::min(written, output_.size()));
        if (!output_.empty()) return;
    }
    if (IsClosing()) {
        Close();
        return;
    }
    SetEvents(GetEvents() & ~POLLOUT);
}

void SocketClient::CloseAfterFailure() {
    try {
        Close();
    } catch (const std::exception&) {
        // Close() has released the socket and left the loop even so.
    }
}

void SocketClient::CloseOnEvent(const char* line) {
    std::cout << line << std::endl;
    CloseAfterFailure();
}

void SocketClient::HandleError() { CloseOnEvent("SocketClient::HandleError()"); }

void SocketClient::HandleInvalid() { CloseOnEvent("SocketClient::HandleInvalid()"); }

void SocketClient::HandleHangUp() { CloseOnEvent("SocketClient::HandleHangUp()"); }

SocketClientParseData::SocketClientParseData(SocketServer* server, const std::string& delimiter)
    : SocketClient(server), parser_(delimiter) {}

SocketClientParseData::SocketClientParseData(SocketServer* server, const std::string& delimiter,
                                             const SocketAddress& address, unsigned seconds)
    : SocketClient(server, address, seconds), parser_(delimiter) {}

void SocketClientParseData::HandleData(const std::string& data) {
    parser_.Append(data);
    std::string message;
    // A listener may close the client on one of its messages (a quit
    // command): the rest of its input is not acted on, since whatever a
    // closed client set up (a subscription, the interface box) would never
    // be undone by the removal it has already had.
    while (IsOpen() && parser_.GetMessage(message)) GetServer()->NotifyGotRequest(this, message);
    if (IsOpen() && parser_.GetBuffer().size() > kLongestMessage)
        CloseForAbuse("line longer than " + std::to_string(kLongestMessage) + " bytes");
}
