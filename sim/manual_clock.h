#ifndef SIM_MANUAL_CLOCK_H
#define SIM_MANUAL_CLOCK_H

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "sim/device_socket.h"
#include "sim/interface_box.h"
#include "sim/processor_time.h"
#include "sim/signal_processor.h"

// The manual clock: moves the processor's time on when told to and lets the
// processor and the interface box send, in time order, what falls due
// meanwhile, each at the moment it falls due. It goes as fast as the daemon
// reads: before each clock synchronisation (when the processor looks at the
// trim register again) the daemon has read everything sent before, so its
// clock servo acts on the simulated time exactly as on real time.
class ManualClock {
public:
    // Called once a run has been played: with an empty text, or the reason
    // why frames were lost.
    using Done = std::function<void(const std::string& error)>;

    ManualClock(ProcessorTime& time, SignalProcessor& processor, InterfaceBox& box,
                DeviceSocket& dsp);
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    // Starts moving the time on by `ms` milliseconds; throws
    // std::runtime_error while another run is still playing.
    void Run(std::uint64_t ms);
    // Calls `done` once the run has been played and the daemon has read
    // every frame of it.
    void WhenPlayed(Done done);

private:
    void Play();
    void Finish(const std::string& error);

    ProcessorTime& time_;
    SignalProcessor& processor_;
    InterfaceBox& box_;
    DeviceSocket& dsp_;
    bool playing_ = false;
    std::int64_t end_ns_ = 0;
    std::vector<Done> played_handlers_;
};

#endif
