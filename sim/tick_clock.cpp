#include "sim/tick_clock.h"

#include <cmath>

TickClock::TickClock(std::uint64_t start, double ppm, std::int64_t now_ns)
    : anchor_ns_(now_ns), anchor_ticks_(static_cast<double>(start)), ppm_(ppm) {}

std::uint64_t TickClock::TicksAt(std::int64_t now_ns) const {
    double ticks = anchor_ticks_ + static_cast<double>(now_ns - anchor_ns_) * Rate() / 1e6;
    return static_cast<std::uint64_t>(std::floor(ticks));
}

std::int64_t TickClock::TimeOf(std::uint64_t ticks) const {
    double ns = (static_cast<double>(ticks) - anchor_ticks_) * 1e6 / Rate();
    // Rounded up, so that the counter has really reached `ticks` by then.
    return anchor_ns_ + static_cast<std::int64_t>(std::ceil(ns));
}

void TickClock::SetPpm(double ppm, std::int64_t now_ns) {
    anchor_ticks_ += static_cast<double>(now_ns - anchor_ns_) * Rate() / 1e6;
    anchor_ns_ = now_ns;
    ppm_ = ppm;
}
