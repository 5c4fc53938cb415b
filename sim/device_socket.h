#ifndef SIM_DEVICE_SOCKET_H
#define SIM_DEVICE_SOCKET_H

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "sim/event_loop.h"

// One of the analyzer's devices as the daemon reaches it: a packet socket
// that listens at the device's path and serves one opener at a time. A new
// opener replaces the one before (the daemon restarted).
class DeviceSocket {
public:
    struct Handlers {
        std::function<void()> opened;
        std::function<void(const std::string& packet)> packet;
        std::function<void()> closed;
    };
    // Called once the packets sent so far have left: with an empty text, or
    // with the reason why they never will.
    using SentHandler = std::function<void(const std::string& error)>;

    // Listens at `path`; throws ErrnoError when it cannot.
    DeviceSocket(EventLoop& loop, const std::string& path);
    // Closes the connection and removes the socket file.
    ~DeviceSocket();
    DeviceSocket(const DeviceSocket&) = delete;
    DeviceSocket& operator=(const DeviceSocket&) = delete;

    void SetHandlers(Handlers handlers) { handlers_ = std::move(handlers); }
    // Packets that find the device's queue full wait, in order, for room
    // instead of being lost; they are dropped with an error when the daemon
    // takes none for a while, so that a daemon that stops reading cannot
    // hold the simulator up for ever.
    void KeepEveryPacket(bool keep) { keep_every_packet_ = keep; }
    // Whether the daemon holds the device open.
    bool Open() const { return peer_ >= 0; }
    // Sends one packet (what one read of the device returns); false when no
    // one holds the device, or when its queue is full and the packet is lost.
    bool Send(const std::string& packet);
    // Calls `sent` once every packet sent so far has left (at once when none
    // waits); packets sent later do not hold it up.
    void WhenSent(SentHandler sent);
    // Whether the daemon has read every packet sent so far.
    bool AllRead() const;
    // Calls `read` once the daemon has read every packet sent so far, or with
    // the reason why it never will (the device closed, or nothing was read
    // for 10 s). The socket gives no event for this, so it is checked often.
    void WhenRead(SentHandler read);

private:
    void Accept();
    void Serve(short revents);
    void Receive();
    void Close();
    // Sends waiting packets until the device's queue is full.
    void Flush();
    void Stalled();
    void Finish(const std::string& error);
    void CheckRead();
    void FinishRead(const std::string& error);

    EventLoop& loop_;
    std::string path_;
    int listener_ = -1;
    int peer_ = -1;
    Handlers handlers_;
    bool keep_every_packet_ = false;
    std::deque<std::string> waiting_;
    std::uint64_t queued_ = 0;  // packets ever put in the waiting queue
    std::uint64_t left_ = 0;    // packets of it that left
    // Each waits until `left_` reaches its mark.
    std::deque<std::pair<std::uint64_t, SentHandler>> sent_handlers_;
    Timer stall_timer_;
    std::vector<SentHandler> read_handlers_;
    std::int64_t read_deadline_ns_ = 0;
    Timer read_timer_;
};

#endif
