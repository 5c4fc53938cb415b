#ifndef BOREALIS_CONFIG_CONFIG_CFG_CLOCK_H
#define BOREALIS_CONFIG_CONFIG_CFG_CLOCK_H

#include <cstdint>
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

    // The local time that date and time name, in seconds since the epoch;
    // a text of the wrong form throws std::runtime_error.
    std::int64_t Time() const;
    // Sets date and time to the local time of `seconds`.
    void SetFromTime(std::int64_t seconds);

    ConfigurableString time;
    ConfigurableString date;
    ConfigTimezone zone;
    ConfigCfgClockPTP ptp;
};

#endif
