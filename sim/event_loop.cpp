#include "sim/event_loop.h"

#include <time.h>

#include <algorithm>
#include <cerrno>

#include "common/errno_error.h"

std::int64_t MonotonicNs() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

void EventLoop::Watch(int fd, short events, Handler handler) {
    watched_[fd] = Watched{events, std::move(handler)};
}

void EventLoop::SetEvents(int fd, short events) {
    auto found = watched_.find(fd);
    if (found != watched_.end()) found->second.events = events;
}

void EventLoop::Forget(int fd) { watched_.erase(fd); }

std::int64_t EventLoop::WaitNs() const {
    std::int64_t now = MonotonicNs();
    std::int64_t wait = -1;
    for (const Timer* timer : timers_) {
        if (!timer->armed_) continue;
        std::int64_t ns = std::max<std::int64_t>(0, timer->due_ns_ - now);
        if (wait < 0 || ns < wait) wait = ns;
    }
    return wait;
}

void EventLoop::RunOnce() {
    std::vector<pollfd> table;
    for (const auto& [fd, watched] : watched_) table.push_back(pollfd{fd, watched.events, 0});
    // Nanosecond time-outs: the processor's messages leave on the tick they
    // are due, as the real one's do.
    std::int64_t wait = WaitNs();
    timespec timeout{static_cast<time_t>(wait / 1000000000), static_cast<long>(wait % 1000000000)};
    int ready = ::ppoll(table.data(), table.size(), wait < 0 ? nullptr : &timeout, nullptr);
    if (ready < 0 && errno != EINTR) throw ErrnoError("vela-sim: poll failed");
    for (const pollfd& entry : table) {
        if (!entry.revents) continue;
        // A handler may have forgotten this descriptor, or another one.
        auto found = watched_.find(entry.fd);
        if (found == watched_.end()) continue;
        Handler handler = found->second.handler;
        handler(entry.revents);
    }
    FireDueTimers();
}

void EventLoop::FireDueTimers() {
    std::int64_t now = MonotonicNs();
    // Callbacks may start timers again; copy so that the walk stays valid.
    std::vector<Timer*> timers = timers_;
    for (Timer* timer : timers) {
        if (std::find(timers_.begin(), timers_.end(), timer) == timers_.end()) continue;
        if (!timer->armed_ || timer->due_ns_ > now) continue;
        timer->armed_ = false;
        timer->callback_();
    }
}

void EventLoop::Run() {
    stopped_ = false;
    while (!stopped_) RunOnce();
}

Timer::Timer(EventLoop& loop, std::function<void()> callback)
    : loop_(loop), callback_(std::move(callback)) {
    loop_.timers_.push_back(this);
}

Timer::~Timer() {
    auto& timers = loop_.timers_;
    timers.erase(std::remove(timers.begin(), timers.end(), this), timers.end());
}

void Timer::StartAt(std::int64_t due_ns) {
    due_ns_ = due_ns;
    armed_ = true;
}
