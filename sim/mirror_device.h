#ifndef SIM_MIRROR_DEVICE_H
#define SIM_MIRROR_DEVICE_H

#include <string>
#include <vector>

#include "sim/device_socket.h"

// The mirror, washer pump and heater device: keeps every command line the
// daemon writes and answers status reads with the motor's actual value.
class MirrorDevice {
public:
    explicit MirrorDevice(DeviceSocket& device);
    MirrorDevice(const MirrorDevice&) = delete;
    MirrorDevice& operator=(const MirrorDevice&) = delete;

    // The command lines received so far, without their line ends.
    const std::vector<std::string>& Lines() const { return lines_; }

private:
    void GotPacket(const std::string& packet);

    DeviceSocket& device_;
    int motor_actual_ = 0;
    std::vector<std::string> lines_;
};

#endif
