#include "borealis/platform/mirror_heater_device.h"

#include <limits>
#include <sstream>

bool ParseMotorStatus(const std::string& text, std::int16_t& status) {
    std::istringstream in(text);
    long value = 0;
    if (!(in >> value)) return false;
    if (value < std::numeric_limits<std::int16_t>::min() ||
        value > std::numeric_limits<std::int16_t>::max())
        return false;
    status = static_cast<std::int16_t>(value);
    return true;
}
