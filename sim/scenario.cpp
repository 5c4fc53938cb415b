#include "sim/scenario.h"

#include <strings.h>

namespace {

const char kStatusPrefix[] = "status.";

bool SameName(const std::string& a, const char* b) { return ::strcasecmp(a.c_str(), b) == 0; }

}  // namespace

Scenario::Scenario(std::uint32_t seed)
    : data_{{
          // 0.083 mmol/m3 is about 2.0 ppm at 20 degrees and 101.3 kPa.
          {"CH4D", 0.083f, 0.0005f},
          {"CH4", 2.0f, 0.012f},
          {"TEMP", 20.0f, 0.01f},
          {"PRESSURE", 101.3f, 0.005f},
          {"RSSI", 60.0f, 0.2f},
          {"DROPRATE", 0.0f, 0.0f},
          {"AUX1", 0.0f, 0.001f},
          {"AUX2", 0.0f, 0.001f},
          {"AUX3", 0.0f, 0.001f},
          {"AUX4", 0.0f, 0.001f},
          {"AUXTC1", 20.0f, 0.01f},
          {"AUXTC2", 20.0f, 0.01f},
          {"AUXTC3", 20.0f, 0.01f},
      }},
      status_{{
          {"LCTSETPT", 25.0f, 0.0f},
          {"LCTACTUAL", 25.0f, 0.002f},
          {"BCTSETPT", 35.0f, 0.0f},
          {"BCTACTUAL", 35.0f, 0.002f},
          {"CHASSISTEMP", 30.0f, 0.01f},
          {"OPTICSRH", 10.0f, 0.05f},
          {"RSSI", 60.0f, 0.2f},
          {"REFRSSI", 55.0f, 0.2f},
          {"OPTICSTEMP", 28.0f, 0.01f},
          {"OPTICSTDELTA", 0.5f, 0.01f},
          {"AUXREFTEMP", 25.0f, 0.01f},
          {"REF", 2.5f, 0.0005f},
          {"GND", 0.0f, 0.0005f},
      }},
      random_(seed) {}

Scenario::Field& Scenario::Find(const std::string& name) {
    const std::size_t prefix = sizeof kStatusPrefix - 1;
    if (name.size() > prefix && ::strncasecmp(name.c_str(), kStatusPrefix, prefix) == 0) {
        for (Field& field : status_)
            if (SameName(name.substr(prefix), field.name)) return field;
    } else {
        for (Field& field : data_)
            if (SameName(name, field.name)) return field;
    }
    throw ScenarioError("unknown field " + name);
}

void Scenario::Set(const std::string& name, float value) {
    Field& field = Find(name);
    field.value = value;
    if (&field == &data_[kCh4d]) ramp_.active = false;
}

void Scenario::RampCh4d(float to, double seconds, std::int64_t now_ns) {
    FollowRamp(now_ns);
    ramp_ = Ramp{true, data_[kCh4d].value, to, now_ns,
                 now_ns + static_cast<std::int64_t>(seconds * 1e9)};
}

void Scenario::HoldCh4d(std::int64_t now_ns) {
    FollowRamp(now_ns);
    ramp_.active = false;
}

void Scenario::FollowRamp(std::int64_t now_ns) {
    if (!ramp_.active) return;
    float& value = data_[kCh4d].value;
    if (now_ns >= ramp_.end_ns) {
        value = ramp_.to;
        ramp_.active = false;
        return;
    }
    const double done = static_cast<double>(now_ns - ramp_.start_ns) /
                        static_cast<double>(ramp_.end_ns - ramp_.start_ns);
    value = static_cast<float>(ramp_.from + (ramp_.to - ramp_.from) * done);
}

float Scenario::Get(const std::string& name) { return Find(name).value; }

float Scenario::Sample(const Field& field) {
    if (!noise_ || field.scatter == 0.0f) return field.value;
    return field.value + field.scatter * normal_(random_);
}

DataValues Scenario::NextData(std::int64_t now_ns) {
    FollowRamp(now_ns);
    DataValues values;
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = Sample(data_[i]);
    return values;
}

StatusValues Scenario::NextStatus() {
    StatusValues values;
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = Sample(status_[i]);
    return values;
}

std::vector<std::string> Scenario::FieldNames() {
    Scenario scenario(0);
    std::vector<std::string> names;
    for (const Field& field : scenario.data_) names.push_back(field.name);
    for (const Field& field : scenario.status_)
        names.push_back(kStatusPrefix + std::string(field.name));
    return names;
}
