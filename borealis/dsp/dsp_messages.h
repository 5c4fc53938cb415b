#ifndef BOREALIS_DSP_DSP_MESSAGES_H
#define BOREALIS_DSP_DSP_MESSAGES_H

#include <cstdint>

#include "borealis/dsp/dsp_device.h"

// One complete frame from the signal processor, viewed in place.
struct DSPFrame {
    std::uint32_t seconds = 0;
    std::uint32_t nanoseconds = 0;
    std::uint16_t cmd = 0;
    const std::uint16_t* words = nullptr;
    std::uint16_t length = 0;
};

// Decodes `frame` by its code and calls the listener's callback for it:
// GotUnknownMessage for a code without a decoder; nothing for a frame
// shorter than its decoder needs.
void DecodeDspMessage(const DSPFrame& frame, DSPDevice::Listener& listener);

#endif
