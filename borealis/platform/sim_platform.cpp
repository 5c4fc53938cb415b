#include "borealis/platform/sim_platform.h"

#include <cstdlib>

SimPlatform::SimPlatform(const std::string& root, unsigned short port) : root_(root), port_(port) {}

std::string SimPlatform::InterfaceName(const std::string& name) const {
    if (name != "br0") return name;
    const char* host_interface = std::getenv("BOREALIS_NETIF");
    return host_interface && *host_interface ? host_interface : "lo";
}
