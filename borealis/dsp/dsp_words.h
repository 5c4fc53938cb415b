#ifndef BOREALIS_DSP_DSP_WORDS_H
#define BOREALIS_DSP_DSP_WORDS_H

#include <cstdint>
#include <cstring>

// The signal processor's payload encodings: 16-bit words, 32-bit values as
// two words with the high half first.

// The 32-bit value made of `words[0]` (high half) and `words[1]` (low half).
inline std::uint32_t JoinWords(const std::uint16_t* words) {
    return (static_cast<std::uint32_t>(words[0]) << 16) | words[1];
}

// Stores `value` as two words, high half first.
inline void SplitWords(std::uint32_t value, std::uint16_t* words) {
    words[0] = static_cast<std::uint16_t>(value >> 16);
    words[1] = static_cast<std::uint16_t>(value & 0xFFFF);
}

inline float FloatFromBits(std::uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

inline std::uint32_t BitsOfFloat(float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

#endif
