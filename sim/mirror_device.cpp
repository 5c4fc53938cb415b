#include "sim/mirror_device.h"

#include <sstream>

MirrorDevice::MirrorDevice(DeviceSocket& device) : device_(device) {
    device_.SetHandlers({nullptr, [this](const std::string& p) { GotPacket(p); }, nullptr});
}

void MirrorDevice::GotPacket(const std::string& packet) {
    // A status read is the one-byte packet "?"; the answer is the motor's
    // value in decimal and a line end.
    if (packet == "?") {
        device_.Send(std::to_string(motor_actual_) + "\n");
        return;
    }
    std::istringstream text(packet);
    for (std::string line; std::getline(text, line);) lines_.push_back(line);
}
