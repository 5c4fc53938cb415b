#ifndef COMMON_MILLISECOND_CLOCK_H
#define COMMON_MILLISECOND_CLOCK_H

#include <cstdint>

// The millisecond clock of the poll loop. It follows the wall clock, but a
// forward jump of more than ten seconds, or any backward step, advances it by
// one second only, so that timers survive the system time being set.
class MillisecondClock {
public:
    // The reading for a wall-clock time of `seconds` and `microseconds`; the
    // first reading lands near 1000 ms. Never fails.
    std::int32_t Read(std::uint32_t seconds, long microseconds);

    // `ms` after the reading `at`, and the milliseconds from `earlier` to
    // `later`. Readings pass from 2^31 - 1 to -2^31 after 24.8 days of
    // running, so both wrap around instead of overflowing.
    static std::int32_t Add(std::int32_t at, std::int32_t ms);
    static std::int32_t Difference(std::int32_t later, std::int32_t earlier);

private:
    std::uint32_t last_seconds_ = 0;
    std::uint32_t base_seconds_ = 0;
};

#endif
