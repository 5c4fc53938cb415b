#ifndef BOREALIS_HUB_CLIENT_FANOUT_H
#define BOREALIS_HUB_CLIENT_FANOUT_H

#include <cstddef>
#include <cstdint>
#include <string>

class SocketClient;
class SocketServer;

// How much output may wait for a client before more of one kind of traffic
// is dropped for it: answers and events are dropped last, the high-rate
// optional streams first.
struct SendLimit {
    static constexpr std::size_t ANSWER = 1572864;  // answers, greeting, events, messages
    static constexpr std::size_t DATA = 1048576;    // data and test records
    static constexpr std::size_t STATUS = 786432;   // status records
    static constexpr std::size_t STREAM = 524288;   // waveforms, data clock, clock sync
};

// Hands text lines to the server's clients. A client whose pending output
// already holds the limit of the traffic misses the line; nothing waits for
// it and it is not closed.
class ClientFanout {
public:
    explicit ClientFanout(SocketServer& server) : server_(server) {}

    // Sends `text` to one client (nothing for a null client).
    void SendToClient(SocketClient* client, const std::string& text, std::size_t limit);
    // Sends `text` to every client.
    void SendToAll(const std::string& text, std::size_t limit);
    // Sends `text` to every client that asked for the stream `bit`; returns
    // how many asked, whether or not the line fitted their limit.
    int SendToFlagged(const std::string& text, std::uint32_t bit, std::size_t limit);

private:
    SocketServer& server_;
};

#endif
