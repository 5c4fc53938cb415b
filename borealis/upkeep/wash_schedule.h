#ifndef BOREALIS_UPKEEP_WASH_SCHEDULE_H
#define BOREALIS_UPKEEP_WASH_SCHEDULE_H

// A daily window cut into periods, each opening with an active slot. Whether
// a slot runs is decided once, at its first check: it is skipped when the
// signal is stronger than the threshold then, and otherwise runs to its end
// whatever the signal does. Times are seconds since local midnight.
class WashSchedule {
public:
    // A disabled schedule: never runs.
    WashSchedule() = default;

    // Arms the schedule: `threshold` is clamped to 0..100 and the four times
    // to 0..86400; an `on` of 86400 means midnight, an `off` equal to `on`
    // makes the window the whole day, and a `period` shorter than the slot is
    // raised to the slot. Never fails.
    void Set(int threshold, int on, int off, int slot, int period);
    // Stops the schedule; RunSchedule() is false until the next Set().
    void Disable() { state_ = kDisabled; }
    // False after Disable() and before the first Set().
    bool Enabled() const { return state_ != kDisabled; }

    // Whether the schedule runs at time of day `t` (clamped to 0..86400) with
    // the signal strength `level`.
    bool RunSchedule(int t, int level);

private:
    enum State { kDisabled = 0, kArmed = 1, kSkipped = 2, kRunning = 3 };

    // Whether `t` lies in an active slot; a slot entered since the previous
    // check re-arms the schedule.
    bool InActiveSlot(int t);

    State state_ = kDisabled;
    int threshold_ = 0;
    int on_ = 0;
    int off_ = 86400;
    int slot_ = 0;
    int period_ = 0;
    int last_ = 0;
};

// How a wash of `duration` seconds every `repeat` seconds is laid out: the
// wash slot and its period, and the pump slot that opens each period (0: the
// pump stays off). The period is at least a minute, and the mirror stops at
// least 10 s before the next period; the pump stops 10 s before the mirror.
struct WashSlots {
    int wash_slot;
    int period;
    int pump_slot;
};

// The layout of a wash of `duration` seconds every `repeat` seconds.
WashSlots WashSlotsFor(int duration, int repeat);

#endif
