#include "borealis/config/calibration.h"

#include <cmath>
#include <iostream>
#include <sstream>

#include "borealis/config/config_files.h"
#include "borealis/config/correction_factor.h"
#include "borealis/config/doc4410.h"
#include "common/timestamp.h"

namespace {

// The current local time, rounded down to a whole second.
Timestamp WholeSecondNow() { return Timestamp(std::floor(Timestamp::now().get())); }

void RequireData(const std::deque<DSPDataRecord>& recent, const char* what) {
    if (recent.empty())
        throw CalibrationError(std::string("CH4 ") + what + " not taken: no data received yet");
}

}  // namespace

float MeanValue(const std::deque<DSPDataRecord>& records, int index) {
    float sum = 0;
    for (const DSPDataRecord& record : records) sum += record.values[index];
    return sum / static_cast<float>(records.size());
}

float ExpectedDensity(float concentration, float temperature, float pressure) {
    const float product = pressure * concentration;
    return static_cast<float>(product / (8.314 * (static_cast<double>(temperature) + 273.15)));
}

Calibration::Calibration(Doc4410& doc, ConfigFiles& files) : doc_(doc), files_(files) {}

float Calibration::Zero(const std::deque<DSPDataRecord>& recent) {
    RequireData(recent, "zero");
    ConfigCal& cal = doc_.vela.cal;
    const float zero = MeanValue(recent, DSPDataRecord::CH4D);
    std::cout << "CH4: old zero=" << cal.ch4zero.value() << " new zero=" << zero << std::endl;
    const Timestamp now = WholeSecondNow();
    cal.ch4lastzero.set(now);
    cal.ch4zero.set(zero);
    cal.history.append(now, "CH4 Zero", cal.ch4zero.value(), cal.ch4span.value());
    return zero;
}

float Calibration::Span(float concentration, const std::deque<DSPDataRecord>& recent,
                        float working_zero) {
    RequireData(recent, "span");
    ConfigCal& cal = doc_.vela.cal;
    const float raw = MeanValue(recent, DSPDataRecord::CH4D);
    const float temperature = MeanValue(recent, DSPDataRecord::TEMP);
    const float pressure = MeanValue(recent, DSPDataRecord::PRESSURE);
    const float expected = ExpectedDensity(concentration, temperature, pressure);
    const float span = expected / (raw - working_zero) / CorrectionFactor(temperature, pressure);
    std::cout << "CH4: old span=" << cal.ch4span.value() << " new span=" << span << std::endl;
    const Timestamp now = WholeSecondNow();
    cal.ch4lastspan.set(now);
    cal.ch4span.set(span);
    cal.ch4spanconc.set(concentration);
    std::ostringstream type;
    type << "CH4 Span: " << concentration << " ppm";
    cal.history.append(now, type.str(), cal.ch4zero.value(), cal.ch4span.value());
    return span;
}

void Calibration::Commit() {
    files_.SaveCalConf();
    files_.SaveVelaConf();
}

void Calibration::Rollback() { files_.LoadCalConf(); }
