#ifndef BOREALIS_CONFIG_CONFIG_FACTORY_H
#define BOREALIS_CONFIG_CONFIG_FACTORY_H

#include <string>

#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela/factory/cmd: commit the factory constants to their file, or roll back
// to what the file holds.
class ConfigFactoryCmd : public ConfigurableComposite {
public:
    explicit ConfigFactoryCmd(const std::string& name = "cmd");

    ConfigurableBool commit;
    ConfigurableBool rollback;
};

// vela/factory: the constants measured for this analyzer when it was built.
class ConfigFactory : public ConfigurableComposite {
public:
    explicit ConfigFactory(const std::string& name = "factory");

    ConfigurableString serialnumber;
    ConfigurableInteger lasermoddepth;
    ConfigurableFloat laserstarttemp;
    ConfigurableFloat blockstarttemp;
    ConfigurableFloat blockstarttemplowrange;
    ConfigurableFloat rssidropthresh;
    ConfigurableFloat pzero;
    ConfigurableFloat pspan;
    ConfigurableInteger samplegain;
    ConfigurableInteger refgain;
    ConfigurableInteger mirrorpos;
    ConfigurableInteger offset1;
    ConfigurableInteger delta1;
    ConfigurableInteger offset2;
    ConfigurableInteger delta2;
    ConfigurableInteger dither;
    ConfigurableInteger sampledcoffset;
    ConfigurableInteger sampleacoffset;
    ConfigurableInteger sampleopticaloffset;
    ConfigFactoryCmd cmd;
};

// vela/cpld/motor: the mirror motor as the programmable logic reports it.
class ConfigCPLDMotor : public ConfigurableComposite {
public:
    explicit ConfigCPLDMotor(const std::string& name = "motor");

    ConfigurableInteger control;
    ConfigurableInteger desired_pos;
    ConfigurableInteger actual_pos;
};

// vela/cpld: the programmable logic; ver is its hardware identity text.
class ConfigCPLD : public ConfigurableComposite {
public:
    explicit ConfigCPLD(const std::string& name = "cpld");

    ConfigurableString ver;
    ConfigCPLDMotor motor;
};

#endif
