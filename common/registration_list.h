#ifndef COMMON_REGISTRATION_LIST_H
#define COMMON_REGISTRATION_LIST_H

#include <algorithm>
#include <cstddef>
#include <vector>

// A registration list that keeps registration order and stays valid while
// callbacks made during a walk register or unregister entries: a removed
// entry is blanked and the blanks are swept out once no walk is running.
template <typename T>
class RegistrationList {
public:
    // Appends `entry`; the same entry may be added twice.
    void Add(T* entry) { entries_.push_back(entry); }
    // Removes every occurrence of `entry`; nothing happens when it is absent.
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
    // True when no entry is registered.
    bool Empty() const {
        for (auto e : entries_)
            if (e) return false;
        return true;
    }

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

#endif
