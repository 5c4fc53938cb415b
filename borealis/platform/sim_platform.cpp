#include "borealis/platform/sim_platform.h"

#include <unistd.h>

#include <fstream>

#include "borealis/platform/sim_syslog.h"
#include "common/syslog_stream.h"

SimPlatform::SimPlatform(const std::string& root, unsigned short port, const std::string& netif)
    : root_(root), port_(port), netif_(netif) {}

std::string SimPlatform::InterfaceName(const std::string& name) const {
    return name == "br0" ? netif_ : name;
}

void SimPlatform::RouteSyslog(SysLog& syslog) const {
    syslog.SetWriter(SimSyslogWriter(Path("/dev/log"), syslog.Identity()));
}

void SimPlatform::Reboot() {
    ::sync();
    LogAction("reboot");
}

void SimPlatform::LogAction(const std::string& line) const {
    std::ofstream log(Path("/var/log/platform-actions.log"), std::ios::app);
    log << line << '\n';
}
