// The clock servo closed around a model signal processor on a simulated time
// axis: hours of synchronisation messages in a fraction of a second.
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "borealis/dsp/data_clock.h"
#include "tests/support/capture_stdout.h"

namespace {

// Trim model of the CPLD: one register step slows the processor's tick by
// 0.01 ppm around the centre 32768, so the register spans about +-330 ppm.
// The servo's integral term is limited to +-10000 steps (one second of
// accumulated drift over the integral divisor), which then reaches
// +-100 ppm: twice a crystal's usual tolerance of +-50 ppm, leaving the
// proportional term free to remove the phase error.
const double kPpmPerStep = 0.01;

struct Period {
    double hours;
    std::int32_t min_drift;
    std::uint32_t register_value;
};

struct ServoRun {
    std::vector<Period> periods;
    int acquisitions = 0;
    std::string output;
};

// A processor whose millisecond tick runs `drift_ppm` fast and is trimmed by
// the register; it sends a synchronisation message every 1000 ticks (and a
// data record just before it), which arrives 20 us plus an exponential delay
// of mean 50 us later. Its counter starts 30 minutes before it wraps.
ServoRun RunServo(double drift_ppm, double hours) {
    const std::uint32_t start_ticks = 4294967296ull - 1800000 + 10;
    const double epoch = 1700000000.0;
    std::mt19937 random(4410);
    std::exponential_distribution<double> delay(1.0 / 50e-6);

    ServoRun run;
    CaptureStdout out;
    DataClock clock;
    std::uint32_t register_value = 32768;
    double true_seconds = 0;
    bool was_valid = true;
    for (std::uint32_t sent = 1; true_seconds < hours * 3600; ++sent) {
        const double ppm = drift_ppm - kPpmPerStep * (static_cast<double>(register_value) - 32768);
        true_seconds += 1.0 / (1 + ppm * 1e-6);  // 1000 ticks
        const std::uint32_t ticks = start_ticks + sent * 1000;
        clock.SetTicks(ticks - 25);
        const double arrival = true_seconds + 20e-6 + delay(random);
        const double whole = std::floor(arrival);
        std::int32_t correction;
        const bool corrected = clock.Sync(
            TimePair::Of(static_cast<std::int64_t>(epoch + whole),
                         std::llround((arrival - whole) * 1e9)),
            ticks, correction);
        if (was_valid && !clock.Valid()) ++run.acquisitions;
        was_valid = clock.Valid();
        if (!corrected) continue;
        register_value = ClockYzRegisterValue(correction);
        run.periods.push_back({true_seconds / 3600, clock.LastMinDrift(), register_value});
    }
    run.output = out.Text();
    return run;
}

TEST(DataClockServo, SettlesOnADriftingProcessor) {
    const double kHours = 12, kSettledFrom = 6;
    for (double drift_ppm : {50.0, -50.0, 0.0}) {
        SCOPED_TRACE(drift_ppm);
        const ServoRun run = RunServo(drift_ppm, kHours);
        const double ideal = 32768 + drift_ppm / kPpmPerStep;
        // Settled: the period's smallest drift within 250 us and the
        // register within 40 steps (0.4 ppm) of the value that cancels the drift.
        double settled = 0, mean_register = 0, count = 0;
        for (const Period& p : run.periods) {
            if (std::abs(p.min_drift) > 250000 || std::abs(p.register_value - ideal) > 40)
                settled = p.hours;
            if (p.hours >= kSettledFrom) {
                mean_register += p.register_value;
                ++count;
            }
        }
        mean_register /= count;

        EXPECT_EQ(1, run.acquisitions);  // the counter's wrap included
        EXPECT_LT(settled, kSettledFrom);
        EXPECT_LT(std::abs(mean_register - ideal), 3);
        EXPECT_EQ("Sync(): Tick rollover\nSetTicks(): Tick rollover\n", run.output);
    }
}

}  // namespace
