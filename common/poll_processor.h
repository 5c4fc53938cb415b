#ifndef COMMON_POLL_PROCESSOR_H
#define COMMON_POLL_PROCESSOR_H

#include <poll.h>
#include <sys/time.h>

#include <cstdint>
#include <vector>

#include "common/millisecond_clock.h"
#include "common/poll_idle_handler.h"
#include "common/poll_item.h"
#include "common/poll_timer.h"
#include "common/registration_list.h"

// Carries whole seconds out of a time-out's microseconds. Never fails.
void NormaliseTimeout(struct timeval& timeout);

// The one event loop of the process: polls the descriptors of registered
// items, fires due timers and gives idle handlers a turn when nothing else
// is pending.
class PollProcessor {
public:
    // The process-wide processor, made on first use.
    static PollProcessor& Instance();

    // One iteration: fires due timers, then waits at most `timeout_ms` (-1
    // without limit; not at all while an idle handler has work) and calls
    // the handlers of the ready items, or the idle handlers when none is
    // ready. A signal ends the wait early without error; any other failure
    // of poll(2) throws ErrnoError. Exceptions from callbacks pass through.
    void Poll(std::int32_t timeout_ms);
    // The millisecond clock; only differences below 24 days are meaningful.
    // Throws ErrnoError when the wall clock cannot be read.
    static std::int32_t NowMs();

private:
    friend class PollItem;
    friend class PollTimer;
    friend class PollIdleHandler;

    PollProcessor() = default;
    std::int32_t RunTimers(std::int32_t timeout_ms);
    void RebuildTable();
    void Dispatch();
    PollItem* FindItem(int fd);
    void IndexItems();
    PollItem* ItemOf(int fd, unsigned indexed_version);
    void NoteItemsChanged() {
        table_stale_ = true;
        ++items_version_;
    }
    void RunIdle();
    void NoteActivity() { idle_pass_started_ = idle_done_ = false; }

    std::vector<pollfd> table_;
    // The first registered item of each descriptor, as the dispatch takes it
    // when it starts; valid while items_version_ is unchanged.
    std::vector<PollItem*> item_by_fd_;
    unsigned items_version_ = 0;  // counts every Register and Unregister
    RegistrationList<PollItem> items_;
    RegistrationList<PollTimer> timers_;
    RegistrationList<PollIdleHandler> idle_handlers_;
    bool table_stale_ = true;
    bool idle_pass_started_ = false;
    bool idle_done_ = false;
};

#endif
