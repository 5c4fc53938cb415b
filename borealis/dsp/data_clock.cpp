#include "borealis/dsp/data_clock.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>

namespace {

const std::int64_t kNanosecondsPerSecond = 1000000000;
// The accumulated drift is kept within one second either way.
const std::int64_t kDriftSumLimit = 1000000000;
// The correction's range; the upper end is 32768 so that the register can
// reach its top value 65535.
const std::int32_t kLowestCorrection = -32767;
const std::int32_t kHighestCorrection = 32768;

// x rounded half up.
std::int64_t RoundHalfUp(double x) { return static_cast<std::int64_t>(std::floor(x + 0.5)); }

}  // namespace

DataClock::DataClock(bool debug) : debug_(debug) {}

TimePair DataClock::TicksAsTime(std::uint32_t ticks) const {
    const std::uint32_t fraction = ticks % ticks_per_second_;
    return TimePair::Of(
        ticks / ticks_per_second_,
        RoundHalfUp(static_cast<double>(fraction) * kNanosecondsPerSecond / ticks_per_second_));
}

TimePair DataClock::CounterTurn() const {
    const TimePair half = TicksAsTime(0x80000000u);
    return half + half;
}

TimePair DataClock::Time(std::uint32_t ticks) const { return base_ + TicksAsTime(ticks); }

void DataClock::SetTicks(std::uint32_t msec) {
    if (msec < last_ticks_) {
        std::cout << "SetTicks(): Tick rollover" << std::endl;
        base_ = base_ + CounterTurn();
    }
    last_ticks_ = msec;
}

bool DataClock::Sync(const TimePair& arrival, std::uint32_t ticks, std::int32_t& correction) {
    if (state_ == kAcquiring) {
        Acquire(arrival, ticks);
        return false;
    }
    TimePair drift = arrival - base_ - TicksAsTime(ticks);
    if (ticks < last_ticks_) {
        // The sync message is past the counter's wrap before the data records are.
        std::cout << "Sync(): Tick rollover" << std::endl;
        drift = drift - CounterTurn();
    }
    if (drift.seconds != 0) {
        // A second or more off: find the base again, with the register centred.
        acquire_start_ = ticks;
        base_ = TimePair();
        state_ = kAcquiring;
        Acquire(arrival, ticks);
        correction = 0;
        return true;
    }
    min_drift_ = std::min(min_drift_, drift.nanoseconds);
    last_drift_ = drift.nanoseconds;
    ++sync_count_;
    if (ticks - period_start_ < 2 * ticks_per_second_) return false;
    // A period is complete: its smallest drift is the one least delayed on
    // its way from the processor.
    drift_sum_ = static_cast<std::int32_t>(std::clamp<std::int64_t>(
        static_cast<std::int64_t>(drift_sum_) + min_drift_, -kDriftSumLimit, kDriftSumLimit));
    period_start_ = ticks;
    last_min_drift_ = min_drift_;
    min_drift_ = drift.nanoseconds;
    sync_count_ = 0;
    correction = Correction();
    return true;
}

std::int32_t DataClock::Correction() {
    // Integral and proportional terms; C++ division truncates toward zero.
    const std::int32_t value =
        -(drift_sum_ / integral_divisor_ + last_min_drift_ / proportional_divisor_);
    if (value < kLowestCorrection) return kLowestCorrection;
    if (value > kHighestCorrection - 1) return kHighestCorrection;
    return value;
}

void DataClock::Acquire(const TimePair& arrival, std::uint32_t ticks) {
    // The earliest candidate is the one least delayed on its way.
    const TimePair candidate = arrival - TicksAsTime(ticks);
    if (base_.IsZero() || candidate < base_) base_ = candidate;
    if (ticks - acquire_start_ >= 2 * ticks_per_second_) AlignBase();
}

void DataClock::AlignBase() {
    if (debug_) PrintBase();
    // Move the base to the nearest tick that puts the records, which come
    // every alignment_ticks ticks, on whole multiples of that spacing.
    std::int64_t n = RoundHalfUp(static_cast<double>(base_.nanoseconds) * ticks_per_second_ /
                                 kNanosecondsPerSecond);
    const std::int64_t spacing = alignment_ticks_;
    const std::int64_t remainder = ((n + last_ticks_) % spacing + spacing) % spacing;
    if (debug_) std::cout << "ticks_remainder=" << remainder << std::endl;
    n += remainder > spacing / 2 ? spacing - remainder : -remainder;
    base_ = TimePair::Of(base_.seconds, RoundHalfUp(static_cast<double>(n) * kNanosecondsPerSecond /
                                                    ticks_per_second_));
    state_ = kSynchronised;
    if (debug_) PrintBase();
}

void DataClock::PrintBase() const {
    std::cout << "_offset=" << base_.seconds << "." << std::setw(9) << std::setfill('0')
              << base_.nanoseconds << std::setfill(' ') << std::endl;
}

std::uint32_t ClockYzRegisterValue(std::int32_t correction) {
    return static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(static_cast<std::int64_t>(correction) + 32768, 0, 65535));
}
