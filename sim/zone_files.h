#ifndef SIM_ZONE_FILES_H
#define SIM_ZONE_FILES_H

#include <string>

// Gives the root its compiled time zones: `zone_dir` (the folder the daemon
// lists zones from) as a copy of the host's zone files found in
// `host_zones`, and `localtime` as a copy of UTC. When the host has none, a
// small built-in set stands in: UTC and a few Region/City zones. A zone
// folder or local-time file that exists is left as it is. Throws ErrnoError
// when a file cannot be written.
void InstallZones(const std::string& zone_dir, const std::string& localtime,
                  const std::string& host_zones = "/usr/share/zoneinfo");

#endif
