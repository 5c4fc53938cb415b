#ifndef SIM_DEVICE_SOCKET_H
#define SIM_DEVICE_SOCKET_H

#include <functional>
#include <string>

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

    // Listens at `path`; throws ErrnoError when it cannot.
    DeviceSocket(EventLoop& loop, const std::string& path);
    // Closes the connection and removes the socket file.
    ~DeviceSocket();
    DeviceSocket(const DeviceSocket&) = delete;
    DeviceSocket& operator=(const DeviceSocket&) = delete;

    void SetHandlers(Handlers handlers) { handlers_ = std::move(handlers); }
    // Whether the daemon holds the device open.
    bool Open() const { return peer_ >= 0; }
    // Sends one packet (what one read of the device returns); false when no
    // one holds the device or its queue is full, and the packet is lost.
    bool Send(const std::string& packet);

private:
    void Accept();
    void Receive();
    void Close();

    EventLoop& loop_;
    std::string path_;
    int listener_ = -1;
    int peer_ = -1;
    Handlers handlers_;
};

#endif
