#ifndef BOREALIS_CONFIG_CONFIG_LINELOCK_H
#define BOREALIS_CONFIG_CONFIG_LINELOCK_H

#include <string>
#include <vector>

#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela/cfg/linelock/lasercooler/control: regulate to temp ("auto"), hold the
// cooler ("manual"), or drive it with a fixed DAC count ("daccount").
class ConfigLaserCoolerAutoManual : public ConfigurableMultipleChoice {
public:
    explicit ConfigLaserCoolerAutoManual(const std::string& name = "control");

private:
    static std::vector<std::string> theOptions;
};

// vela/cfg/linelock/laserblock/control.
class ConfigLaserBlockOnOff : public ConfigurableMultipleChoice {
public:
    explicit ConfigLaserBlockOnOff(const std::string& name = "control");

private:
    static std::vector<std::string> theOptions;
};

// vela/cfg/linelock/lasercooler: the laser's temperature regulation.
class ConfigLaserCooler : public ConfigurableComposite {
public:
    explicit ConfigLaserCooler(const std::string& name = "lasercooler");

    ConfigLaserCoolerAutoManual control;
    ConfigurableFloat temp;
    ConfigurableInteger daccount;
};

// vela/cfg/linelock/laserblock: the laser block's temperature regulation.
class ConfigLaserBlock : public ConfigurableComposite {
public:
    explicit ConfigLaserBlock(const std::string& name = "laserblock");

    ConfigLaserBlockOnOff control;
    ConfigurableFloat temp;
    ConfigurableInteger daccount;
};

// vela/cfg/linelock: the targets that keep the laser on the absorption line.
class ConfigLineLock : public ConfigurableComposite {
public:
    explicit ConfigLineLock(const std::string& name = "linelock");

    ConfigLaserCooler lasercooler;
    ConfigLaserBlock laserblock;
};

#endif
