#include "sim/processor_time.h"

#include "sim/event_loop.h"

std::int64_t ProcessorTime::NowNs() const { return manual_ ? manual_ns_ : MonotonicNs(); }

timespec ProcessorTime::Stamp() const {
    timespec stamp{};
    if (!manual_) {
        ::clock_gettime(CLOCK_REALTIME, &stamp);
        return stamp;
    }
    stamp.tv_sec = static_cast<time_t>(epoch_seconds_ + manual_ns_ / 1000000000);
    stamp.tv_nsec = static_cast<long>(manual_ns_ % 1000000000);
    return stamp;
}

void ProcessorTime::AdvanceTo(std::int64_t ns) {
    if (manual_ && ns > manual_ns_) manual_ns_ = ns;
}
