#include "borealis/upkeep/wash_schedule.h"

#include <functional>
#include <vector>

#include <gtest/gtest.h>

namespace {

// Checks at `times`, in order, all with the same level and expectation.
struct Checks {
    std::vector<int> times;
    int level;
    std::function<bool(int)> expected;
};

std::vector<int> Seconds(int from, int to) {
    std::vector<int> times;
    for (int t = from; t <= to; ++t) times.push_back(t);
    return times;
}

const auto kRuns = [](int) { return true; };
const auto kIdle = [](int) { return false; };

// Each case: Set() arguments, the checks in order, then checks after Disable().
TEST(WashSchedule, DecidesEachSlotAtItsFirstCheck) {
    struct {
        const char* name;
        int set[5];  // threshold, on, off, slot, period
        std::vector<Checks> checks, disabled;
    } const cases[] = {
        {"slots of 10 s every 100 s",
         {30, 1001, 2001, 10, 100},
         {{{0, 1, 999, 1000}, 10, kIdle},
          {{1001, 1002, 1009, 1010}, 10, kRuns},
          {{1011, 1012, 1100}, 10, kIdle},
          {{1101}, 10, kRuns},
          {{1111}, 10, kIdle},
          {{1200, 1201, 1202, 1210, 1211}, 50, kIdle},  // a good signal skips the slot
          {{1300, 1301}, 60, kIdle},
          {{1302, 1310, 1311}, 10, kIdle},  // skipped to its end
          {{1400}, 15, kIdle},
          {{1401}, 15, kRuns},
          {{1402, 1403, 1410}, 60, kRuns},  // runs on
          {{1411}, 60, kIdle},
          {{1500}, 10, kIdle},
          {{1505}, 10, kRuns},  // entered late
          {{1510}, 60, kRuns},
          {{1511}, 60, kIdle},
          {{1600}, 15, kIdle},
          {{1605}, 60, kIdle},
          {{1606, 1610, 1611}, 15, kIdle},
          {{2001, 2002, 3001, 4999, 86201}, 10, kIdle}},
         {}},
        {"slot equal to the period",
         {30, 200, 2000, 300, 300},
         {{{199}, 10, kIdle},
          {{200, 201, 250, 498, 499}, 10, kRuns},
          {{500, 501, 501, 799}, 40, kIdle},
          {{800}, 10, kRuns},
          {{801, 1099}, 40, kRuns},
          {{1100}, 40, kIdle}},
         {{{0, 1, 86398, 86399}, 10, kIdle}}},
        {"off equal to on: the whole day",
         {30, 0, 0, 15, 1800},
         {{Seconds(0, 86399), 20, [](int t) { return t % 1800 < 15; }},
          {{-5, 86400, 90000}, 20, kRuns}},  // clamped to midnight
         {{Seconds(0, 86400), 0, kIdle}}},
        {"window to the end of the day",
         {30, 86350, 86400, 10, 21},
         {{Seconds(0, 86349), 20, kIdle},
          {{86350}, 20, kRuns},
          {Seconds(86351, 86359), 40, kRuns},
          {Seconds(86360, 86370), 20, kIdle},
          {Seconds(86371, 86380), 20, kRuns},
          {Seconds(86381, 86391), 20, kIdle},
          {Seconds(86392, 86399), 20, kRuns},
          {Seconds(0, 19), 20, kIdle}},
         {}},
        {"a slot every 3 s after midnight",
         {30, 0, 20, 1, 3},
         {{Seconds(86390, 86399), 20, kIdle},
          {Seconds(0, 19), 20, [](int t) { return t % 3 == 0; }}},
         {}},
        {"a new slot at midnight",
         {30, 86100, 300, 300, 300},
         {{{86399}, 10, kRuns}, {{0, 1}, 50, kIdle}},
         {}},
        {"window across midnight",
         {30, 86350, 10, 60, 60},
         {{Seconds(0, 9), 20, kRuns},
          {Seconds(10, 86349), 20, kIdle},
          {Seconds(86350, 86399), 20, kRuns},
          {Seconds(0, 9), 20, kRuns},
          {Seconds(10, 20), 20, kIdle}},
         {}},
    };
    for (const auto& test : cases) {
        WashSchedule schedule;
        schedule.Set(test.set[0], test.set[1], test.set[2], test.set[3], test.set[4]);
        for (const auto* checks : {&test.checks, &test.disabled}) {
            if (checks == &test.disabled) schedule.Disable();
            for (const Checks& check : *checks)
                for (int t : check.times)
                    ASSERT_EQ(schedule.RunSchedule(t, check.level), check.expected(t))
                        << test.name << ", t " << t << ", level " << check.level;
        }
    }
}

TEST(WashSlotsFor, MirrorStopsBeforeThePeriodEndsAndThePumpBeforeTheMirror) {
    struct {
        int duration, repeat, wash_slot, period, pump_slot;
    } const cases[] = {
        {30, 1800, 30, 1800, 20},       {300, 60, 50, 60, 40}, {300, 30, 50, 60, 40},
        {1795, 1800, 1790, 1800, 1780}, {11, 600, 11, 600, 1}, {10, 600, 10, 600, 0},
    };
    for (const auto& c : cases) {
        const WashSlots slots = WashSlotsFor(c.duration, c.repeat);
        EXPECT_EQ((std::vector<int>{slots.wash_slot, slots.period, slots.pump_slot}),
                  (std::vector<int>{c.wash_slot, c.period, c.pump_slot}))
            << c.duration << " s every " << c.repeat << " s";
    }
}

}  // namespace
