#ifndef COMMON_POLL_IDLE_HANDLER_H
#define COMMON_POLL_IDLE_HANDLER_H

// Called on quiet iterations of the poll loop until it reports that it has
// nothing more to do; it is called again after the next activity. A handler
// starts unregistered.
class PollIdleHandler {
public:
    PollIdleHandler() = default;
    PollIdleHandler(const PollIdleHandler&) = delete;
    PollIdleHandler& operator=(const PollIdleHandler&) = delete;
    // Leaves the loop.
    virtual ~PollIdleHandler();

    // True asks to be called again on the next quiet iteration.
    virtual bool HandleIdle() = 0;

    // Joins the loop, which stops blocking until the handler has had its
    // turn; does nothing when registered. Never fails.
    void Register();
    // Leaves the loop; does nothing when not registered. Never fails.
    void Unregister();

private:
    friend class PollProcessor;
    bool registered_ = false;
    bool done_ = false;
};

#endif
