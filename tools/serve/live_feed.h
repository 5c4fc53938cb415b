#ifndef TOOLS_SERVE_LIVE_FEED_H
#define TOOLS_SERVE_LIVE_FEED_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>

// What the browsers are told, as Server-Sent Events, from the one thread
// that talks to the analyzer to the threads that serve the browsers. A state
// (the identity, the connection, the configuration) is kept at its latest
// value and told first to every browser that comes; records pass by and are
// kept for a few seconds, so that a browser that stalled for a moment misses
// nothing and one that stalled for longer starts again from the states.
class LiveFeed {
public:
    // Where one browser is in the feed; a new one starts with the states.
    struct Cursor {
        std::uint64_t next = 0;
        bool started = false;
    };

    // Sets the state `event` to `data` (one line) and tells every browser.
    void SetState(const std::string& event, const std::string& data);
    // Tells every browser `data` (one line) as the event `event`.
    void Publish(const std::string& event, const std::string& data);
    // The events after `cursor` as the text of an event stream, waiting up
    // to `wait` for one; empty when none came or the feed is closed.
    std::string Next(Cursor& cursor, std::chrono::milliseconds wait);
    // Ends every Next at once, and every one after.
    void Close();
    bool Closed() const;

private:
    void Append(const std::string& text);
    std::string States() const;

    mutable std::mutex mutex_;
    std::condition_variable arrived_;
    std::map<std::string, std::string> states_;  // event name: its text in the stream
    std::deque<std::string> kept_;               // the events numbered first_ onwards
    std::uint64_t first_ = 0;
    bool closed_ = false;
};

#endif
