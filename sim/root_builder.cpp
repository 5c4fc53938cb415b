#include "sim/root_builder.h"

#include <sys/types.h>

#include "sim/file_util.h"
#include "sim/zone_files.h"

namespace {

struct RootFile {
    const char* path;
    const char* content;
    mode_t mode;
};

// The CPLD identifies itself as 1.3.12, built 2021-06-15 at 10:00.
const RootFile kRootFiles[] = {
    {"/sys/bus/platform/devices/io4410/rev", "259\n", 0644},  // 1 << 8 | 3
    {"/sys/bus/platform/devices/io4410/build", "12\n", 0644},
    {"/sys/bus/platform/devices/io4410/year_month", "32342\n", 0644},  // 2021 << 4 | 6
    {"/sys/bus/platform/devices/io4410/day_hour", "3850\n", 0644},     // 15 << 8 | 10
    {"/sys/devices/platform/io4410/clock_start", "0\n", 0644},
    {"/sys/devices/platform/io4410/clock_yz", "32768\n", 0644},  // centred: no trim
    {"/sys/devices/platform/io4410/offset1", "0\n", 0644},
    {"/sys/devices/platform/io4410/delta1", "0\n", 0644},
    {"/sys/devices/platform/io4410/offset2", "0\n", 0644},
    {"/sys/devices/platform/io4410/delta2", "0\n", 0644},
    {"/etc/hostname", "ch4-sim\n", 0644},
    {"/etc/network/interfaces",
     "auto lo\n"
     "iface lo inet loopback\n"
     "\n"
     "auto br0\n"
     "iface br0 inet static\n"
     "\taddress 192.168.1.95\n"
     "\tnetmask 255.255.255.0\n"
     "\tbroadcast 192.168.1.255\n"
     "\tgateway 192.168.1.1\n"
     "\n",
     0644},
    {"/etc/sysconfig/ptpd", "# PTP daemon settings\nPTPD_INTERFACE=br0\n", 0644},
    {"/etc/timezone", "UTC\n", 0644},
    // An analyzer always has its settings file, if only an empty one.
    {"/etc/vela.conf", "<norvance>\n<vela>\n</vela>\n</norvance>\n", 0644},
    // Logs each request to var/log/ptpd-init.log, found from the script's
    // own place so that the root can be anywhere.
    {"/etc/rc.d/init.d/ptpd",
     "#!/bin/sh\n"
     "# PTP daemon init script of the simulated analyzer: logs its argument.\n"
     "root=\"$(dirname \"$0\")/../../..\"\n"
     "echo \"$1\" >> \"$root/var/log/ptpd-init.log\"\n",
     0755},
};

const char* const kRootFolders[] = {"/dev", "/var/run", "/var/log", "/run"};

}  // namespace

void BuildRoot(const std::string& root) {
    for (const char* folder : kRootFolders) MakeFolders(root + folder);
    for (const RootFile& file : kRootFiles) WriteNewFile(root + file.path, file.content, file.mode);
    InstallZones(root + "/usr/share/zoneinfo/posix", root + "/etc/localtime");
}
