// The system clock, the hardware clock and local time on the analyzer.
#include <fcntl.h>
#include <linux/rtc.h>
#include <sys/ioctl.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "borealis/platform/linux_platform.h"
#include "common/errno_error.h"

namespace {

rtc_time UtcFields(std::int64_t seconds) {
    const std::time_t when = static_cast<std::time_t>(seconds);
    std::tm utc{};
    ::gmtime_r(&when, &utc);
    rtc_time fields{};
    fields.tm_sec = utc.tm_sec;
    fields.tm_min = utc.tm_min;
    fields.tm_hour = utc.tm_hour;
    fields.tm_mday = utc.tm_mday;
    fields.tm_mon = utc.tm_mon;
    fields.tm_year = utc.tm_year;
    fields.tm_wday = utc.tm_wday;
    fields.tm_yday = utc.tm_yday;
    return fields;
}

}  // namespace

void LinuxPlatform::SetSystemTime(std::int64_t seconds, long microseconds) {
    timeval time{};
    time.tv_sec = static_cast<std::time_t>(seconds);
    time.tv_usec = microseconds;
    if (::settimeofday(&time, nullptr) != 0) throw ErrnoError("Unable to set system time");
}

void LinuxPlatform::SetHardwareClock(const std::string& device, std::int64_t seconds) {
    const int fd = ::open(device.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;  // building the message may change errno
        throw ErrnoError("Unable to open clock device: " + device, error);
    }
    rtc_time fields = UtcFields(seconds);
    const int error = ::ioctl(fd, RTC_SET_TIME, &fields) < 0 ? errno : 0;
    ::close(fd);
    if (error) throw ErrnoError("Unable to set hardware clock", error);
}

void LinuxPlatform::FollowLocalTimeFile() { ::tzset(); }
