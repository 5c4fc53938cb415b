#ifndef BOREALIS_CONFIG_CORRECTION_FACTOR_H
#define BOREALIS_CONFIG_CORRECTION_FACTOR_H

// The CH4 density correction table, compiled in from the instrument data:
// rows by pressure from 50 to 115 kPa, columns by temperature from -50 to
// 55 degrees C, both in steps of 1.
constexpr int kCorrectionPressureRows = 66;
constexpr int kCorrectionTemperatureColumns = 106;
extern const float kCorrectionFactors[kCorrectionPressureRows][kCorrectionTemperatureColumns];

// The factor that corrects a CH4 density measured at `temperature` (degrees
// C) and `pressure` (kPa): bilinear in the table, held at the table's edge
// outside it. Never fails; a NaN input counts as below the table.
float CorrectionFactor(float temperature, float pressure);

#endif
