#include "borealis/dsp/data_clock.h"

#include <gtest/gtest.h>

#include "tests/support/capture_stdout.h"

void PrintTo(const TimePair& t, std::ostream* out) {
    *out << "(" << t.seconds << ", " << t.nanoseconds << ")";
}

namespace {

const std::int32_t kEpoch = 1700000000;

TimePair At(std::int64_t nanoseconds) { return TimePair::Of(kEpoch, nanoseconds); }

TEST(TimePair, NormalisesToTheSignOfTheSeconds) {
    const struct {
        std::int64_t seconds, nanoseconds;
        std::int32_t expect_seconds, expect_nanoseconds;
    } cases[] = {
        {1, -1, 0, 999999999},
        {0, -1, 0, -1},
        {-1, 1, 0, -999999999},
        {2, 2500000000, 4, 500000000},
        {-2, -1500000000, -3, -500000000},
        {1, -1500000000, 0, -500000000},
        {0, 1000000000, 1, 0},
    };
    for (const auto& c : cases) {
        const TimePair t = TimePair::Of(c.seconds, c.nanoseconds);
        EXPECT_EQ(c.expect_seconds, t.seconds) << c.seconds << " " << c.nanoseconds;
        EXPECT_EQ(c.expect_nanoseconds, t.nanoseconds) << c.seconds << " " << c.nanoseconds;
    }
    EXPECT_EQ(TimePair::Of(0, -100), TimePair::Of(5, 100) - TimePair::Of(5, 200));
    EXPECT_TRUE(TimePair::Of(-1, -5) < TimePair::Of(0, -3));
}

TEST(DataClock, TickRolloverAdvancesRecordTime) {
    DataClock clock;
    clock.SetTicks(4294967290u);
    const TimePair before = clock.Time(4294967290u);
    CaptureStdout out;
    clock.SetTicks(5);
    EXPECT_EQ(TimePair::Of(0, 11000000), clock.Time(5) - before);
    EXPECT_EQ("SetTicks(): Tick rollover\n", out.Text());
}

// A clock acquired from three synchronisation messages of a processor whose
// tick 0 fell at kEpoch + 0.3 ms, delayed by 0.8, 0.2 and 0.5 ms on the way.
void Acquire(DataClock& clock) {
    std::int32_t correction = -1;
    clock.SetTicks(123450);
    EXPECT_TRUE(clock.Sync(At(123457 * 1000000ll + 300000 + 800000), 123457, correction));
    EXPECT_EQ(0, correction);
    EXPECT_FALSE(clock.Valid());
    EXPECT_FALSE(clock.Sync(At(124457 * 1000000ll + 300000 + 200000), 124457, correction));
    clock.SetTicks(125440);
    EXPECT_FALSE(clock.Sync(At(125457 * 1000000ll + 300000 + 500000), 125457, correction));
    EXPECT_TRUE(clock.Valid());
}

TEST(DataClock, AcquiresEarliestBaseOnTheRecordGrid) {
    CaptureStdout out;
    DataClock clock(true);
    Acquire(clock);
    // Earliest candidate 0.5 ms, that is tick 1; tick 1 + 125440 is 16 past
    // the 25-tick grid, so the base moves on to tick 10.
    EXPECT_EQ(At(10000000), clock.Base());
    EXPECT_EQ(0, clock.Time(125440).nanoseconds % 25000000);
    EXPECT_EQ("_offset=1700000000.000500000\nticks_remainder=16\n_offset=1700000000.010000000\n",
              out.Text());
}

TEST(DataClock, CorrectsOncePerPeriodWithinTheRegisterRange) {
    const struct {
        std::int64_t offset;  // how late each message arrives after acquisition
        std::vector<std::int32_t> corrections;
        std::int32_t last_min_drift;
    } cases[] = {
        {-1000000, {110, 120}, -1000000},     // integral and proportional terms
        {400000000, {0, -32767}, 400000000},  // the first period's minimum is 0
        {-400000000, {32768, 32768}, -400000000},
        {1000000000, {0}, 0},  // a second off: acquire again
    };
    for (const auto& c : cases) {
        DataClock clock;
        Acquire(clock);
        std::vector<std::int32_t> corrections;
        for (std::uint32_t ticks = 126457; ticks <= 128457; ticks += 1000) {
            std::int32_t correction;
            if (clock.Sync(clock.Base() + TimePair::Of(0, ticks * 1000000ll + c.offset), ticks,
                           correction))
                corrections.push_back(correction);
        }
        EXPECT_EQ(c.corrections, corrections) << c.offset;
        EXPECT_EQ(c.last_min_drift, clock.LastMinDrift()) << c.offset;
    }
}

TEST(DataClock, RegisterValueIsCentredAndLimited) {
    const struct {
        std::int32_t correction;
        std::uint32_t value;
    } cases[] = {
        {0, 32768}, {110, 32878}, {32768, 65535}, {-32767, 1}, {40000, 65535}, {-40000, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.value, ClockYzRegisterValue(c.correction)) << c.correction;
}

}  // namespace
