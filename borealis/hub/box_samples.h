#ifndef BOREALIS_HUB_BOX_SAMPLES_H
#define BOREALIS_HUB_BOX_SAMPLES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>

#include "borealis/dsp/time_pair.h"

// The interface box's analog samples (four inputs, which become AUX5 to
// AUX8), queued with their times until the data record they belong to
// arrives.
//
// A sample belongs to a record at time t when it was taken in the 25 ms
// that start one second before t. Older samples, and any stamped more than
// 5 s after t (a box clock gone astray), can never match and are dropped; a
// sample between the two waits for a later record.
//
// The queue holds at most kMostSamples: 25 s of a box that reports at the
// record rate, while a box that floods the daemon, or records that stop
// coming, cannot make it grow. The oldest sample goes first.
class BoxSampleQueue {
public:
    static constexpr std::size_t kMostSamples = 1024;

    // Queues a sample taken at `stamp`, behind the earlier ones, dropping
    // the oldest when the queue is full.
    void Push(const TimePair& stamp, const std::array<float, 4>& values);
    // Fills `values` with the sample that belongs to the record at `time`
    // and removes it, dropping stale samples on the way; false (values
    // untouched) when no sample matched.
    bool Take(const TimePair& time, std::array<float, 4>& values);

    // Samples queued.
    std::size_t Size() const { return samples_.size(); }
    // Forgets every queued sample (the statistic stays).
    void Clear() { samples_.clear(); }
    // The shortest queue seen when a sample matched, counting the matched
    // sample; SIZE_MAX until the first match.
    std::size_t SmallestLengthAtMatch() const { return smallest_length_at_match_; }

private:
    struct Sample {
        TimePair stamp;
        std::array<float, 4> values;
    };

    std::deque<Sample> samples_;
    std::size_t smallest_length_at_match_ = SIZE_MAX;
};

#endif
