#ifndef BOREALIS_DSP_DATA_CLOCK_H
#define BOREALIS_DSP_DATA_CLOCK_H

#include <cstdint>

#include "borealis/dsp/time_pair.h"

// Turns the signal processor's millisecond tick count into wall-clock time
// and measures how the processor's clock drifts against the system clock.
//
// A pure calculation: it never touches the hardware. From the processor's
// synchronisation messages (tick count stamped with the system time of
// arrival) it first acquires its base, the system time of tick 0, aligned so
// that records fall on a 25 ms grid; then, every 2 seconds of ticks, it turns
// the smallest drift seen into a correction for the CPLD register clock_yz,
// which the owner writes (see ClockYzRegisterValue).
class DataClock {
public:
    // `debug` prints the acquisition diagnostics on standard output.
    explicit DataClock(bool debug = false);

    // Notes the tick count of a data record; a count below the last one
    // means the processor's counter wrapped, and the base moves on by 2^32
    // ticks ("SetTicks(): Tick rollover").
    void SetTicks(std::uint32_t msec);
    // False while the base is being acquired: no records are made then.
    bool Valid() const { return state_ != kAcquiring; }
    // The system time of tick `ticks`: the base plus the ticks as time.
    TimePair Time(std::uint32_t ticks) const;
    // Takes a synchronisation message: its arrival time and tick count. True
    // when a new correction was stored in `correction` (0 when a new
    // acquisition starts, otherwise within -32767 .. 32768).
    bool Sync(const TimePair& arrival, std::uint32_t ticks, std::int32_t& correction);

    // The system time of tick 0.
    const TimePair& Base() const { return base_; }
    // Drift of the last synchronisation message, in nanoseconds.
    std::int32_t LastDrift() const { return last_drift_; }
    // Smallest drift of the last completed 2-second period, in nanoseconds.
    std::int32_t LastMinDrift() const { return last_min_drift_; }

    // `ticks` at the clock's rate as a time difference.
    TimePair TicksAsTime(std::uint32_t ticks) const;

private:
    enum State : std::int32_t { kSynchronised = 0, kAcquiring = 1 };

    void Acquire(const TimePair& arrival, std::uint32_t ticks);
    void AlignBase();
    std::int32_t Correction();
    void PrintBase() const;
    // 2^32 ticks as time, the span of one turn of the processor's counter.
    TimePair CounterTurn() const;

    const std::uint32_t ticks_per_second_ = 1000;
    const std::int32_t integral_divisor_ = 100000;
    const std::int32_t proportional_divisor_ = 10000;
    const std::uint32_t alignment_ticks_ = 25;

    TimePair base_;
    std::uint32_t period_start_ = 0;
    std::int32_t min_drift_ = 0;
    std::int32_t last_min_drift_ = 0;
    std::int32_t drift_sum_ = 0;
    std::int32_t last_drift_ = 0;
    std::uint32_t sync_count_ = 0;
    bool debug_;
    std::uint32_t last_ticks_ = 0;
    std::int32_t state_ = kSynchronised;
    std::uint32_t acquire_start_ = 0;
};

// The clock_yz register value for a correction: the register is centred on
// 32768 and holds 0 .. 65535.
std::uint32_t ClockYzRegisterValue(std::int32_t correction);

#endif
