#include "sim/mirror_device.h"

#include <cstdlib>
#include <sstream>

namespace {

constexpr int kSpin = 3;
constexpr int kTopBit = 0x8000;

}  // namespace

MirrorDevice::MirrorDevice(DeviceSocket& device) : device_(device) {
    device_.SetHandlers({nullptr, [this](const std::string& p) { GotPacket(p); }, nullptr});
}

int MirrorDevice::Report() const {
    const int value = actual_ & (kTopBit - 1);
    return control_code_ == kSpin && !failed_ ? value - kTopBit : value;
}

void MirrorDevice::GotPacket(const std::string& packet) {
    // A status read is the one-byte packet "?"; the answer is the report in
    // decimal and a line end.
    if (packet == "?") {
        device_.Send(std::to_string(Report()) + "\n");
        return;
    }
    std::istringstream text(packet);
    for (std::string line; std::getline(text, line);) {
        Follow(line);
        lines_.push_back(line);
    }
}

void MirrorDevice::Follow(const std::string& line) {
    // Each setting is a letter and a decimal number ("c3 t50 b0 p1", "m512").
    std::istringstream words(line);
    for (std::string word; words >> word;) {
        const int value = std::atoi(word.c_str() + 1);
        if (word[0] == 'c') control_code_ = value;
        if (word[0] == 'm') actual_ = value;
    }
}
