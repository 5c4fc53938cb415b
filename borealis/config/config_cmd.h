#ifndef BOREALIS_CONFIG_CONFIG_CMD_H
#define BOREALIS_CONFIG_CONFIG_CMD_H

#include <string>

#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela/cmd: one-shot commands. Each is reset to false before every read, and
// a true value asks once for its action.
class ConfigCmd : public ConfigurableComposite {
public:
    explicit ConfigCmd(const std::string& name = "cmd");

    ConfigurableBool poll;
    ConfigurableBool ch4zero;
    ConfigurableBool ch4span;
    ConfigurableBool calcommit;
    ConfigurableBool calrollback;
    ConfigurableBool calabort;
    ConfigurableBool logusbstart;
    ConfigurableBool logusbstop;
    ConfigurableBool reboot;
    ConfigurableBool polltest;
    ConfigurableBool linelock;
};

#endif
