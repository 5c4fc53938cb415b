#include "borealis/upkeep/wash_schedule.h"

#include <algorithm>

namespace {

const int kDay = 86400;

}  // namespace

void WashSchedule::Set(int threshold, int on, int off, int slot, int period) {
    threshold_ = std::clamp(threshold, 0, 100);
    on_ = std::clamp(on, 0, kDay);
    off_ = std::clamp(off, 0, kDay);
    slot_ = std::clamp(slot, 0, kDay);
    period_ = std::clamp(period, 0, kDay);
    if (on_ == kDay) on_ = 0;
    if (off_ == on_) {
        on_ = 0;
        off_ = kDay;
    }
    period_ = std::max(period_, slot_);
    state_ = kArmed;
    last_ = 0;
}

bool WashSchedule::InActiveSlot(int t) {
    t = std::clamp(t, 0, kDay) % kDay;
    const int previous = last_;
    last_ = t;

    int elapsed;
    if (on_ < off_) {
        if (t < on_ || t >= off_) {
            state_ = kArmed;
            return false;
        }
        elapsed = t - on_;
    } else if (t >= on_) {
        elapsed = t - on_;
    } else if (t < off_) {
        elapsed = kDay + t - on_;
    } else {
        state_ = kArmed;
        return false;
    }

    // A zero period can only come with a zero slot, which is never active.
    const int phase = period_ > 0 ? elapsed % period_ : 0;
    if (phase >= slot_) {
        state_ = kArmed;
        return false;
    }
    // The previous check lay before this slot began: a new slot, even when
    // its first seconds were missed.
    const int since_previous = t - previous + (previous > t ? kDay : 0);
    if (since_previous > phase) state_ = kArmed;
    return true;
}

bool WashSchedule::RunSchedule(int t, int level) {
    if (state_ == kDisabled || !InActiveSlot(t)) return false;
    if (state_ == kArmed) state_ = threshold_ < level ? kSkipped : kRunning;
    return state_ == kRunning;
}

WashSlots WashSlotsFor(int duration, int repeat) {
    int period = repeat;
    int limit = repeat - 10;
    if (repeat < 60) {
        period = 60;
        limit = 50;
    }
    if (duration > limit) return {limit, period, limit - 10};
    return {duration, period, duration < 11 ? 0 : duration - 10};
}
