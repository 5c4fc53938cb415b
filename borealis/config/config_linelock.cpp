#include "borealis/config/config_linelock.h"

#include "borealis/config/config_choice.h"

std::vector<std::string> ConfigLaserCoolerAutoManual::theOptions;

ConfigLaserCoolerAutoManual::ConfigLaserCoolerAutoManual(const std::string& name)
    : ConfigurableMultipleChoice(name, SharedOptions(theOptions, {"auto", "manual", "daccount"}),
                                 0 /* "auto" */) {}

std::vector<std::string> ConfigLaserBlockOnOff::theOptions;

ConfigLaserBlockOnOff::ConfigLaserBlockOnOff(const std::string& name)
    : ConfigurableMultipleChoice(name, SharedOptions(theOptions, {"off", "on", "daccount"}),
                                 1 /* "on" */) {}

ConfigLaserCooler::ConfigLaserCooler(const std::string& name)
    : ConfigurableComposite(name),
      control("control"),
      temp("temp", 25, 0, 50, false),
      daccount("daccount", 0, 0, 65535) {
    add_child(&control);
    add_child(&temp);
    add_child(&daccount);
}

ConfigLaserBlock::ConfigLaserBlock(const std::string& name)
    : ConfigurableComposite(name),
      control("control"),
      temp("temp", 22, 0, 50, false),
      daccount("daccount", 0, 0, 65535) {
    add_child(&control);
    add_child(&temp);
    add_child(&daccount);
}

ConfigLineLock::ConfigLineLock(const std::string& name)
    : ConfigurableComposite(name), lasercooler("lasercooler"), laserblock("laserblock") {
    add_child(&lasercooler);
    add_child(&laserblock);
}
