#include "borealis/config/config_cfg_network.h"

#include "borealis/config/config_choice.h"

std::vector<std::string> ConfigAutoManual::theOptions;

ConfigAutoManual::ConfigAutoManual(const std::string& name)
    : ConfigurableMultipleChoice(name, SharedOptions(theOptions, {"auto", "manual"}),
                                 0 /* "auto" */) {}

ConfigCfgNetwork::ConfigCfgNetwork(const std::string& elementName)
    : ConfigurableComposite(elementName),
      name("name", "ch4-xxxx"),
      configuration("configuration"),
      ipaddress("ipaddress", "192.168.1.95"),
      netmask("netmask", "255.255.255.0"),
      gateway("gateway", "192.168.1.1") {
    add_child(&name);
    add_child(&configuration);
    add_child(&ipaddress);
    add_child(&netmask);
    add_child(&gateway);
}
