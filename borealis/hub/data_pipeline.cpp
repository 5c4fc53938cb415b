#include "borealis/hub/data_pipeline.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "borealis/config/config_cfg.h"
#include "borealis/config/correction_factor.h"

void DataPipeline::SetRate(int records_per_second) {
    if (records_per_second < 1) {
        average_count_ = 0;
    } else if (records_per_second >= kRecordsPerSecond) {
        average_count_ = 1;
    } else {
        average_count_ = static_cast<unsigned>(kRecordsPerSecond / records_per_second);
    }
}

void DataPipeline::ScaleAndAverage(DSPDataRecord& record, float pzero, float pspan) {
    float& pressure = record.values[DSPDataRecord::PRESSURE];
    pressure = pressure * pspan + pzero;
    if (history_.size() >= kHistory) {
        history_.pop_back();
    }
    history_.push_front(record);

    const std::size_t n = std::min<std::size_t>(history_.size(), average_count_);
    if (n <= 1) {
        return;
    }
    for (std::size_t i = 1; i < n; ++i) {
        record.diag |= history_[i].diag;
    }
    for (int v = 0; v < DSPDataRecord::VALUE_COUNT; ++v) {
        float sum = 0;
        for (std::size_t i = 0; i < n; ++i) {
            sum += history_[i].values[v];
        }
        record.values[v] = sum / static_cast<float>(n);
    }
}

bool DataPipeline::Decimate(std::int64_t seconds) {
    if (average_count_ <= 1) {
        return true;
    }
    if (seconds == last_second_ && ++decimation_counter_ < average_count_) {
        return false;
    }
    // A new second always gets a line, so each line starts a fresh count.
    decimation_counter_ = 0;
    return true;
}

bool DataPipeline::EnterSecond(std::int64_t seconds) {
    const bool changed = seconds != last_second_;
    last_second_ = seconds;
    return changed;
}

bool DataPipeline::DataLineDue() {
    const bool requested = send_next_data_;
    send_next_data_ = false;
    return average_count_ != 0 || requested;
}

namespace {

enum AuxType { kPoly = 0, kSteinhart = 1, kLinearRt = 2 };

// The auxiliary inputs read 0 .. 5 V; a resistive sensor sits in a divider
// with the reference resistor a0 across that supply.
constexpr float kSupplyVolts = 5;
constexpr double kKelvinOffset = 273.15;
constexpr float kNoThermistor = -999.9f;

float SteinhartHart(float a0, float a1, float a2, float a3, float v) {
    const float resistance = a0 * (kSupplyVolts - v) / v;
    if (!(resistance > 0)) {
        return kNoThermistor;
    }
    const float l = std::log(resistance);
    return static_cast<float>(1 / (a1 + a2 * l + a3 * l * l * l) - kKelvinOffset);
}

}  // namespace

float ConvertAux(int type, float a0, float a1, float a2, float a3, float v) {
    switch (type) {
    case kPoly: return a0 + v * (a1 + v * (a2 + v * a3));
    case kSteinhart: return SteinhartHart(a0, a1, a2, a3, v);
    case kLinearRt: return a1 + a2 * (a0 * v / (kSupplyVolts - v));
    default: return v;
    }
}

void ConvertAuxInputs(DSPDataRecord& record, const ConfigCfg& cfg) {
    for (int n = 1; n <= ConfigCfg::kAuxCount; ++n) {
        const ConfigCfgAux& aux = cfg.aux(n);
        float& v = record.values[DSPDataRecord::AUX1 + n - 1];
        v = ConvertAux(aux.type.value(), aux.a0.value(), aux.a1.value(), aux.a2.value(),
                       aux.a3.value(), v);
    }
}

void ComputeCh4(DSPDataRecord& record, float zero, float span) {
    const float temperature = record.values[DSPDataRecord::TEMP];
    const float pressure = record.values[DSPDataRecord::PRESSURE];
    const float density = (record.values[DSPDataRecord::CH4D] - zero) * span;
    record.values[DSPDataRecord::CH4D] = density;
    // Density (mmol/m3) to ppm by the gas law: x R T / P, with R = 8.314 J/(mol K),
    // T in kelvin and P in kPa.
    const float corrected = density * CorrectionFactor(temperature, pressure);
    record.values[DSPDataRecord::CH4] =
        static_cast<float>(corrected * 8.314 * (temperature + kKelvinOffset) / pressure);
}

float AnalogOutput(float value, float low, float high) {
    if (!(low < high)) {
        return 0;
    }
    const float volts = (value - low) * 5 / (high - low);
    return std::min(std::max(volts, 0.0f), 5.0f);
}

namespace {

// The dacN/src choices that follow a record value, in the record's order.
const char* const kRecordSources[DSPDataRecord::VALUE_COUNT] = {
    "ch4d", "ch4",  "temp", "pressure", "rssi", "droprate", "aux1",   "aux2",  "aux3",
    "aux4", "aux5", "aux6", "aux7",     "aux8", "auxtc1",   "auxtc2", "auxtc3"};

// The value an output follows: the record value named by its source, or its
// set value ("set", and any name that is not a record value).
float SourceValue(const DSPDataRecord& record, const ConfigCfgDac& dac) {
    const std::string source = dac.src.value_text();
    for (int v = 0; v < DSPDataRecord::VALUE_COUNT; ++v) {
        if (source == kRecordSources[v]) {
            return record.values[v];
        }
    }
    return dac.set.value();
}

}  // namespace

std::array<float, 6> AnalogOutputs(const DSPDataRecord& record, const ConfigCfg& cfg) {
    static_assert(ConfigCfg::kDacCount == 6, "one output per analog output setting");
    std::array<float, 6> outputs{};
    for (int n = 1; n <= ConfigCfg::kDacCount; ++n) {
        const ConfigCfgDac& dac = cfg.dac(n);
        outputs[n - 1] = AnalogOutput(SourceValue(record, dac), dac.low.value(), dac.high.value());
    }
    return outputs;
}
