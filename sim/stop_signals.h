#ifndef SIM_STOP_SIGNALS_H
#define SIM_STOP_SIGNALS_H

#include <functional>

#include "sim/event_loop.h"

// SIGINT and SIGTERM delivered through the loop, so that a stop request
// that arrives at any moment ends the loop cleanly. Blocks both signals for
// the process while it exists.
class StopSignals {
public:
    // Calls `stop` when either signal arrives; throws ErrnoError when the
    // signals cannot be taken over.
    StopSignals(EventLoop& loop, std::function<void()> stop);
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

private:
    EventLoop& loop_;
    int fd_;
};

#endif
