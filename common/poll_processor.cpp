#include "common/poll_processor.h"

#include <cerrno>

#include "common/errno_error.h"

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
        if (item->GetEvents() != 0 && fd >= 0) table_.push_back(pollfd{fd, item->GetEvents(), 0});
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
    struct Event {
        short bit;
        void (PollItem::*handler)();
    };
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
