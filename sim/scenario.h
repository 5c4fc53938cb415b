#ifndef SIM_SCENARIO_H
#define SIM_SCENARIO_H

#include <array>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

// Data values in the order of the data record's columns (AUX5 to AUX8 come
// from the interface box, not from the processor).
enum DataField {
    kCh4d,
    kCh4,
    kTemp,
    kPressure,
    kRssi,
    kDropRate,
    kAux1,
    kAux2,
    kAux3,
    kAux4,
    kAuxTc1,
    kAuxTc2,
    kAuxTc3,
    kDataFieldCount
};

// Status values in the order of the processor's status record.
enum StatusField {
    kLctSetPoint,
    kLctActual,
    kBctSetPoint,
    kBctActual,
    kChassisTemp,
    kOpticsRh,
    kStatusRssi,
    kRefRssi,
    kOpticsTemp,
    kOpticsTempDelta,
    kAuxRefTemp,
    kRef,
    kGnd,
    kStatusFieldCount
};

using DataValues = std::array<float, kDataFieldCount>;
using StatusValues = std::array<float, kStatusFieldCount>;

// A field name or value the scenario does not know.
class ScenarioError : public std::runtime_error {
public:
    explicit ScenarioError(const std::string& message) : std::runtime_error(message) {}
};

// What the simulated analyzer measures: a value for every data and status
// field, optional noise around them, and the processor's flag bits.
class Scenario {
public:
    // Ambient air (about 2 ppm of CH4 at 20 degrees and 101.3 kPa), with
    // noise drawn from a generator seeded with `seed`.
    explicit Scenario(std::uint32_t seed);

    // Sets a data field ("CH4D") or a status field ("status.LCTSETPT"),
    // names in any case (setting CH4D ends a ramp); throws ScenarioError for
    // an unknown name.
    void Set(const std::string& name, float value);
    // Moves CH4D in a straight line from its value at `now_ns` (the
    // processor's time) to `to`, reached `seconds` later; it stays there.
    void RampCh4d(float to, double seconds, std::int64_t now_ns);
    // Holds CH4D at its value at `now_ns`, ending a ramp.
    void HoldCh4d(std::int64_t now_ns);
    // The value set for a field; throws ScenarioError for an unknown name.
    float Get(const std::string& name);
    // Noise on (realistic scatter) or off (every value exactly as set).
    void SetNoise(bool on) { noise_ = on; }
    bool Noise() const { return noise_; }
    // The processor's flag bits, sent in the low 16 bits of the data record.
    void SetFlags(std::uint16_t flags) { flags_ = flags; }
    std::uint16_t Flags() const { return flags_; }

    // The data sample at `now_ns`: the set values (CH4D on its ramp),
    // scattered when noise is on.
    DataValues NextData(std::int64_t now_ns);
    // The next status sample, likewise.
    StatusValues NextStatus();

    // Every settable name, data fields first, for the help text.
    static std::vector<std::string> FieldNames();

private:
    struct Field {
        const char* name;
        float value;
        float scatter;  // standard deviation of the noise
    };
    struct Ramp {
        bool active = false;
        float from = 0, to = 0;
        std::int64_t start_ns = 0, end_ns = 0;
    };
    Field& Find(const std::string& name);
    float Sample(const Field& field);
    // Moves CH4D along its ramp to where it is at `now_ns`.
    void FollowRamp(std::int64_t now_ns);

    std::array<Field, kDataFieldCount> data_;
    std::array<Field, kStatusFieldCount> status_;
    Ramp ramp_;
    std::mt19937 random_;
    std::normal_distribution<float> normal_{0.0f, 1.0f};
    bool noise_ = true;
    std::uint16_t flags_ = 0;
};

#endif
