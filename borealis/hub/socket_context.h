#ifndef BOREALIS_HUB_SOCKET_CONTEXT_H
#define BOREALIS_HUB_SOCKET_CONTEXT_H

#include <cstddef>
#include <cstdint>

#include "common/socket_server.h"

// The optional record streams a client can ask for, one bit each.
struct OutputBit {
    static constexpr std::uint32_t STATUS = 1;
    static constexpr std::uint32_t WAVEFORMS = 2;
    static constexpr std::uint32_t DATACLOCK = 4;
    static constexpr std::uint32_t DATACLOCKSYNC = 8;
};

// What the hub keeps for each client: the record streams it receives besides
// the data records.
class BorealisSocketContext : public SocketClientContext {
public:
    std::uint32_t outputs = 0;
    // Change subscriptions the client holds.
    std::size_t subscriptions = 0;
};

// The hub's context of `client`; null when it has none.
inline BorealisSocketContext* ContextOf(SocketClient* client) {
    return dynamic_cast<BorealisSocketContext*>(client->GetContext().get());
}

#endif
