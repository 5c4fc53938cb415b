#ifndef SIM_SIMULATOR_H
#define SIM_SIMULATOR_H

#include <cstdint>
#include <string>

#include "sim/control_commands.h"
#include "sim/control_server.h"
#include "sim/device_socket.h"
#include "sim/event_loop.h"
#include "sim/interface_box.h"
#include "sim/manual_clock.h"
#include "sim/mirror_device.h"
#include "sim/processor_time.h"
#include "sim/scenario.h"
#include "sim/signal_processor.h"
#include "sim/stop_signals.h"

struct SimOptions {
    std::string root;
    ProcessorSettings processor;
    bool noise = true;
    std::uint32_t seed = 4410;
    unsigned short port = 4410;  // the daemon's, for the interface box
};

// The simulated analyzer: its three devices and the control socket, all
// listening under the root once it is built, and the interface box.
class Simulator {
public:
    // Listens on every socket; throws ErrnoError when one cannot be made.
    explicit Simulator(const SimOptions& options);
    // Serves until SIGINT or SIGTERM; the sockets go with the object.
    void Run() { loop_.Run(); }

private:
    EventLoop loop_;
    ProcessorTime time_;
    Scenario scenario_;
    DeviceSocket dsp_;
    DeviceSocket mirror_socket_;
    DeviceSocket button_;
    SignalProcessor processor_;
    MirrorDevice mirror_;
    InterfaceBox box_;
    ManualClock clock_;
    ControlCommands commands_;
    ControlServer control_;
    StopSignals signals_;
};

#endif
