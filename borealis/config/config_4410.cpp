#include "borealis/config/config_4410.h"

Config4410::Config4410(const std::string& elementName)
    : ConfigurableComposite(elementName),
      factory("factory"),
      ack("ack", true),
      ver("ver", ""),
      name("name", ""),
      serialnumber("serialnumber", factory.serialnumber),
      ipaddress("ipaddress", ""),
      output("output"),
      box("box"),
      cfg("cfg"),
      cal("cal"),
      cmd("cmd"),
      cpld("cpld"),
      error("error", "") {
    add_child(&ack);
    add_child(&ver);
    add_child(&name);
    add_child(&serialnumber);
    add_child(&ipaddress);
    add_child(&output);
    add_child(&box);
    add_child(&cfg);
    add_child(&cal);
    add_child(&cmd);
    add_child(&cpld);
    add_child(&factory);
    add_child(&error);
    ack.set_persistent(false);
    error.set_persistent(false);
    serialnumber.set_read_only(true);
}
