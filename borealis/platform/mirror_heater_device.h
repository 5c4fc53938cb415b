#ifndef BOREALIS_PLATFORM_MIRROR_HEATER_DEVICE_H
#define BOREALIS_PLATFORM_MIRROR_HEATER_DEVICE_H

#include <cstdint>
#include <string>

// The mirror, washer pump and heater device as the daemon sees it: short
// text commands go in, the motor's status comes out. Platform::OpenMirror
// makes one.
class MirrorHeaterDevice {
public:
    virtual ~MirrorHeaterDevice() = default;

    // Writes `line` (one command and its line end) in one piece. Throws
    // ErrnoError("Unable to write to device " + path) when the device does
    // not take it whole.
    virtual void WriteLine(const std::string& line) = 0;
    // Reads the motor status into `status`; false, leaving it alone, when
    // nothing could be read or the answer is no 16-bit decimal integer.
    virtual bool ReadStatus(std::int16_t& status) = 0;
};

// Parses the device's status answer (a decimal integer, normally followed by
// a line end) into `status`; false when it is no number or does not fit in
// 16 signed bits.
bool ParseMotorStatus(const std::string& text, std::int16_t& status);

#endif
