#ifndef COMMON_POLL_TIMER_H
#define COMMON_POLL_TIMER_H

#include <cstdint>

// A one-shot timer on the poll loop's millisecond clock; a periodic timer
// re-arms itself in HandleTimer(). A timer starts unregistered.
class PollTimer {
public:
    PollTimer() = default;
    PollTimer(const PollTimer&) = delete;
    PollTimer& operator=(const PollTimer&) = delete;
    // Leaves the loop.
    virtual ~PollTimer();

    // Called once when the timer is due, after it was disarmed.
    virtual void HandleTimer() = 0;

    // Joins the loop, disarmed; does nothing when registered. Never fails.
    void Register();
    // Disarms and leaves the loop, even from inside HandleTimer(); does
    // nothing when not registered. Never fails.
    void Unregister();
    // Arms the timer `ms` from now; a negative value disarms it, and an
    // unregistered timer is left alone. Throws ErrnoError when the wall clock
    // cannot be read.
    void Start(std::int32_t ms);
    // True from Start until the timer fires or is disarmed.
    bool IsArmed() const { return armed_; }

private:
    friend class PollProcessor;
    std::int32_t due_ = 0;
    bool registered_ = false;
    bool armed_ = false;
};

#endif
