#ifndef COMMON_POLL_PROCESSOR_H
#define COMMON_POLL_PROCESSOR_H

#include <poll.h>
#include <sys/time.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

class PollItem;
class PollTimer;
class PollIdleHandler;

// A registration list that keeps registration order and stays valid while
// callbacks made during a walk register or unregister entries: a removed
// entry is blanked and the blanks are swept out once no walk is running.
template <typename T>
class RegistrationList {
public:
    void Add(T* entry) { entries_.push_back(entry); }
    void Remove(T* entry) {
        for (auto& e : entries_)
            if (e == entry) e = nullptr;
        Sweep();
    }
    // Calls f(entry) for every entry present when the walk reaches it,
    // including entries added during the walk. When f throws (a listener's
    // failure is caught further up) the walk still ends, or the blanks of
    // later removals would pile up for good.
    template <typename F>
    void ForEach(F f) {
        Walk walk(*this);
        for (std::size_t i = 0; i < entries_.size(); ++i)
            if (entries_[i]) f(entries_[i]);
    }
    bool Empty() const {
        for (auto e : entries_)
            if (e) return false;
        return true;
    }

    // Slots held, blanks not yet swept included.
    std::size_t Slots() const { return entries_.size(); }

private:
    struct Walk {
        explicit Walk(RegistrationList& list) : list(list) { ++list.walking_; }
        ~Walk() {
            --list.walking_;
            list.Sweep();
        }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        RegistrationList& list;
    };

    void Sweep() {
        if (walking_) return;
        entries_.erase(std::remove(entries_.begin(), entries_.end(), nullptr), entries_.end());
    }
    std::vector<T*> entries_;
    int walking_ = 0;
};

// The millisecond clock of the poll loop. It follows the wall clock, but a
// forward jump of more than ten seconds, or any backward step, advances it by
// one second only, so that timers survive the system time being set.
class MillisecondClock {
public:
    // The reading for a wall-clock time of `seconds` and `microseconds`.
    std::int32_t Read(std::uint32_t seconds, long microseconds);

    // `ms` after the reading `at`, and the milliseconds from `earlier` to
    // `later`. Readings pass from 2^31 - 1 to -2^31 after 24.8 days of
    // running, so both wrap around instead of overflowing.
    static std::int32_t Add(std::int32_t at, std::int32_t ms);
    static std::int32_t Difference(std::int32_t later, std::int32_t earlier);

private:
    std::uint32_t last_seconds_ = 0;
    std::uint32_t base_seconds_ = 0;
};

// Carries whole seconds out of a time-out's microseconds.
void NormaliseTimeout(struct timeval& timeout);

// The one event loop of the process: polls the descriptors of registered
// items, fires due timers and gives idle handlers a turn when nothing else
// is pending.
class PollProcessor {
public:
    static PollProcessor& Instance();

    // One iteration of the loop; -1 waits without limit.
    void Poll(std::int32_t timeout_ms);
    // The millisecond clock; only differences below 24 days are meaningful.
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
    void RunIdle();
    void NoteActivity() { idle_pass_started_ = idle_done_ = false; }

    std::vector<pollfd> table_;
    RegistrationList<PollItem> items_;
    RegistrationList<PollTimer> timers_;
    RegistrationList<PollIdleHandler> idle_handlers_;
    bool table_stale_ = true;
    bool idle_pass_started_ = false;
    bool idle_done_ = false;
};

// Base of everything the loop polls: a descriptor and the events wanted.
class PollItem {
public:
    explicit PollItem(short events, bool register_now = true);
    PollItem(const PollItem&) = delete;
    PollItem& operator=(const PollItem&) = delete;
    virtual ~PollItem();

    virtual int GetFd() = 0;
    virtual void HandleRead() {}
    virtual void HandlePriority() { HandleRead(); }
    virtual void HandleWrite() {}
    virtual void HandleError() {}
    virtual void HandleInvalid() {}
    virtual void HandleHangUp() {}
    virtual const char* GetName() { return "PollItem"; }

    void Register();
    void Unregister();
    void SetEvents(short events);
    short GetEvents() const { return events_; }
    bool IsRegistered() const { return registered_; }

private:
    short events_;
    bool registered_ = false;
};

// A one-shot timer on the loop's millisecond clock; a periodic timer
// re-arms itself in HandleTimer().
class PollTimer {
public:
    PollTimer() = default;
    PollTimer(const PollTimer&) = delete;
    PollTimer& operator=(const PollTimer&) = delete;
    virtual ~PollTimer();

    virtual void HandleTimer() = 0;

    void Register();
    void Unregister();
    // Arms the timer `ms` from now; a negative value disarms it.
    void Start(std::int32_t ms);
    bool IsArmed() const { return armed_; }

private:
    friend class PollProcessor;
    std::int32_t due_ = 0;
    bool registered_ = false;
    bool armed_ = false;
};

// Called on quiet iterations until it reports that it has nothing more to do.
class PollIdleHandler {
public:
    PollIdleHandler() = default;
    PollIdleHandler(const PollIdleHandler&) = delete;
    PollIdleHandler& operator=(const PollIdleHandler&) = delete;
    virtual ~PollIdleHandler();

    // True asks to be called again on the next quiet iteration.
    virtual bool HandleIdle() = 0;

    void Register();
    void Unregister();

private:
    friend class PollProcessor;
    bool registered_ = false;
    bool done_ = false;
};

#endif
