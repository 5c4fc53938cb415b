#ifndef SIM_SPAN_GAS_H
#define SIM_SPAN_GAS_H

// The raw CH4 density (mmol/m3) the processor reads while a span gas of
// `ppm` flows at `temperature` (degrees C) and `pressure` (kPa): the gas's
// density p x c / (8.314 x (t + 273.15)), divided by the correction factor
// the daemon applies at that temperature and pressure, so that a span with
// this gas, after a zero with zero gas, finds a span of 1.
float SpanGasDensity(float ppm, float temperature, float pressure);

#endif
