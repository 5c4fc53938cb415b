#ifndef BOREALIS_HUB_DATA_PIPELINE_H
#define BOREALIS_HUB_DATA_PIPELINE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>

#include "borealis/dsp/dsp_device.h"

class ConfigCfg;

// The arithmetic between a data record from the signal processor and its
// "DATA" line, fed one record at a time: pressure scaling, averaging down to
// the output rate, and the decimation that lets one line through per
// averaging period. The processor delivers 40 records a second; a client
// asks for fewer, and each line then carries the mean of the records since
// the last one.
class DataPipeline {
public:
    // Records kept for averaging and for calibration (one second of data).
    static constexpr std::size_t kHistory = 40;
    // The processor's record rate.
    static constexpr int kRecordsPerSecond = 40;

    // Sets the output rate in lines a second: below 1 sends lines only on
    // request, 40 or more every record, otherwise every 40 / rate records.
    void SetRate(int records_per_second);
    // Records averaged into one line; 0 when lines are sent only on request.
    unsigned AverageCount() const { return average_count_; }
    // Forces one data line even when the rate is 0.
    void RequestNextData() { send_next_data_ = true; }

    // Scales the record's pressure (PRESSURE * pspan + pzero), queues a copy
    // at the front of the history (dropping the oldest beyond kHistory), and
    // with n = min(history, AverageCount()) above 1 replaces each value by
    // its mean over the n newest records and ORs their DIAG words together.
    void ScaleAndAverage(DSPDataRecord& record, float pzero, float pspan);
    // The history, newest first, pressure scaled but not averaged.
    const std::deque<DSPDataRecord>& Recent() const { return history_; }

    // False when the record at `seconds` is dropped: the same second as the
    // last record that passed, and fewer than AverageCount() records since.
    bool Decimate(std::int64_t seconds);
    // True when `seconds` differs from the last second entered; remembers it.
    bool EnterSecond(std::int64_t seconds);
    // True when a data line is due: the rate is not 0, or a line was
    // requested (the request is then used up).
    bool DataLineDue();

private:
    std::deque<DSPDataRecord> history_;
    unsigned average_count_ = 1;
    unsigned decimation_counter_ = 0;
    std::int64_t last_second_ = 0;
    bool send_next_data_ = false;
};

// Converts an auxiliary input's raw value `v` (volts) with its type and
// coefficients: 0 polynomial, 1 thermistor by Steinhart-Hart (-999.9 when
// the resistance is not positive), 2 linear in resistance; any other type
// leaves `v` unchanged.
float ConvertAux(int type, float a0, float a1, float a2, float a3, float v);
// Converts AUX1 to AUX8 of `record` with the settings of aux1 to aux8.
void ConvertAuxInputs(DSPDataRecord& record, const ConfigCfg& cfg);

// Applies the working zero and span to the raw CH4D, then computes CH4 from
// CH4D, the correction factor, TEMP and PRESSURE by the gas law.
void ComputeCh4(DSPDataRecord& record, float zero, float span);

// The analog output voltage for `value` on a scale from `low` (0 V) to
// `high` (5 V), held within 0 .. 5 V; 0 when the scale is empty or reversed.
float AnalogOutput(float value, float low, float high);
// The six analog outputs for `record`, each following the source chosen by
// dac1 to dac6 ("set" follows the output's set value).
std::array<float, 6> AnalogOutputs(const DSPDataRecord& record, const ConfigCfg& cfg);

#endif
