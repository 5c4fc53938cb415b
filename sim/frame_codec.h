#ifndef SIM_FRAME_CODEC_H
#define SIM_FRAME_CODEC_H

#include <time.h>

#include <cstdint>
#include <string>
#include <vector>

// One message to or from the signal processor: its code and payload words.
struct Frame {
    std::uint16_t code = 0;
    std::vector<std::uint16_t> words;
};

// The frame as the driver delivers it: the arrival time (seconds and
// nanoseconds, plain little-endian 32-bit integers), then code, length in
// words and payload words, all little-endian 16-bit.
std::string EncodeFrame(const Frame& frame, const timespec& arrival);

// The complete frames of one packet written by the daemon, in order; an
// incomplete tail is left out.
std::vector<Frame> DecodeFrames(const std::string& packet);

#endif
