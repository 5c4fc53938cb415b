#ifndef BOREALIS_CONFIG_CONFIG_CFG_H
#define BOREALIS_CONFIG_CONFIG_CFG_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "borealis/config/config_cfg_analog.h"
#include "borealis/config/config_cfg_clock.h"
#include "borealis/config/config_cfg_network.h"
#include "borealis/config/config_linelock.h"
#include "borealis/config/config_upkeep.h"
#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela/cfg/temprange: the analyzer's operating temperature range.
class ConfigCfgTempRange : public ConfigurableMultipleChoice {
public:
    explicit ConfigCfgTempRange(const std::string& name = "temprange");

private:
    static std::vector<std::string> theOptions;
};

// vela/cfg: the instrument's user settings.
class ConfigCfg : public ConfigurableComposite {
public:
    static constexpr int kAuxCount = 8;
    static constexpr int kDacCount = 6;

    explicit ConfigCfg(const std::string& name = "cfg");

    // Auxiliary input aux1..aux8; another number throws std::runtime_error.
    ConfigCfgAux& aux(int number);
    const ConfigCfgAux& aux(int number) const;
    // Analog output dac1..dac6; another number throws std::runtime_error.
    ConfigCfgDac& dac(int number);
    const ConfigCfgDac& dac(int number) const;

    ConfigCfgTempRange temprange;
    ConfigCfgClock clock;
    ConfigCfgNetwork network;
    ConfigHeater heater;
    ConfigLineLock linelock;
    ConfigSpinMirror spinmirror;
    ConfigurableInteger sdmaddress;

private:
    std::vector<boost::shared_ptr<ConfigCfgAux>> theAux;
    std::vector<boost::shared_ptr<ConfigCfgDac>> theDacs;
};

#endif
