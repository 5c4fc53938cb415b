#include "borealis/dsp/dsp_messages.h"

#include <gtest/gtest.h>

#include "borealis/dsp/dsp_words.h"
#include "tests/borealis/dsp/recording_listener.h"

namespace {

using Words = std::vector<std::uint16_t>;

// A payload of 32-bit fields: the float `values[i]` for each field, or the
// raw `flags` for the field at `flags_index`.
Words Fields(const std::vector<float>& values, int flags_index = -1, std::uint32_t flags = 0) {
    Words words(2 * values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        SplitWords(static_cast<int>(i) == flags_index ? flags : BitsOfFloat(values[i]),
                   words.data() + 2 * i);
    return words;
}

std::vector<std::string> Decode(std::uint16_t cmd, const Words& words) {
    RecordingListener listener;
    DSPFrame frame;
    frame.cmd = cmd;
    frame.words = words.data();
    frame.length = static_cast<std::uint16_t>(words.size());
    DecodeDspMessage(frame, listener);
    return listener.events;
}

Words Waveform(std::size_t words) {
    Words w(words, 7);
    SplitWords(0x00010002, w.data());
    w[2] = 0xFFFF;  // -1 when printed
    return w;
}

// Codes 2 and 24 are decoded in the device tests. Whole status, data,
// waveform, test and fatal messages, the start-up text and unknown codes
// are in the scenarios; here are the lengths and bytes the simulator does
// not send.
TEST(DSPMessages, DecodesEachCodeWithItsMinimumLength) {
    const struct {
        std::uint16_t cmd;
        Words words;
        std::vector<std::string> expected;
    } cases[] = {
        {3, {0x3348, 0x0069}, {"dsp Hi"}},  // the high byte is ignored
        {5, {'?'}, {"bad ?"}},
        {25, {0x1234, 0x5678}, {"sync 305419896"}},
        {25, {0x1234}, {}},
        {30, {}, {"test"}},
        {6, Words(27), {}},  // a word short
        {7, Words(29), {}},
        {12, Waveform(150), {"waveR 65538 n 100 first -1 last 7"}},
        {20, Waveform(101), {}},
        {0, {}, {"unknown 0"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, Decode(c.cmd, c.words))
            << "code " << c.cmd << " length " << c.words.size();
}

// Each flag's column and NOSIGNAL are in the records_diag scenario; the
// simulator's flags have 16 bits, the processor's field 32.
TEST(DSPMessages, DiagIgnoresTheHighFlagBits) {
    std::vector<float> values(15, 50.0f);
    values[13] = 0;  // the drop rate
    EXPECT_EQ(std::vector<std::string>{"data diag 0x0"}, Decode(7, Fields(values, 14, 0xFFFF0000)));
}

}  // namespace
