#include "borealis/dsp/dsp_messages.h"

#include <string>

#include "borealis/dsp/dsp_words.h"

namespace {

using Listener = DSPDevice::Listener;

// The 32-bit field `index` of a payload made of 32-bit fields.
std::uint32_t Field(const DSPFrame& frame, std::size_t index) {
    return JoinWords(frame.words + 2 * index);
}

float FloatField(const DSPFrame& frame, std::size_t index) {
    return FloatFromBits(Field(frame, index));
}

// One character per word, in the low byte.
std::string Text(const DSPFrame& frame) {
    std::string text(frame.length, '\0');
    for (std::size_t i = 0; i < frame.length; ++i)
        text[i] = static_cast<char>(frame.words[i] & 0xFF);
    return text;
}

// The processor's flag bits and the signal level, as diagnostic bits.
std::uint32_t Diag(std::uint32_t flags, float rssi, float drop_rate) {
    static const struct {
        std::uint32_t flag, diag;
    } kFlagBits[] = {
        {0x80, DSPDiag::NOTREADY},       {0x01, DSPDiag::REFUNLOCKED},
        {0x02, DSPDiag::BADTEMP},        {0x20, DSPDiag::LASERTEMPUNREG},
        {0x40, DSPDiag::BLOCKTEMPUNREG}, {0x04, DSPDiag::BADAUXTC1},
        {0x08, DSPDiag::BADAUXTC2},      {0x10, DSPDiag::BADAUXTC3},
    };
    std::uint32_t diag = 0;
    for (const auto& bit : kFlagBits)
        if (flags & bit.flag) diag |= bit.diag;
    if (rssi < 10.0f || drop_rate > 90.0f) diag |= DSPDiag::NOSIGNAL;
    return diag;
}

void DecodeData(const DSPFrame& frame, Listener& listener) {
    // Fields in the order of the record's values; -1 marks AUX5 to AUX8,
    // which the processor does not supply.
    static const int kFields[DSPDataRecord::VALUE_COUNT] = {1, 2,  5,  3,  4,  13, 6,  7, 8,
                                                            9, -1, -1, -1, -1, 10, 11, 12};
    DSPDataRecord record;
    record.seconds = frame.seconds;
    record.nanoseconds = frame.nanoseconds;
    record.msec = Field(frame, 0);
    for (std::size_t i = 0; i < DSPDataRecord::VALUE_COUNT; ++i)
        record.values[i] = kFields[i] < 0 ? 0.0f : FloatField(frame, kFields[i]);
    record.diag = Diag(Field(frame, 14) & 0xFFFF, record.values[DSPDataRecord::RSSI],
                       record.values[DSPDataRecord::DROPRATE]);
    listener.GotData(frame.seconds, frame.nanoseconds, record);
}

void DecodeStatus(const DSPFrame& frame, Listener& listener) {
    static const int kFields[DSPStatusRecord::VALUE_COUNT] = {1, 2,  5,  6, 7,  8, 3,
                                                              4, 10, 11, 9, 12, 13};
    DSPStatusRecord record;
    record.seconds = frame.seconds;
    record.nanoseconds = frame.nanoseconds;
    record.msec = Field(frame, 0);
    for (std::size_t i = 0; i < DSPStatusRecord::VALUE_COUNT; ++i)
        record.values[i] = FloatField(frame, kFields[i]);
    // The processor reports the optics temperature difference the other way
    // round; flipping the sign bit keeps every bit pattern, NaN included.
    record.values[DSPStatusRecord::OPTICSTDELTA] = FloatFromBits(Field(frame, 11) ^ 0x80000000u);
    listener.GotStatus(frame.seconds, frame.nanoseconds, record);
}

DSPWaveform Waveform(const DSPFrame& frame) {
    DSPWaveform waveform;
    waveform.seconds = frame.seconds;
    waveform.nanoseconds = frame.nanoseconds;
    waveform.msec = Field(frame, 0);
    for (std::size_t i = 0; i < DSPWaveform::SAMPLE_COUNT; ++i)
        waveform.samples[i] = frame.words[2 + i];
    return waveform;
}

DSPTestRecord TestRecord(const DSPFrame& frame) {
    DSPTestRecord record;
    record.seconds = frame.seconds;
    record.nanoseconds = frame.nanoseconds;
    record.words.assign(frame.words, frame.words + frame.length);
    return record;
}

struct Decoder {
    std::uint16_t cmd;
    std::uint16_t minimum_words;
    void (*decode)(const DSPFrame&, Listener&);
};

const Decoder kDecoders[] = {
    {2, 0, [](const DSPFrame& f, Listener& l) { l.GotPong(f.seconds, f.nanoseconds); }},
    {3, 0,
     [](const DSPFrame& f, Listener& l) { l.GotDSPMessage(f.seconds, f.nanoseconds, Text(f)); }},
    {4, 0,
     [](const DSPFrame& f, Listener& l) { l.GotInitMessage(f.seconds, f.nanoseconds, Text(f)); }},
    {5, 0,
     [](const DSPFrame& f, Listener& l) { l.GotBadCommand(f.seconds, f.nanoseconds, Text(f)); }},
    {6, 28, DecodeStatus},
    {7, 30, DecodeData},
    {11, 102,
     [](const DSPFrame& f, Listener& l) { l.GotWaveformS(f.seconds, f.nanoseconds, Waveform(f)); }},
    {12, 102,
     [](const DSPFrame& f, Listener& l) { l.GotWaveformR(f.seconds, f.nanoseconds, Waveform(f)); }},
    {18, 0,
     [](const DSPFrame& f, Listener& l) { l.GotFatalMessage(f.seconds, f.nanoseconds, Text(f)); }},
    {19, 102,
     [](const DSPFrame& f, Listener& l) {
         l.GotWaveformSDC(f.seconds, f.nanoseconds, Waveform(f));
     }},
    {20, 102,
     [](const DSPFrame& f, Listener& l) {
         l.GotWaveformRDC(f.seconds, f.nanoseconds, Waveform(f));
     }},
    {24, 0, [](const DSPFrame& f, Listener& l) { l.GotCode24(f.seconds, f.nanoseconds); }},
    {25, 2,
     [](const DSPFrame& f, Listener& l) { l.GotClockSync(f.seconds, f.nanoseconds, Field(f, 0)); }},
    {30, 0,
     [](const DSPFrame& f, Listener& l) {
         l.GotTestData(f.seconds, f.nanoseconds, TestRecord(f));
     }},
};

}  // namespace

void DecodeDspMessage(const DSPFrame& frame, Listener& listener) {
    for (const Decoder& decoder : kDecoders) {
        if (decoder.cmd != frame.cmd) continue;
        // A frame too short for its decoder is dropped without a word.
        if (frame.length >= decoder.minimum_words) decoder.decode(frame, listener);
        return;
    }
    listener.GotUnknownMessage(frame.seconds, frame.nanoseconds, frame.cmd, frame.words,
                               frame.length);
}
