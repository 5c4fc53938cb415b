#include "common/poll_processor.h"

#include <algorithm>
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

// One walk of the list indexes every descriptor, so that a loop serving
// many clients does not walk the whole list once for each ready one.
void PollProcessor::IndexItems() {
    std::fill(item_by_fd_.begin(), item_by_fd_.end(), nullptr);
    items_.ForEach([this](PollItem* item) {
        const int fd = item->GetFd();
        if (fd < 0) return;
        if (static_cast<std::size_t>(fd) >= item_by_fd_.size()) item_by_fd_.resize(fd + 1);
        if (!item_by_fd_[fd]) item_by_fd_[fd] = item;
    });
}

// What FindItem(fd) answers, from the index while no item joined or left
// since it was taken (a departed item may already be deleted) and the item
// it names still holds the descriptor; otherwise by walking the list.
PollItem* PollProcessor::ItemOf(int fd, unsigned indexed_version) {
    if (indexed_version == items_version_ && fd >= 0 &&
        static_cast<std::size_t>(fd) < item_by_fd_.size()) {
        PollItem* item = item_by_fd_[fd];
        if (item && item->GetFd() == fd) return item;
    }
    return FindItem(fd);
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
    IndexItems();
    const unsigned indexed_version = items_version_;
    for (const auto& entry : ready) {
        PollItem* item = ItemOf(entry.fd, indexed_version);
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
