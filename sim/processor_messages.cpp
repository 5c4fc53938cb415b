#include "sim/processor_messages.h"

#include <cmath>
#include <initializer_list>

#include "borealis/dsp/dsp_words.h"

namespace {

constexpr int kWaveformSamples = 100;

void Append32(Frame& frame, std::uint32_t value) {
    std::uint16_t halves[2];
    SplitWords(value, halves);
    frame.words.insert(frame.words.end(), halves, halves + 2);
}

void AppendFloat(Frame& frame, float value) { Append32(frame, BitsOfFloat(value)); }

// A laser scan over the absorption line: a rising intensity ramp with a
// Lorentzian dip of `depth` counts in the middle of the scan.
std::int16_t ScanSample(int i, double level, double slope, double depth) {
    const double offset = (i - kWaveformSamples / 2) / 6.0;
    return static_cast<std::int16_t>(
        std::lround(level + slope * i - depth / (1.0 + offset * offset)));
}

}  // namespace

bool IsProcessorCommand(std::uint16_t code) {
    for (int known : {8, 9, 13, 16, 17, 21, 22, 26, 27, 28, 29})
        if (code == known) return true;
    return false;
}

Frame TextFrame(std::uint16_t code, const std::string& text) {
    Frame frame{code, {}};
    for (char c : text) frame.words.push_back(static_cast<unsigned char>(c));
    return frame;
}

Frame DataFrame(std::uint32_t msec, const DataValues& v, std::uint16_t flags) {
    Frame frame{kDataMessage, {}};
    Append32(frame, msec);
    for (float value : {v[kCh4d], v[kCh4], v[kPressure], v[kRssi], v[kTemp], v[kAux1], v[kAux2],
                        v[kAux3], v[kAux4], v[kAuxTc1], v[kAuxTc2], v[kAuxTc3], v[kDropRate]})
        AppendFloat(frame, value);
    Append32(frame, flags);
    return frame;
}

Frame StatusFrame(std::uint32_t msec, const StatusValues& v) {
    Frame frame{kStatusMessage, {}};
    Append32(frame, msec);
    for (float value :
         {v[kLctSetPoint], v[kLctActual], v[kStatusRssi], v[kRefRssi], v[kBctSetPoint],
          v[kBctActual], v[kChassisTemp], v[kOpticsRh], v[kAuxRefTemp], v[kOpticsTemp]})
        AppendFloat(frame, value);
    // The processor reports the optics temperature difference with its sign
    // bit flipped.
    Append32(frame, BitsOfFloat(v[kOpticsTempDelta]) ^ 0x80000000u);
    AppendFloat(frame, v[kRef]);
    AppendFloat(frame, v[kGnd]);
    return frame;
}

Frame ClockSyncFrame(std::uint32_t ticks) {
    Frame frame{kClockSync, {}};
    Append32(frame, ticks);
    return frame;
}

Frame WaveformFrame(std::uint16_t code, std::uint32_t msec) {
    // The sample and reference paths see the line (the reference cell more
    // deeply); the DC paths see the bare intensity ramp.
    struct Shape {
        double level, slope, depth;
    } shape{6000, 60, 800};
    if (code == kWaveformR) shape = {6000, 60, 3000};
    if (code == kWaveformSdc) shape = {12000, 100, 0};
    if (code == kWaveformRdc) shape = {11000, 100, 0};
    Frame frame{code, {}};
    Append32(frame, msec);
    for (int i = 0; i < kWaveformSamples; ++i)
        frame.words.push_back(
            static_cast<std::uint16_t>(ScanSample(i, shape.level, shape.slope, shape.depth)));
    return frame;
}

Frame TestDataFrame() {
    // Raw converter readings in the order of the test columns, CH0 to REFDC.
    return Frame{kTestData,
                 {32768, 32770, 32765, 32771, 28000, 30500, 30510, 30490, 49152, 12,   31000,
                  40500, 9000,  30000, 15,    29500, 27000, 33000, 1200,  21000, 3100, 20000}};
}
