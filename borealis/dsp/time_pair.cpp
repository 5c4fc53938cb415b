#include "borealis/dsp/time_pair.h"

namespace {
const std::int64_t kNanosecondsPerSecond = 1000000000;
}

TimePair TimePair::Of(std::int64_t seconds, std::int64_t nanoseconds) {
    seconds += nanoseconds / kNanosecondsPerSecond;
    nanoseconds %= kNanosecondsPerSecond;
    // Give the nanoseconds the sign of the seconds.
    if (seconds > 0 && nanoseconds < 0) {
        --seconds;
        nanoseconds += kNanosecondsPerSecond;
    } else if (seconds < 0 && nanoseconds > 0) {
        ++seconds;
        nanoseconds -= kNanosecondsPerSecond;
    }
    TimePair result;
    result.seconds = seconds;
    result.nanoseconds = static_cast<std::int32_t>(nanoseconds);
    return result;
}

TimePair operator+(const TimePair& a, const TimePair& b) {
    return TimePair::Of(a.seconds + b.seconds,
                        static_cast<std::int64_t>(a.nanoseconds) + b.nanoseconds);
}

TimePair operator-(const TimePair& a, const TimePair& b) {
    return TimePair::Of(a.seconds - b.seconds,
                        static_cast<std::int64_t>(a.nanoseconds) - b.nanoseconds);
}

// Normalised nanoseconds share the sign of their seconds, so the pairs
// order by seconds first; no sum in nanoseconds that could overflow for a
// time far off (a box report may carry any date).
bool operator<(const TimePair& a, const TimePair& b) {
    return a.seconds != b.seconds ? a.seconds < b.seconds : a.nanoseconds < b.nanoseconds;
}

bool operator==(const TimePair& a, const TimePair& b) {
    return a.seconds == b.seconds && a.nanoseconds == b.nanoseconds;
}
