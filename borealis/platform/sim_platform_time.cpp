// The simulated system clock, hardware clock and local time.
#include <stdlib.h>

#include <ctime>
#include <string>

#include "borealis/platform/sim_platform.h"

void SimPlatform::SetSystemTime(std::int64_t seconds, long microseconds) {
    LogAction("settime " + std::to_string(seconds) + " " + std::to_string(microseconds));
}

void SimPlatform::SetHardwareClock(const std::string&, std::int64_t seconds) {
    const std::time_t when = static_cast<std::time_t>(seconds);
    std::tm utc{};
    ::gmtime_r(&when, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &utc);
    LogAction(std::string("rtc ") + text);
}

void SimPlatform::FollowLocalTimeFile() {
    // The library does not read the zone file again while TZ keeps the same
    // text, even when the file was replaced: a zone of another text in
    // between makes it read the file afresh.
    ::setenv("TZ", "UTC0", 1);
    ::tzset();
    ::setenv("TZ", (":" + Path("/etc/localtime")).c_str(), 1);
    ::tzset();
}
