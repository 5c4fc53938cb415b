#ifndef SIM_EVENT_LOOP_H
#define SIM_EVENT_LOOP_H

#include <poll.h>

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

// Nanoseconds of the monotonic clock: the simulator's timers and its
// processor's tick counter run on it, so setting the system time moves
// neither.
std::int64_t MonotonicNs();

class Timer;

// The simulator's one loop: polls watched descriptors and fires timers, whose
// due times become the poll time-out.
class EventLoop {
public:
    using Handler = std::function<void(short revents)>;

    // Calls `handler` with the returned events whenever `fd` shows `events`;
    // watching a descriptor again replaces its handler.
    void Watch(int fd, short events, Handler handler);
    // Changes the events wanted on a watched descriptor.
    void SetEvents(int fd, short events);
    // Stops watching `fd`; safe from inside its own handler.
    void Forget(int fd);

    // One poll and the handlers and timers it makes due; throws ErrnoError
    // when poll fails for another reason than a signal.
    void RunOnce();
    // Runs until `Stop` is called.
    void Run();
    void Stop() { stopped_ = true; }

private:
    friend class Timer;
    struct Watched {
        short events;
        Handler handler;
    };
    // Nanoseconds until the next timer is due; -1 when none is armed.
    std::int64_t WaitNs() const;
    void FireDueTimers();

    std::map<int, Watched> watched_;
    std::vector<Timer*> timers_;
    bool stopped_ = false;
};

// A one-shot timer on the monotonic clock; a periodic task starts it again
// from its callback.
class Timer {
public:
    Timer(EventLoop& loop, std::function<void()> callback);
    ~Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    // Fires the callback once the monotonic clock reaches `due_ns`.
    void StartAt(std::int64_t due_ns);
    void Stop() { armed_ = false; }
    bool Armed() const { return armed_; }

private:
    friend class EventLoop;
    EventLoop& loop_;
    std::function<void()> callback_;
    std::int64_t due_ns_ = 0;
    bool armed_ = false;
};

#endif
