#ifndef BOREALIS_CONFIG_CONFIG_CFG_NETWORK_H
#define BOREALIS_CONFIG_CONFIG_CFG_NETWORK_H

#include <string>
#include <vector>

#include "borealis/config/config_ip_address.h"
#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela/cfg/network/configuration: "auto" takes the address by DHCP, "manual"
// uses the static addresses below it.
class ConfigAutoManual : public ConfigurableMultipleChoice {
public:
    explicit ConfigAutoManual(const std::string& name = "configuration");

private:
    static std::vector<std::string> theOptions;
};

// vela/cfg/network: host name and IPv4 settings of the analyzer's interface.
class ConfigCfgNetwork : public ConfigurableComposite {
public:
    explicit ConfigCfgNetwork(const std::string& name = "network");

    ConfigurableString name;
    ConfigAutoManual configuration;
    ConfigIPAddress ipaddress;
    ConfigIPAddress netmask;
    ConfigIPAddress gateway;
};

#endif
