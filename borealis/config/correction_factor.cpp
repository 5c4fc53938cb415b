#include "borealis/config/correction_factor.h"

namespace {

constexpr float kLowestTemperature = -50;
constexpr float kLowestPressure = 50;

// The cell of `x` on an axis of `count` entries starting at `lowest`, and
// how far `x` lies towards the next entry. Outside the axis the edge entry
// is taken with fraction 0, so the last entry never needs a neighbour.
struct AxisCell {
    int index;
    float fraction;
};

AxisCell Locate(float x, float lowest, int count) {
    const float highest = lowest + static_cast<float>(count - 1);
    if (!(x >= lowest)) {
        return {0, 0};
    }
    if (x >= highest) {
        return {count - 1, 0};
    }
    const float offset = x - lowest;
    const int index = static_cast<int>(offset);
    return {index, offset - static_cast<float>(index)};
}

// The row's value at the column, moved `fraction` towards the next column.
float Interpolate(const float* row, const AxisCell& column) {
    const float value = row[column.index];
    if (column.fraction == 0) {
        return value;
    }
    return value + column.fraction * (row[column.index + 1] - value);
}

}  // namespace

float CorrectionFactor(float temperature, float pressure) {
    const AxisCell column = Locate(temperature, kLowestTemperature, kCorrectionTemperatureColumns);
    const AxisCell row = Locate(pressure, kLowestPressure, kCorrectionPressureRows);
    const float a = Interpolate(kCorrectionFactors[row.index], column);
    if (row.fraction == 0) {
        return a;
    }
    const float b = Interpolate(kCorrectionFactors[row.index + 1], column);
    return a + row.fraction * (b - a);
}
