#ifndef BOREALIS_CONFIG_CONFIG_CFG_CLOCK_H
#define BOREALIS_CONFIG_CONFIG_CFG_CLOCK_H

#include <string>
#include <vector>

#include "borealis/config/config_timezone.h"
#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela/cfg/clock/ptp: how the PTP daemon takes part in clock synchronisation.
class ConfigCfgClockPTP : public ConfigurableMultipleChoice {
public:
    explicit ConfigCfgClockPTP(const std::string& name = "ptp");

private:
    static std::vector<std::string> theOptions;
};

// vela/cfg/clock: the analyzer's date, time and time zone as a client sets
// them, and the PTP mode.
class ConfigCfgClock : public ConfigurableComposite {
public:
    explicit ConfigCfgClock(const std::string& name = "clock");

    ConfigurableString time;
    ConfigurableString date;
    ConfigTimezone zone;
    ConfigCfgClockPTP ptp;
};

#endif
