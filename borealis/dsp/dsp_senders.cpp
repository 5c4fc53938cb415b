// The typed messages to the signal processor.
#include "borealis/dsp/dsp_device.h"
#include "borealis/dsp/dsp_words.h"

namespace {

enum OutgoingCode : std::uint16_t {
    kSetDropThreshold = 8,
    kSendLineLock = 9,
    kSendStart = 13,
    kReleaseLaserTemp = 16,
    kLockLaserTemp = 17,
    kRegBlockTemp = 21,
    kUnregBlockTemp = 22,
    kSetOffsets = 26,
    kSetBlockDrive = 27,
    kSetLaserDrive = 28,
    kRequestTestData = 29,
};

void SendFloat(DSPDevice& device, std::uint16_t cmd, float value) {
    std::uint16_t words[2];
    SplitWords(BitsOfFloat(value), words);
    device.Send(cmd, words, 2);
}

}  // namespace

void DSPDevice::SendStart() { Send(kSendStart, nullptr, 0); }
void DSPDevice::ReleaseLaserTemp() { Send(kReleaseLaserTemp, nullptr, 0); }
void DSPDevice::LockLaserTemp(float set_point) { SendFloat(*this, kLockLaserTemp, set_point); }
void DSPDevice::SetLaserDrive(std::uint16_t dac_count) { Send(kSetLaserDrive, &dac_count, 1); }
void DSPDevice::RegBlockTemp(float set_point) { SendFloat(*this, kRegBlockTemp, set_point); }
void DSPDevice::UnregBlockTemp() { Send(kUnregBlockTemp, nullptr, 0); }
void DSPDevice::SetBlockDrive(std::uint16_t dac_count) { Send(kSetBlockDrive, &dac_count, 1); }
void DSPDevice::SetDropThreshold(float threshold) {
    SendFloat(*this, kSetDropThreshold, threshold);
}
void DSPDevice::RequestTestData() { Send(kRequestTestData, nullptr, 0); }

void DSPDevice::SetOffsets(std::int16_t ac_offset, std::uint16_t dc_offset,
                           std::uint16_t optical_offset) {
    const std::uint16_t words[3] = {static_cast<std::uint16_t>(ac_offset), dc_offset,
                                    optical_offset};
    Send(kSetOffsets, words, 3);
}

void DSPDevice::SendLineLock(const DSPLineLockSetup& setup) {
    // The four constants after the start temperature are the pairs (0, 1)
    // the processor expects in this message.
    const float floats[5] = {setup.laser_start_temperature, 0.0f, 1.0f, 0.0f, 1.0f};
    std::uint16_t words[14];
    for (int i = 0; i < 5; ++i) SplitWords(BitsOfFloat(floats[i]), words + 2 * i);
    words[10] = setup.sample_gain;
    words[11] = setup.reference_gain;
    words[12] = setup.modulation_depth;
    words[13] = setup.dither;
    Send(kSendLineLock, words, 14);
}
