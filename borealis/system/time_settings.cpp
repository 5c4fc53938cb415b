#include "borealis/system/time_settings.h"

#include <dirent.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "borealis/platform/platform.h"
#include "borealis/system/ptp_settings.h"
#include "borealis/system/system_file.h"
#include "common/errno_error.h"

namespace {

std::vector<std::string> VisibleEntries(const std::string& directory) {
    DIR* folder = ::opendir(directory.c_str());
    if (!folder) throw ErrnoError("Unable to open timezone directory: " + directory);
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(folder))
        if (entry->d_name[0] != '.') names.push_back(entry->d_name);
    ::closedir(folder);
    std::sort(names.begin(), names.end());
    return names;
}

bool IsDirectory(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// Copies the compiled zone byte for byte over the local-time file.
void CopyZoneFile(std::istream& zone, const std::string& local_time_file) {
    std::ofstream out(local_time_file, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("Unable to open timezone file: " + local_time_file);
    char buffer[4096];
    while (zone) {
        zone.read(buffer, sizeof buffer);
        out.write(buffer, zone.gcount());
    }
    out.close();
    if (!out) throw std::runtime_error("Unable to write timezone file: " + local_time_file);
}

}  // namespace

std::vector<std::string> ScanZones(const std::string& directory, const std::string& prefix) {
    std::vector<std::string> zones;
    for (const std::string& name : VisibleEntries(directory)) {
        const std::string path = directory + "/" + name;
        if (!IsDirectory(path)) {
            zones.push_back(prefix + name);
            continue;
        }
        const std::vector<std::string> inner = ScanZones(path, prefix + name + "/");
        zones.insert(zones.end(), inner.begin(), inner.end());
    }
    return zones;
}

TimeSettings::TimeSettings(Platform& platform, const std::string& zone_directory,
                           const std::string& local_time_file, const std::string& zone_name_file,
                           const std::string& clock_device)
    : platform_(platform),
      zone_directory_(zone_directory),
      local_time_file_(local_time_file),
      zone_name_file_(zone_name_file),
      clock_device_(clock_device),
      zones_(ScanZones(platform.Path(zone_directory))) {
    const auto recorded = ReadFirstLine(platform_.Path(zone_name_file_));
    if (recorded && IsKnownZone(*recorded)) current_zone_ = *recorded;
}

bool TimeSettings::IsKnownZone(const std::string& name) const {
    return std::find(zones_.begin(), zones_.end(), name) != zones_.end();
}

void TimeSettings::SetZone(std::string name) {
    if (StartsWith(name, "/")) name.erase(0, 1);
    if (!IsKnownZone(name)) throw std::runtime_error("Invalid timezone \"" + name + "\"");
    const std::string zone_file = platform_.Path(zone_directory_ + "/" + name);
    std::ifstream zone(zone_file, std::ios::binary);
    if (!zone) throw std::runtime_error("Unable to open timezone file: " + zone_file);
    platform_.AsSuperUser([&] { CopyZoneFile(zone, platform_.Path(local_time_file_)); });
    platform_.FollowLocalTimeFile();
    current_zone_ = name;
    const std::string name_file = platform_.Path(zone_name_file_);
    if (!WriteTextFile(name_file, name + "\n"))
        throw std::runtime_error("Unable to save timezone string to file: " + name_file);
}

void TimeSettings::SetTime(std::int64_t seconds, long nanoseconds) {
    platform_.AsSuperUser([&] {
        platform_.SetSystemTime(seconds, nanoseconds / 1000);
        platform_.SetHardwareClock(clock_device_, seconds);
    });
}

void TimeSettings::ClockTimeChanged(std::int64_t seconds, const PtpSettings& ptp) {
    if (ptp.mode() == PtpSettings::kSlaveOnly) return;
    SetTime(seconds, 0);
}

std::int64_t TimeSettings::GetTime() {
    timeval now;
    if (::gettimeofday(&now, nullptr) != 0) throw ErrnoError("Unable to get current time");
    return now.tv_sec;
}
