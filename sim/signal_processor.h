#ifndef SIM_SIGNAL_PROCESSOR_H
#define SIM_SIGNAL_PROCESSOR_H

#include <cstdint>
#include <string>
#include <vector>

#include "sim/device_socket.h"
#include "sim/event_loop.h"
#include "sim/frame_codec.h"
#include "sim/processor_time.h"
#include "sim/scenario.h"
#include "sim/tick_clock.h"

struct ProcessorSettings {
    std::uint64_t ticks_start = 1000;  // the counter's value at start
    double drift_ppm = 0;              // the counter's rate error
    double trim_ppm = 1.0;             // rate change per count of the trim register
    std::string clock_yz_path;         // the trim register the daemon writes
    bool manual = false;               // time moves only when told to
    std::int64_t epoch = 1767225600;   // manual time's stamp at start: 2026-01-01 00:00:00 UTC
};

// The analyzer's signal processor behind its device: once the daemon opens
// the device it sends data 40 times a second and status, clock
// synchronisation and waveforms once a second, all on its own millisecond
// counter, and answers test data requests. It keeps every frame the daemon
// writes. In real time the frames leave on timers; with a manual clock
// nothing moves until `Advance`, and every frame waits for room on the
// device rather than being lost.
class SignalProcessor {
public:
    SignalProcessor(EventLoop& loop, DeviceSocket& device, Scenario& scenario,
                    const ProcessorSettings& settings);
    SignalProcessor(const SignalProcessor&) = delete;
    SignalProcessor& operator=(const SignalProcessor&) = delete;

    // Sends a text message (code 3, 4, 5 or 18); false when the device is
    // not open.
    bool SendText(std::uint16_t code, const std::string& text);
    // The counter as the processor reports it (32 bits, wrapping).
    std::uint32_t Ticks() const;
    // Sets the counter's rate error; the trim register still applies.
    void SetDriftPpm(double ppm);
    bool Manual() const { return time_.IsManual(); }
    // Manual clock only: moves the time on by `ms` milliseconds and sends,
    // in tick order, every frame due meanwhile, each stamped with the
    // moment it fell due.
    void Advance(std::uint64_t ms);
    // Every frame received from the daemon, in order of arrival.
    const std::vector<Frame>& Received() const { return received_; }

private:
    void Opened();
    void Closed();
    void GotPacket(const std::string& packet);
    void SendDue();
    void SendSecondly(std::uint32_t msec);
    void ArmTimer();
    void Send(const Frame& frame);
    void FollowTrimRegister();
    void ApplyRate();

    DeviceSocket& device_;
    Scenario& scenario_;
    ProcessorSettings settings_;
    ProcessorTime time_;
    TickClock clock_;
    Timer timer_;
    long trim_register_ = 32768;  // centred: no trim
    std::uint64_t next_data_ = 0;
    std::uint64_t next_second_ = 0;
    std::vector<Frame> received_;
};

#endif
