#ifndef BOREALIS_DSP_TIME_PAIR_H
#define BOREALIS_DSP_TIME_PAIR_H

#include <cstdint>

// A time or a time difference as whole seconds (signed 64-bit, so that times
// after January 2038 stay positive) and nanoseconds (signed 32-bit). Kept
// normalised: the nanoseconds lie within one second and have the
// sign of the seconds (a positive time has 0 .. 999999999, a negative one
// -999999999 .. 0).
struct TimePair {
    std::int64_t seconds = 0;
    std::int32_t nanoseconds = 0;

    // The normalised pair for `seconds` + `nanoseconds` (any range).
    static TimePair Of(std::int64_t seconds, std::int64_t nanoseconds);

    bool IsZero() const { return seconds == 0 && nanoseconds == 0; }
};

// Sums, differences and comparisons of times, normalised.
TimePair operator+(const TimePair& a, const TimePair& b);
TimePair operator-(const TimePair& a, const TimePair& b);
bool operator<(const TimePair& a, const TimePair& b);
bool operator==(const TimePair& a, const TimePair& b);
inline bool operator!=(const TimePair& a, const TimePair& b) { return !(a == b); }

#endif
