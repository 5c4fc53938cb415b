#include "borealis/upkeep/spin_sequencer.h"

#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(SpinSequencer, SpinsWhileRunningThenIdlesOnceAndSettlesForThreeTicks) {
    SpinSequencer sequencer;
    std::vector<int> codes;
    for (int i = 0; i < 5; ++i) codes.push_back(sequencer.Step());  // start-up
    codes.push_back(sequencer.Start());
    for (bool run : {true, true, false, false, false, false, false, false})
        codes.push_back(sequencer.Step(run));
    // A started wash runs on until stopped.
    for (int code : {sequencer.Start(), sequencer.Step(), sequencer.Stop()}) codes.push_back(code);
    for (int i = 0; i < 6; ++i) codes.push_back(sequencer.Step());
    EXPECT_EQ(codes, (std::vector<int>{5, 5, 5, 0, 0, 3, 3, 3, 0, 5, 5, 5,
                                       0, 0, 3, 3, 0, 0, 5, 5, 5, 0, 0}));
}

}  // namespace
