#ifndef SIM_PROCESSOR_TIME_H
#define SIM_PROCESSOR_TIME_H

#include <time.h>

#include <cstdint>

// The time the simulated processor lives on. Real time: its counter runs on
// the monotonic clock and frames are stamped with the system time. Manual
// time: time stands still until it is advanced, and frames are stamped with
// a fixed epoch plus the time advanced so far, so that every run of a
// scenario gives the daemon the same frames at the same stamps.
class ProcessorTime {
public:
    static ProcessorTime Real() { return ProcessorTime(false, 0); }
    // Stands at zero, stamped as `epoch_seconds` of the system time.
    static ProcessorTime Manual(std::int64_t epoch_seconds) {
        return ProcessorTime(true, epoch_seconds);
    }

    bool IsManual() const { return manual_; }
    // Nanoseconds on the clock that the processor's counter runs on.
    std::int64_t NowNs() const;
    // The system time at which a frame sent now arrives.
    timespec Stamp() const;
    // Manual time only: moves the time on to `ns`; never backwards.
    void AdvanceTo(std::int64_t ns);

private:
    ProcessorTime(bool manual, std::int64_t epoch_seconds)
        : manual_(manual), epoch_seconds_(epoch_seconds) {}

    bool manual_;
    std::int64_t epoch_seconds_;
    std::int64_t manual_ns_ = 0;
};

#endif
