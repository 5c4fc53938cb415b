#include "common/poll_timer.h"

#include "common/poll_processor.h"

PollTimer::~PollTimer() { Unregister(); }

void PollTimer::Register() {
    if (registered_) return;
    armed_ = false;
    PollProcessor::Instance().timers_.Add(this);
    registered_ = true;
}

void PollTimer::Unregister() {
    if (!registered_) return;
    armed_ = false;
    PollProcessor::Instance().timers_.Remove(this);
    registered_ = false;
}

void PollTimer::Start(std::int32_t ms) {
    if (ms < 0) {
        armed_ = false;
        return;
    }
    if (!registered_) return;
    due_ = MillisecondClock::Add(PollProcessor::NowMs(), ms);
    armed_ = true;
}
