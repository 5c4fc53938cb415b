#include "borealis/config/config_cmd.h"

ConfigCmd::ConfigCmd(const std::string& name)
    : ConfigurableComposite(name),
      poll("poll", false),
      ch4zero("ch4zero", false),
      ch4span("ch4span", false),
      calcommit("calcommit", false),
      calrollback("calrollback", false),
      calabort("calabort", false),
      logusbstart("logusbstart", false),
      logusbstop("logusbstop", false),
      reboot("reboot", false),
      polltest("polltest", false),
      linelock("linelock", false) {
    for (Configurable* command : {&poll, &ch4zero, &ch4span, &calcommit, &calrollback, &calabort,
                                  &logusbstart, &logusbstop, &reboot, &polltest, &linelock}) {
        add_child(command);
    }
}
