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

// The register value that cancels the drift.
double Ideal(double drift_ppm) { return 32768 + drift_ppm / kPpmPerStep; }

struct ServoRun {
    double unsettled_until = 0;  // hours: the last period not settled
    double late_register = 0;    // the mean register value from `late_from` on
    int acquisitions = 0;
    std::string output;
};

// A processor whose millisecond tick runs `drift_ppm` fast and is trimmed by
// the register; it sends a synchronisation message every 1000 ticks (and a
// data record just before it), which arrives 20 us plus an exponential delay
// of mean 50 us later. Its counter starts 30 minutes before it wraps. A
// period is settled when its smallest drift is within 250 us and the
// register within 40 steps (0.4 ppm) of the ideal value.
ServoRun RunServo(double drift_ppm, double hours, double late_from) {
    const std::uint32_t start_ticks = 4294967296ull - 1800000 + 10;
    const double epoch = 1700000000.0;
    std::mt19937 random(4410);
    std::exponential_distribution<double> delay(1.0 / 50e-6);

    ServoRun run;
    CaptureStdout out;
    DataClock clock;
    std::uint32_t register_value = 32768;
    double true_seconds = 0, late_periods = 0;
    bool was_valid = true;
    for (std::uint32_t sent = 1; true_seconds < hours * 3600; ++sent) {
        const double ppm = drift_ppm - kPpmPerStep * (static_cast<double>(register_value) - 32768);
        true_seconds += 1.0 / (1 + ppm * 1e-6);  // 1000 ticks
        const std::uint32_t ticks = start_ticks + sent * 1000;
        clock.SetTicks(ticks - 25);
        const double arrival = true_seconds + 20e-6 + delay(random);
        const double whole = std::floor(arrival);
        std::int32_t correction;
        const bool corrected = clock.Sync(TimePair::Of(static_cast<std::int64_t>(epoch + whole),
                                                       std::llround((arrival - whole) * 1e9)),
                                          ticks, correction);
        if (was_valid && !clock.Valid()) ++run.acquisitions;
        was_valid = clock.Valid();
        if (!corrected) continue;
        register_value = ClockYzRegisterValue(correction);
        if (std::abs(clock.LastMinDrift()) > 250000 ||
            std::abs(register_value - Ideal(drift_ppm)) > 40)
            run.unsettled_until = true_seconds / 3600;
        if (true_seconds >= late_from * 3600) {
            run.late_register += register_value;
            ++late_periods;
        }
    }
    run.late_register /= late_periods;
    run.output = out.Text();
    return run;
}

TEST(DataClockServo, SettlesOnADriftingProcessor) {
    for (double drift_ppm : {50.0, -50.0, 0.0}) {
        SCOPED_TRACE(drift_ppm);
        const ServoRun run = RunServo(drift_ppm, 12, 6);
        EXPECT_EQ(1, run.acquisitions);  // the counter's wrap included
        EXPECT_LT(run.unsettled_until, 6);
        EXPECT_LT(std::abs(run.late_register - Ideal(drift_ppm)), 3);
        EXPECT_EQ("Sync(): Tick rollover\nSetTicks(): Tick rollover\n", run.output);
    }
}

}  // namespace
