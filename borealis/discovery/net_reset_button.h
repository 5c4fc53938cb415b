#ifndef BOREALIS_DISCOVERY_NET_RESET_BUTTON_H
#define BOREALIS_DISCOVERY_NET_RESET_BUTTON_H

#include <array>
#include <cstddef>
#include <string>

#include "common/poll_processor.h"
#include "common/stream_file.h"

class Platform;

// The front-panel button that brings a misconfigured analyzer back onto the
// network. Its driver delivers one byte per event: "D" pressed, "U"
// released, "L" held long; every other byte is ignored.
class NetResetButtonDevice : public PollItem {
public:
    // Receives the button's events; the default implementations do nothing.
    class Listener {
    public:
        Listener() = default;
        virtual ~Listener() = default;

        virtual void GotDown() {}  // "D"
        virtual void GotUp() {}    // "U"
        virtual void GotLong() {}  // "L"
    };

    // The analyzer's device.
    static const char* const kDefaultPath;
    // Bytes taken by one read of the device.
    static constexpr std::size_t kBufferSize = 32;

    // Registers with the poll loop for input and opens the device at the
    // system path `path` through `platform` (not kept) for reading and
    // writing. Throws ErrnoError("StreamFile: Unable to open " + the path
    // used) when it cannot be opened.
    explicit NetResetButtonDevice(Platform& platform, const std::string& path = kDefaultPath);
    ~NetResetButtonDevice() override;

    // Sets the one listener (not owned; null for none); returns the previous one.
    Listener* SetListener(Listener* listener);

    // The device's descriptor, polled by the loop.
    int GetFd() override { return device_.GetFd(); }
    // Reads once and reports each event byte of that read in order; without
    // a listener the events are dropped. A failing read or listener is
    // printed, not thrown, and the rest of that read is lost.
    void HandleRead() override;
    const char* GetName() override { return "NetResetButtonDevice"; }

private:
    void ReadEvents();
    void Deliver(char event);

    StreamFile device_;
    Listener* listener_ = nullptr;
    std::array<char, kBufferSize> buffer_{};
};

#endif
