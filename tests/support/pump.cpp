#include "tests/support/pump.h"

#include "common/poll_processor.h"

bool PumpUntil(const std::function<bool()>& done, std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        PollProcessor::Instance().Poll(10);
    }
    return true;
}
