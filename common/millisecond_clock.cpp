#include "common/millisecond_clock.h"

std::int32_t MillisecondClock::Read(std::uint32_t seconds, long microseconds) {
    // Unsigned, so that a backward step looks like a huge forward one.
    std::uint32_t step = seconds - last_seconds_;
    if (step > 10) base_seconds_ += step - 1;
    last_seconds_ = seconds;
    return static_cast<std::int32_t>((seconds - base_seconds_) * 1000u +
                                     static_cast<std::uint32_t>(microseconds / 1000));
}

std::int32_t MillisecondClock::Add(std::int32_t at, std::int32_t ms) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(at) +
                                     static_cast<std::uint32_t>(ms));
}

std::int32_t MillisecondClock::Difference(std::int32_t later, std::int32_t earlier) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(later) -
                                     static_cast<std::uint32_t>(earlier));
}
