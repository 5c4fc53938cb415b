#include "borealis/system/hardware_identity.h"

#include <fstream>
#include <iomanip>
#include <sstream>

#include "borealis/platform/platform.h"

namespace {

// The one decimal integer a device file holds; 0 when there is none.
int ReadDeviceNumber(const Platform& platform, const char* name) {
    std::ifstream in(platform.Path(std::string("/sys/bus/platform/devices/io4410/") + name));
    int value = 0;
    if (!(in >> value)) return 0;
    return value;
}

}  // namespace

std::string GetHardwareIdentity(const Platform& platform) {
    int rev = ReadDeviceNumber(platform, "rev");
    int build = ReadDeviceNumber(platform, "build");
    int year_month = ReadDeviceNumber(platform, "year_month");
    int day_hour = ReadDeviceNumber(platform, "day_hour");

    std::ostringstream text;
    // rev: major above the low byte, minor in it; the date packs the month
    // in the low 4 bits of year_month and the hour in the low byte of day_hour.
    text << (rev >> 8) << '.' << (rev & 0xFF) << '.' << build << " (" << std::setfill('0')
         << std::setw(4) << (year_month >> 4) << '-' << std::setw(2) << (year_month & 0xF) << '-'
         << std::setw(2) << (day_hour >> 8) << ' ' << std::setw(2) << (day_hour & 0xFF) << ":00)";
    return text.str();
}
