#include "borealis/config/config_cfg.h"

#include <stdexcept>

#include <boost/lexical_cast.hpp>

#include "borealis/config/config_choice.h"

std::vector<std::string> ConfigCfgTempRange::theOptions;

ConfigCfgTempRange::ConfigCfgTempRange(const std::string& name)
    : ConfigurableMultipleChoice(name, SharedOptions(theOptions, {"low", "high"}), 1 /* "high" */) {
}

namespace {

// The quantity each analog output follows until a client chooses another.
const char* const kDefaultDacSources[ConfigCfg::kDacCount] = {"ch4d", "temp",     "pressure",
                                                              "rssi", "droprate", "ch4"};

}  // namespace

ConfigCfg::ConfigCfg(const std::string& name)
    : ConfigurableComposite(name),
      temprange("temprange"),
      clock("clock"),
      network("network"),
      heater("heater"),
      linelock("linelock"),
      spinmirror("spinmirror"),
      sdmaddress("sdmaddress", 0, 0, 15) {
    add_child(&temprange);
    add_child(&clock);
    add_child(&network);
    for (int n = 1; n <= kAuxCount; ++n) {
        theAux.emplace_back(new ConfigCfgAux("aux" + std::to_string(n)));
        add_child(theAux.back().get());
    }
    for (int n = 1; n <= kDacCount; ++n) {
        theDacs.emplace_back(
            new ConfigCfgDac("dac" + std::to_string(n), kDefaultDacSources[n - 1]));
        add_child(theDacs.back().get());
    }
    add_child(&heater);
    add_child(&linelock);
    add_child(&spinmirror);
    add_child(&sdmaddress);
}

ConfigCfgAux& ConfigCfg::aux(int number) {
    return const_cast<ConfigCfgAux&>(static_cast<const ConfigCfg&>(*this).aux(number));
}

const ConfigCfgAux& ConfigCfg::aux(int number) const {
    if (number < 1 || number > kAuxCount) {
        throw std::runtime_error("Invalid Auxilliary: " + boost::lexical_cast<std::string>(number));
    }
    return *theAux[number - 1];
}

ConfigCfgDac& ConfigCfg::dac(int number) {
    return const_cast<ConfigCfgDac&>(static_cast<const ConfigCfg&>(*this).dac(number));
}

const ConfigCfgDac& ConfigCfg::dac(int number) const {
    if (number < 1 || number > kDacCount) {
        throw std::runtime_error("Invalid Dac: " + boost::lexical_cast<std::string>(number));
    }
    return *theDacs[number - 1];
}
