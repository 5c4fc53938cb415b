#include "sim/span_gas.h"

#include "borealis/config/correction_factor.h"

float SpanGasDensity(float ppm, float temperature, float pressure) {
    // Single precision where the daemon's span computation has it, so that
    // the span comes out at 1 to the last bit or two.
    const float product = pressure * ppm;
    const auto density =
        static_cast<float>(product / (8.314 * (static_cast<double>(temperature) + 273.15)));
    return density / CorrectionFactor(temperature, pressure);
}
