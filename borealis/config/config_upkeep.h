#ifndef BOREALIS_CONFIG_CONFIG_UPKEEP_H
#define BOREALIS_CONFIG_CONFIG_UPKEEP_H

#include <string>
#include <vector>

#include "configurable/config_time.h"
#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// control of the mirror wash and of both heaters: "auto" follows the daily
// schedule, "on" and "off" override it.
class ConfigControl : public ConfigurableMultipleChoice {
public:
    explicit ConfigControl(const std::string& name = "control");

private:
    static std::vector<std::string> theOptions;
};

// vela/cfg/heater/top.
class ConfigTopHeater : public ConfigurableComposite {
public:
    explicit ConfigTopHeater(const std::string& name = "top");

    ConfigurableInteger heaterpower;
    ConfigControl control;
    ConfigurableTime_HourMinutes ontime;
    ConfigurableTime_HourMinutes offtime;
    ConfigurableFloat deltat;
};

// vela/cfg/heater/bottom.
class ConfigBottomHeater : public ConfigurableComposite {
public:
    explicit ConfigBottomHeater(const std::string& name = "bottom");

    ConfigurableInteger heaterpower;
    ConfigControl control;
    ConfigurableTime_HourMinutes ontime;
    ConfigurableTime_HourMinutes offtime;
    ConfigurableInteger signalstrengthlevel;
};

// vela/cfg/heater.
class ConfigHeater : public ConfigurableComposite {
public:
    explicit ConfigHeater(const std::string& name = "heater");

    ConfigTopHeater top;
    ConfigBottomHeater bottom;
};

// vela/cfg/spinmirror: the daily mirror wash. ontime and offtime bound the
// wash period (equal means all day); repeatinterval is its period.
class ConfigSpinMirror : public ConfigurableComposite {
public:
    explicit ConfigSpinMirror(const std::string& name = "spinmirror");

    ConfigControl control;
    ConfigurableTime_HourMinutes ontime;
    ConfigurableTime_HourMinutes offtime;
    ConfigurableInteger duration;
    ConfigurableTime_HourMinutes repeatinterval;
    ConfigurableInteger signalstrengthlevel;
};

#endif
