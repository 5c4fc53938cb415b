#ifndef TESTS_SUPPORT_PUMP_H
#define TESTS_SUPPORT_PUMP_H

#include <chrono>
#include <functional>

// Runs the poll loop until `done` holds; false when the deadline passed first.
bool PumpUntil(const std::function<bool()>& done,
               std::chrono::milliseconds deadline = std::chrono::seconds(10));

#endif
