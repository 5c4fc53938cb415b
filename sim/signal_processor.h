#ifndef SIM_SIGNAL_PROCESSOR_H
#define SIM_SIGNAL_PROCESSOR_H

#include <cstdint>
#include <random>
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
    std::uint32_t seed = 4410;         // of the garbage a fault sends
};

// The analyzer's signal processor behind its device: once the daemon opens
// the device it sends data 40 times a second and status, clock
// synchronisation and waveforms once a second, all on its own millisecond
// counter, and answers the daemon's commands. It keeps every frame the
// daemon writes. In real time the frames leave on timers; with a manual
// clock nothing moves until the clock plays the frames due, and every frame
// waits for room on the device rather than being lost. Faults on request
// spoil what it sends.
class SignalProcessor {
public:
    SignalProcessor(EventLoop& loop, DeviceSocket& device, Scenario& scenario, ProcessorTime& time,
                    const ProcessorSettings& settings);
    SignalProcessor(const SignalProcessor&) = delete;
    SignalProcessor& operator=(const SignalProcessor&) = delete;

    // Sends a text message (code 3, 4, 5 or 18); false when the device is
    // not open.
    bool SendText(std::uint16_t code, const std::string& text);
    // Sends a frame without payload (a pong, code 2); false when the device
    // is not open.
    bool SendBare(std::uint16_t code);
    // The counter as the processor reports it (32 bits, wrapping).
    std::uint32_t Ticks() const;
    // Sets the counter's rate error; the trim register still applies.
    void SetDriftPpm(double ppm);
    bool Manual() const { return time_.IsManual(); }
    // Every frame received from the daemon, in order of arrival.
    const std::vector<Frame>& Received() const { return received_; }

    // When the next frame falls due, on the processor's time; -1 while the
    // device is not open.
    std::int64_t NextDueNs() const;
    // Whether the frames due by `ns` include a synchronisation, which goes
    // with a fresh look at the trim register.
    bool ReadsTrimRegisterBy(std::int64_t ns) const;
    // Sends, in tick order, every frame due by now.
    void SendDue();

    // Faults, each false when the device is not open. The next data frame
    // leaves cut short: its packet is shorter than its length field says.
    bool CutNextDataFrame();
    // Sends a packet of `bytes` random bytes now.
    bool SendGarbage(std::size_t bytes);
    // Holds back every frame until `count` data frames are due, then sends
    // them in one packet, each stamped with its own arrival time.
    bool BurstNextData(unsigned count);
    // Sends nothing for `ms` of the processor's time, then goes on with the
    // frames due from then on (those due meanwhile are never sent).
    bool Stall(std::uint64_t ms);

private:
    void Opened();
    void Closed();
    void GotPacket(const std::string& packet);
    void Answer(const Frame& command);
    void SendSecondly(std::uint32_t msec);
    void ArmTimer();
    void Send(const Frame& frame);
    // Sends a frame of the tick grid, as the faults armed let it go.
    void SendOnGrid(const Frame& frame, bool data);
    void FollowTrimRegister();
    void ApplyRate();

    DeviceSocket& device_;
    Scenario& scenario_;
    ProcessorSettings settings_;
    ProcessorTime& time_;
    TickClock clock_;
    Timer timer_;
    long trim_register_ = 32768;  // centred: no trim
    std::uint64_t next_data_ = 0;
    std::uint64_t next_second_ = 0;
    std::vector<Frame> received_;
    // Faults armed.
    bool cut_next_data_ = false;
    unsigned burst_left_ = 0;  // data frames still to join the held packet
    std::string burst_;
    std::mt19937 garbage_random_;
};

#endif
