#ifndef SIM_MIRROR_DEVICE_H
#define SIM_MIRROR_DEVICE_H

#include <string>
#include <vector>

#include "sim/device_socket.h"

// The mirror, washer pump and heater device: keeps every command line the
// daemon writes and answers status reads with the motor's report, a 16-bit
// value: the motor's actual value, which follows the set point ("m"), with
// the top bit set while the last control code ("c") is 3 and the motor
// spins.
class MirrorDevice {
public:
    explicit MirrorDevice(DeviceSocket& device);
    MirrorDevice(const MirrorDevice&) = delete;
    MirrorDevice& operator=(const MirrorDevice&) = delete;

    // The command lines received so far, without their line ends.
    const std::vector<std::string>& Lines() const { return lines_; }
    // Puts the motor at `value` (0 to 32767) until the next set point.
    void SetActual(int value) { actual_ = value; }
    // A failed motor spins without reporting it (no top bit); false mends it.
    void SetFailed(bool failed) { failed_ = failed; }
    // The report a status read gets now, as a signed 16-bit value.
    int Report() const;

private:
    void GotPacket(const std::string& packet);
    void Follow(const std::string& line);

    DeviceSocket& device_;
    int actual_ = 0;
    int control_code_ = 0;
    bool failed_ = false;
    std::vector<std::string> lines_;
};

#endif
