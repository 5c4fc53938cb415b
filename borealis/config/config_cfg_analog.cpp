#include "borealis/config/config_cfg_analog.h"

#include <algorithm>

#include "borealis/config/config_choice.h"

std::vector<std::string> ConfigCfgAuxType::theOptions;

ConfigCfgAuxType::ConfigCfgAuxType(const std::string& name)
    : ConfigurableMultipleChoice(
          name, SharedOptions(theOptions, {"poly", "steinhart", "linear-rt"}), 0 /* "poly" */) {}

ConfigCfgAux::ConfigCfgAux(const std::string& name)
    : ConfigurableComposite(name),
      type("type"),
      a0("a0", 0),
      a1("a1", 0),
      a2("a2", 0),
      a3("a3", 0) {
    add_child(&type);
    add_child(&a0);
    add_child(&a1);
    add_child(&a2);
    add_child(&a3);
}

std::vector<std::string> ConfigCfgDacSrc::theOptions;

const std::vector<std::string>* ConfigCfgDacSrc::Options() {
    return SharedOptions(
        theOptions, {"set", "ch4d", "ch4", "temp", "pressure", "rssi", "droprate", "aux1", "aux2",
                     "aux3", "aux4", "aux5", "aux6", "aux7", "aux8", "auxtc1", "auxtc2", "auxtc3"});
}

namespace {

// The index of a default source; an unknown text falls back to "set", which
// holds the output still.
int SourceIndex(const std::vector<std::string>& options, const std::string& source) {
    auto found = std::find(options.begin(), options.end(), source);
    return found == options.end() ? 0 : static_cast<int>(found - options.begin());
}

}  // namespace

ConfigCfgDacSrc::ConfigCfgDacSrc(const std::string& name, const std::string& defaultSource)
    : ConfigurableMultipleChoice(name, Options(), SourceIndex(*Options(), defaultSource)) {}

ConfigCfgDac::ConfigCfgDac(const std::string& name, const std::string& defaultSource)
    : ConfigurableComposite(name),
      set("set", 0, -5, 5, false),
      src("src", defaultSource),
      low("low", 0),
      high("high", 0) {
    add_child(&set);
    add_child(&src);
    add_child(&low);
    add_child(&high);
}
