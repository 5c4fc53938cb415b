#ifndef BOREALIS_SYSTEM_TIME_SETTINGS_H
#define BOREALIS_SYSTEM_TIME_SETTINGS_H

#include <cstdint>
#include <string>
#include <vector>

class Platform;
class PtpSettings;

// The analyzer's time zone, system clock and battery-backed hardware clock.
// A zone is installed by copying its compiled file over the local-time file
// and recording its name in the zone-name file.
class TimeSettings {
public:
    // Lists the zones of the zone directory and takes the current zone from
    // the zone-name file when that names a known zone, "UTC" otherwise (all
    // system paths, found through `platform`). Throws ErrnoError when the
    // zone directory cannot be listed.
    explicit TimeSettings(Platform& platform,
                          const std::string& zone_directory = "/usr/share/zoneinfo/posix",
                          const std::string& local_time_file = "/etc/localtime",
                          const std::string& zone_name_file = "/etc/timezone",
                          const std::string& clock_device = "/dev/rtc0");

    // Whether `name` is one of the installed zones, exactly.
    bool IsKnownZone(const std::string& name) const;
    // Installs zone `name` (a leading "/" is dropped), has local time follow
    // it and records its name. Throws std::runtime_error("Invalid timezone
    // \"" + name + "\"") for an unknown zone, and std::runtime_error naming
    // the file when a zone file cannot be read or written, root rights
    // cannot be had, or the name cannot be recorded (the zone is in force
    // then).
    void SetZone(std::string name);
    // Sets the system clock and the hardware clock with root rights. Throws
    // std::runtime_error when root rights cannot be had, ErrnoError when a
    // clock cannot be set.
    void SetTime(std::int64_t seconds, long nanoseconds);
    // A client's new time: sets both clocks to `seconds` unless the PTP
    // daemon is slave only (its master owns the clock then). Throws as
    // SetTime.
    void ClockTimeChanged(std::int64_t seconds, const PtpSettings& ptp);
    // The current time in seconds since the epoch. Throws ErrnoError("Unable
    // to get current time").
    static std::int64_t GetTime();

    // The installed zones, in the order of ScanZones.
    const std::vector<std::string>& zones() const { return zones_; }
    const std::string& current_zone() const { return current_zone_; }

private:
    Platform& platform_;
    std::string zone_directory_;
    std::string local_time_file_;
    std::string zone_name_file_;
    std::string clock_device_;
    std::vector<std::string> zones_;
    std::string current_zone_ = "UTC";
};

// The names of the zone files under `directory`, each after `prefix`: the
// entries of one folder in byte order, a folder's zones in place of the
// folder, hidden entries left out. Throws ErrnoError("Unable to open
// timezone directory: " + the folder) when a folder cannot be listed.
std::vector<std::string> ScanZones(const std::string& directory, const std::string& prefix = "");

#endif
