#include "borealis/config/correction_factor.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(CorrectionFactor, InterpolatesTheTableAndHoldsItsEdges) {
    const struct {
        float temperature, pressure, expected;
    } cases[] = {
        // The corners and reference entries of the instrument's table.
        {-50, 50, 0.526f},  {-49, 50, 0.5269f}, {25, 50, 0.6113f},  {55, 50, 0.6548f},
        {0, 80, 0.7892f},   {-50, 100, 0.9461f}, {0, 100, 0.9654f}, {25, 100, 0.9893f},
        {25, 101, 0.9986f}, {-50, 115, 1.1206f}, {0, 115, 1.1199f}, {55, 115, 1.1718f},
        // Outside the table on either axis, the edge entry.
        {-60, 40, 0.526f},  {70, 130, 1.1718f}, {-60, 100, 0.9461f}, {25, 40, 0.6113f},
        {0, 130, 1.1199f},  {54.9999f, 115, 1.1718f}, {std::nanf(""), 50, 0.526f},
        // Halfway along each axis, and along both at the far corner.
        {25.5f, 100, (0.9893f + 0.9903f) / 2}, {25, 100.5f, (0.9893f + 0.9986f) / 2},
        {54.5f, 114.5f, (1.1602f + 1.1614f + 1.1706f + 1.1718f) / 4},
    };
    for (const auto& c : cases) {
        EXPECT_NEAR(c.expected, CorrectionFactor(c.temperature, c.pressure), 2e-6f)
            << c.temperature << " degC, " << c.pressure << " kPa";
    }
}

}  // namespace
