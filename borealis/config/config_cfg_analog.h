#ifndef BOREALIS_CONFIG_CONFIG_CFG_ANALOG_H
#define BOREALIS_CONFIG_CONFIG_CFG_ANALOG_H

#include <string>
#include <vector>

#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela/cfg/auxN/type: how the raw auxiliary input is converted.
class ConfigCfgAuxType : public ConfigurableMultipleChoice {
public:
    explicit ConfigCfgAuxType(const std::string& name = "type");

private:
    static std::vector<std::string> theOptions;
};

// vela/cfg/auxN: one auxiliary input and the four coefficients that convert
// its raw value (polynomial, Steinhart-Hart or linear resistance-temperature).
class ConfigCfgAux : public ConfigurableComposite {
public:
    explicit ConfigCfgAux(const std::string& name);

    ConfigCfgAuxType type;
    ConfigurableFloat a0;
    ConfigurableFloat a1;
    ConfigurableFloat a2;
    ConfigurableFloat a3;
};

// vela/cfg/dacN/src: the quantity an analog output follows ("set" holds the
// output at its fixed voltage).
class ConfigCfgDacSrc : public ConfigurableMultipleChoice {
public:
    ConfigCfgDacSrc(const std::string& name, const std::string& defaultSource);

private:
    static const std::vector<std::string>* Options();
    static std::vector<std::string> theOptions;
};

// vela/cfg/dacN: one analog output. low and high are the source values that
// map to the ends of the output scale.
class ConfigCfgDac : public ConfigurableComposite {
public:
    ConfigCfgDac(const std::string& name, const std::string& defaultSource);

    ConfigurableFloat set;  // the output voltage when src is "set"
    ConfigCfgDacSrc src;
    ConfigurableFloat low;
    ConfigurableFloat high;
};

#endif
