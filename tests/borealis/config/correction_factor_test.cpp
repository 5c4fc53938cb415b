#include "borealis/config/correction_factor.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(CorrectionFactor, InterpolatesTheTableAndHoldsItsEdges) {
    const struct {
        float temperature, pressure, expected;
    } cases[] = {
        // Corners and reference entries; outside the table (or NaN) the edge entry.
        {-50, 50, 0.526f},
        {55, 50, 0.6548f},
        {-50, 115, 1.1206f},
        {55, 115, 1.1718f},
        {25, 101, 0.9986f},
        {-60, 40, 0.526f},
        {70, 130, 1.1718f},
        {25, 40, 0.6113f},
        {0, 130, 1.1199f},
        {std::nanf(""), 50, 0.526f},
        // Halfway along each axis, and along both at the far corner.
        {25.5f, 100, (0.9893f + 0.9903f) / 2},
        {25, 100.5f, (0.9893f + 0.9986f) / 2},
        {54.5f, 114.5f, (1.1602f + 1.1614f + 1.1706f + 1.1718f) / 4},
        {54.9999f, 115, 1.1718f},
    };
    for (const auto& c : cases) {
        EXPECT_NEAR(c.expected, CorrectionFactor(c.temperature, c.pressure), 2e-6f)
            << c.temperature << " degC, " << c.pressure << " kPa";
    }
}

}  // namespace
