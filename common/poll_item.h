#ifndef COMMON_POLL_ITEM_H
#define COMMON_POLL_ITEM_H

// Base of everything the poll loop watches: a descriptor and the events
// wanted on it. A subclass overrides the handlers of the events it asks for;
// the loop calls them with the item still registered.
class PollItem {
public:
    // Stores `events` (a poll(2) mask) and registers at once when asked.
    explicit PollItem(short events, bool register_now = true);
    PollItem(const PollItem&) = delete;
    PollItem& operator=(const PollItem&) = delete;
    // Leaves the loop.
    virtual ~PollItem();

    // The descriptor to watch; the item is left out while it is negative.
    virtual int GetFd() = 0;
    // POLLIN; does nothing by default.
    virtual void HandleRead() {}
    // POLLPRI; reads by default.
    virtual void HandlePriority() { HandleRead(); }
    // POLLOUT; does nothing by default.
    virtual void HandleWrite() {}
    // POLLERR; does nothing by default.
    virtual void HandleError() {}
    // POLLNVAL; does nothing by default.
    virtual void HandleInvalid() {}
    // POLLHUP; does nothing by default.
    virtual void HandleHangUp() {}
    // A name for diagnostics.
    virtual const char* GetName() { return "PollItem"; }

    // Joins the loop after the items already there; does nothing when
    // registered. Never fails.
    void Register();
    // Leaves the loop, even from inside a handler; does nothing when not
    // registered. Never fails.
    void Unregister();
    // Asks for `events` from the next iteration on; 0 leaves the item out.
    void SetEvents(short events);
    // The events asked for.
    short GetEvents() const { return events_; }
    // True between Register and Unregister.
    bool IsRegistered() const { return registered_; }

private:
    short events_;
    bool registered_ = false;
};

#endif
