#include "tools/serve/live_feed.h"

namespace {

// Ten seconds of records at the highest rate, and the states among them.
constexpr std::size_t kKeptEvents = 400;

std::string EventText(const std::string& event, const std::string& data) {
    return "event: " + event + "\ndata: " + data + "\n\n";
}

}  // namespace

void LiveFeed::SetState(const std::string& event, const std::string& data) {
    const std::string text = EventText(event, data);
    std::lock_guard<std::mutex> lock(mutex_);
    states_[event] = text;
    Append(text);
}

void LiveFeed::Publish(const std::string& event, const std::string& data) {
    const std::string text = EventText(event, data);
    std::lock_guard<std::mutex> lock(mutex_);
    Append(text);
}

void LiveFeed::Append(const std::string& text) {
    kept_.push_back(text);
    if (kept_.size() > kKeptEvents) {
        kept_.pop_front();
        ++first_;
    }
    arrived_.notify_all();
}

std::string LiveFeed::States() const {
    std::string text;
    for (const auto& state : states_) text += state.second;
    return text;
}

std::string LiveFeed::Next(Cursor& cursor, std::chrono::milliseconds wait) {
    std::unique_lock<std::mutex> lock(mutex_);
    std::string text;
    if (!cursor.started || cursor.next < first_) {
        text = States();
        cursor = {first_ + kept_.size(), true};
    }
    const auto end = [&] { return first_ + kept_.size(); };
    if (text.empty()) arrived_.wait_for(lock, wait, [&] { return closed_ || cursor.next < end(); });
    if (closed_) return "";
    for (; cursor.next < end(); ++cursor.next) text += kept_[cursor.next - first_];
    return text;
}

void LiveFeed::Close() {
    std::lock_guard<std::mutex> lock(mutex_);
    closed_ = true;
    arrived_.notify_all();
}

bool LiveFeed::Closed() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return closed_;
}
