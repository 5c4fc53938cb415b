#ifndef BOREALIS_CONFIG_CONFIG_4410_H
#define BOREALIS_CONFIG_CONFIG_4410_H

#include <string>

#include "borealis/config/config_box.h"
#include "borealis/config/config_cal.h"
#include "borealis/config/config_cfg.h"
#include "borealis/config/config_cmd.h"
#include "borealis/config/config_factory.h"
#include "borealis/config/config_output.h"
#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela: the instrument. ack and error are working values of the client
// sessions, never read, answered or saved through the tree.
class Config4410 : public ConfigurableComposite {
public:
    explicit Config4410(const std::string& name = "vela");

    // factory comes first among the members because serialnumber shows its
    // serial number; the element order is set in the constructor.
    ConfigFactory factory;

    ConfigurableBool ack;
    ConfigurableString ver;
    ConfigurableString name;
    ConfigurableStringProxyReadOnly serialnumber;
    ConfigurableString ipaddress;
    ConfigOutput output;
    ConfigBox box;
    ConfigCfg cfg;
    ConfigCal cal;
    ConfigCmd cmd;
    ConfigCPLD cpld;
    ConfigurableString error;
};

#endif
