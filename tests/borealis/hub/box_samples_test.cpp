#include "borealis/hub/box_samples.h"

#include <gtest/gtest.h>

namespace {

using Values = std::array<float, 4>;

TEST(BoxSampleQueue, DropsStaleSamplesTakesTheMatchAndKeepsLaterOnes) {
    const TimePair record = TimePair::Of(1000, 500000000);  // window 999.5 .. 999.525
    BoxSampleQueue queue;
    queue.Push(TimePair::Of(1005, 500000001), {9, 9, 9, 9});  // more than 5 s ahead: dropped
    queue.Push(TimePair::Of(999, 499999999), {9, 9, 9, 9});   // before the window: dropped
    queue.Push(TimePair::Of(999, 500000000), {1, 2, 3, 4});   // opens the window: taken
    queue.Push(TimePair::Of(999, 525000000), {5, 6, 7, 8});   // closes it: waits
    queue.Push(TimePair::Of(1005, 500000000), {9, 9, 9, 9});  // 5 s ahead: waits
    Values values{};
    EXPECT_TRUE(queue.Take(record, values));
    EXPECT_EQ((Values{1, 2, 3, 4}), values);
    EXPECT_EQ(3u, queue.SmallestLengthAtMatch());
    EXPECT_FALSE(queue.Take(record, values));
    EXPECT_EQ(2u, queue.Size());
    EXPECT_TRUE(queue.Take(record + TimePair::Of(0, 25000000), values));
    EXPECT_EQ((Values{5, 6, 7, 8}), values);
}

TEST(BoxSampleQueue, AFloodKeepsOnlyTheNewestSamples) {
    BoxSampleQueue queue;
    for (std::size_t i = 0; i <= BoxSampleQueue::kMostSamples; ++i)
        queue.Push(TimePair::Of(999, 500000000 + i), {float(i), 0, 0, 0});
    Values values{};
    ASSERT_TRUE(queue.Take(TimePair::Of(1000, 500000000), values));
    EXPECT_EQ(1, values[0]) << "the oldest sample went first";
}

}  // namespace
