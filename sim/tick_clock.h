#ifndef SIM_TICK_CLOCK_H
#define SIM_TICK_CLOCK_H

#include <cstdint>

// The processor's millisecond counter, driven by a nanosecond clock (the
// monotonic one, or the simulated time) at a rate off by a number of parts
// per million. Counts are kept in 64 bits here; the processor sends their
// low 32 bits, so the counter wraps as the real one does.
class TickClock {
public:
    // A counter that shows `start` at time `now_ns`.
    TickClock(std::uint64_t start, double ppm, std::int64_t now_ns);

    // Whole ticks counted at time `now_ns`.
    std::uint64_t TicksAt(std::int64_t now_ns) const;
    // The time at which the counter reaches `ticks`.
    std::int64_t TimeOf(std::uint64_t ticks) const;
    // Changes the rate from `now_ns` on; the count goes on from where it is.
    void SetPpm(double ppm, std::int64_t now_ns);
    double Ppm() const { return ppm_; }

private:
    // Ticks per millisecond: exactly 1 without drift, so that simulated
    // time gives exact tick times.
    double Rate() const { return 1.0 + ppm_ * 1e-6; }

    std::int64_t anchor_ns_;
    double anchor_ticks_;  // exact, fractions of a tick included
    double ppm_;
};

#endif
