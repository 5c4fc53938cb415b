#include "common/poll_processor.h"

#include <cerrno>

#include "common/errno_error.h"

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

void NormaliseTimeout(struct timeval& timeout) {
    if (timeout.tv_usec > 999999) {
        timeout.tv_sec += timeout.tv_usec / 1000000;
        timeout.tv_usec %= 1000000;
    }
}

PollProcessor& PollProcessor::Instance() {
    static PollProcessor instance;
    return instance;
}

std::int32_t PollProcessor::NowMs() {
    static MillisecondClock clock;
    struct timeval now;
    if (gettimeofday(&now, nullptr) != 0)
        throw ErrnoError("PollProcessor: error calling gettimeofday()");
    return clock.Read(static_cast<std::uint32_t>(now.tv_sec), now.tv_usec);
}

void PollProcessor::Poll(std::int32_t timeout_ms) {
    timeout_ms = RunTimers(timeout_ms);
    if (table_stale_) RebuildTable();
    int result = poll(table_.data(), table_.size(), idle_done_ ? timeout_ms : 0);
    if (result == 0) {
        RunIdle();
    } else if (result < 0) {
        if (errno == EINTR) return;
        throw ErrnoError("PollProcessor: error calling poll()");
    } else {
        Dispatch();
    }
}

static void TakeShorter(std::int32_t& timeout, std::int32_t remaining) {
    if (timeout == -1 || timeout > remaining) timeout = remaining;
}

std::int32_t PollProcessor::RunTimers(std::int32_t timeout) {
    const std::int32_t now = NowMs();
    timers_.ForEach([&](PollTimer* timer) {
        if (!timer->armed_) return;
        std::int32_t remaining = MillisecondClock::Difference(timer->due_, now);
        if (remaining > 0) {
            TakeShorter(timeout, remaining);
            return;
        }
        timer->armed_ = false;
        timer->HandleTimer();
        NoteActivity();
        // The callback may have unregistered (but not deleted) the timer.
        if (timer->registered_ && timer->armed_) {
            remaining = MillisecondClock::Difference(timer->due_, now);
            TakeShorter(timeout, remaining > 0 ? remaining : 0);
        }
    });
    return timeout;
}

void PollProcessor::RebuildTable() {
    table_.clear();
    items_.ForEach([this](PollItem* item) {
        int fd = item->GetFd();
        if (item->GetEvents() != 0 && fd >= 0)
            table_.push_back(pollfd{fd, item->GetEvents(), 0});
    });
    table_stale_ = false;
}

PollItem* PollProcessor::FindItem(int fd) {
    PollItem* found = nullptr;
    items_.ForEach([&](PollItem* item) {
        if (!found && item->GetFd() == fd) found = item;
    });
    return found;
}

void PollProcessor::Dispatch() {
    // Handlers may register items and so rebuild the table; walk a copy.
    std::vector<pollfd> ready;
    for (auto& entry : table_) {
        if (entry.revents) ready.push_back(entry);
        entry.revents = 0;
    }
    struct Event { short bit; void (PollItem::*handler)(); };
    static const Event events[] = {
        {POLLPRI, &PollItem::HandlePriority}, {POLLIN, &PollItem::HandleRead},
        {POLLOUT, &PollItem::HandleWrite},    {POLLERR, &PollItem::HandleError},
        {POLLHUP, &PollItem::HandleHangUp},   {POLLNVAL, &PollItem::HandleInvalid},
    };
    for (const auto& entry : ready) {
        PollItem* item = FindItem(entry.fd);
        if (!item) continue;
        for (const auto& event : events)
            if ((entry.revents & event.bit) && item->IsRegistered()) (item->*event.handler)();
        NoteActivity();
    }
}

void PollProcessor::RunIdle() {
    const bool was_started = idle_pass_started_;
    idle_pass_started_ = true;
    bool all_done = true;
    idle_handlers_.ForEach([&](PollIdleHandler* handler) {
        if (!was_started)
            handler->done_ = false;
        else if (handler->done_)
            return;
        if (handler->HandleIdle())
            all_done = false;
        else
            handler->done_ = true;
    });
    idle_done_ = all_done;
}

PollItem::PollItem(short events, bool register_now) : events_(events) {
    if (register_now) Register();
}

PollItem::~PollItem() { Unregister(); }

void PollItem::Register() {
    if (registered_) return;
    PollProcessor& processor = PollProcessor::Instance();
    processor.items_.Add(this);
    processor.table_stale_ = true;
    registered_ = true;
}

void PollItem::Unregister() {
    if (!registered_) return;
    PollProcessor& processor = PollProcessor::Instance();
    processor.items_.Remove(this);
    processor.table_stale_ = true;
    registered_ = false;
}

void PollItem::SetEvents(short events) {
    if (events == events_) return;
    events_ = events;
    PollProcessor::Instance().table_stale_ = true;
}

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

PollIdleHandler::~PollIdleHandler() { Unregister(); }

void PollIdleHandler::Register() {
    if (registered_) return;
    PollProcessor& processor = PollProcessor::Instance();
    processor.idle_handlers_.Add(this);
    done_ = false;
    registered_ = true;
    processor.idle_done_ = false;
}

void PollIdleHandler::Unregister() {
    if (!registered_) return;
    PollProcessor::Instance().idle_handlers_.Remove(this);
    registered_ = false;
}
