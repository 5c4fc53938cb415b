#include "borealis/hub/box_samples.h"

#include <algorithm>

namespace {

const TimePair kLateBy = TimePair::Of(1, 0);         // a sample precedes its record by 1 s
const TimePair kWindow = TimePair::Of(0, 25000000);  // one record period
const TimePair kAheadBy = TimePair::Of(5, 0);        // beyond this a stamp is not believed

}  // namespace

void BoxSampleQueue::Push(const TimePair& stamp, const std::array<float, 4>& values) {
    if (samples_.size() == kMostSamples) samples_.pop_front();
    samples_.push_back({stamp, values});
}

bool BoxSampleQueue::Take(const TimePair& time, std::array<float, 4>& values) {
    const TimePair lower = time - kLateBy;
    const TimePair upper = time + kAheadBy;
    const TimePair window_end = lower + kWindow;
    while (!samples_.empty()) {
        const Sample& oldest = samples_.front();
        if (oldest.stamp < lower || upper < oldest.stamp) {
            samples_.pop_front();
            continue;
        }
        if (!(oldest.stamp < window_end)) {
            return false;
        }
        smallest_length_at_match_ = std::min(smallest_length_at_match_, samples_.size());
        values = oldest.values;
        samples_.pop_front();
        return true;
    }
    return false;
}
