#include "borealis/config/config_cfg_clock.h"

#include "borealis/config/config_choice.h"

std::vector<std::string> ConfigCfgClockPTP::theOptions;

ConfigCfgClockPTP::ConfigCfgClockPTP(const std::string& name)
    : ConfigurableMultipleChoice(name, SharedOptions(theOptions, {"auto", "slaveonly", "preferred"}),
                                 0 /* "auto" */) {}

ConfigCfgClock::ConfigCfgClock(const std::string& name)
    : ConfigurableComposite(name),
      time("time", "00:00:00"),
      date("date", "1970-01-01"),
      zone("zone"),
      ptp("ptp") {
    add_child(&time);
    add_child(&date);
    add_child(&zone);
    add_child(&ptp);
}
