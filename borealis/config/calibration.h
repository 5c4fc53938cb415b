#ifndef BOREALIS_CONFIG_CALIBRATION_H
#define BOREALIS_CONFIG_CALIBRATION_H

#include <deque>
#include <stdexcept>
#include <string>

#include "borealis/dsp/dsp_device.h"

class ConfigFiles;
class Doc4410;

// A zero or span that cannot be taken: no data has arrived to average.
class CalibrationError : public std::runtime_error {
public:
    explicit CalibrationError(const std::string& message) : std::runtime_error(message) {}
};

// The CH4 zero and span: taken from the mean of the last second of data,
// kept in vela/cal with a history entry each, made permanent by a commit
// and undone by a rollback to the last committed file.
class Calibration {
public:
    Calibration(Doc4410& doc, ConfigFiles& files);

    // The mean raw CH4 density of `recent` becomes the zero; returns it.
    // Throws CalibrationError when `recent` is empty, changing nothing.
    float Zero(const std::deque<DSPDataRecord>& recent);
    // The span that makes the mean raw density of `recent`, less
    // `working_zero`, read as `concentration` ppm at the mean temperature and
    // pressure; returns it. Throws CalibrationError when `recent` is empty.
    float Span(float concentration, const std::deque<DSPDataRecord>& recent, float working_zero);
    // Saves /etc/cal.conf, then /etc/vela.conf.
    void Commit();
    // Reloads /etc/cal.conf: the calibration as last committed.
    void Rollback();

private:
    Doc4410& doc_;
    ConfigFiles& files_;
};

// The mean of value `index` over `records` (the float sum divided by the count).
float MeanValue(const std::deque<DSPDataRecord>& records, int index);
// The CH4 density in mmol/m3 of `concentration` ppm at `temperature` degC
// and `pressure` kPa.
float ExpectedDensity(float concentration, float temperature, float pressure);

#endif
