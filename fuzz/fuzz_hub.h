#ifndef FUZZ_FUZZ_HUB_H
#define FUZZ_FUZZ_HUB_H

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "borealis/hub/borealis.h"
#include "borealis/platform/sim_platform.h"

// The daemon's hub, built once per fuzzing process under a temporary
// simulated root, with this process playing the analyzer's devices. Inputs
// reach the hub the way the poll loop hands them over: client lines through
// a real client of a real server, signal-processor reads as packets on the
// device socket.
class FuzzHub {
public:
    static FuzzHub& Instance();
    ~FuzzHub();

    Borealis& Hub() { return *hub_; }
    // The path of the absolute system path `path` under the root.
    std::string Path(const std::string& path) const { return root_ + path; }

    // Hands `data` to a fresh client that the hub has greeted, as one read
    // of its socket, then closes the client. The catch is the one around a
    // client's read: a failure closes the client and the daemon goes on.
    // `meanwhile` runs before the client closes.
    void ClientReads(const std::string& data, const std::function<void()>& meanwhile = {});
    // Sends `packet` as one read of the signal processor and runs the loop
    // until the device has taken it.
    void DeviceReads(const std::string& packet);

private:
    FuzzHub();
    void Discard(int fd);
    void AnswerMirror();

    std::string root_;
    int dsp_listener_, mirror_listener_, button_listener_, far_end_;
    int dsp_ = -1, mirror_ = -1, button_ = -1;
    std::unique_ptr<SimPlatform> platform_;
    std::unique_ptr<Borealis> hub_;
    std::unique_ptr<SocketServer> clients_;
    SocketAddress far_address_;
    std::thread mirror_thread_;
};

#endif
