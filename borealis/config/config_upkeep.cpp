#include "borealis/config/config_upkeep.h"

#include "borealis/config/config_choice.h"

namespace {

// Times of day are counted in seconds from midnight.
constexpr double kMidnight = 0;
constexpr double kHalfAnHour = 30 * 60;

}  // namespace

std::vector<std::string> ConfigControl::theOptions;

ConfigControl::ConfigControl(const std::string& name)
    : ConfigurableMultipleChoice(name, SharedOptions(theOptions, {"auto", "on", "off"}),
                                 0 /* "auto" */) {}

ConfigTopHeater::ConfigTopHeater(const std::string& name)
    : ConfigurableComposite(name),
      heaterpower("heaterpower", 100, 0, 100),
      control("control"),
      ontime("ontime", Timestamp(kMidnight)),
      offtime("offtime", Timestamp(kMidnight)),
      deltat("deltat", 0, -5, 5, false) {
    add_child(&heaterpower);
    add_child(&control);
    add_child(&ontime);
    add_child(&offtime);
    add_child(&deltat);
}

ConfigBottomHeater::ConfigBottomHeater(const std::string& name)
    : ConfigurableComposite(name),
      heaterpower("heaterpower", 100, 0, 100),
      control("control"),
      ontime("ontime", Timestamp(kMidnight)),
      offtime("offtime", Timestamp(kMidnight)),
      signalstrengthlevel("signalstrengthlevel", 40, 0, 100) {
    add_child(&heaterpower);
    add_child(&control);
    add_child(&ontime);
    add_child(&offtime);
    add_child(&signalstrengthlevel);
}

ConfigHeater::ConfigHeater(const std::string& name)
    : ConfigurableComposite(name), top("top"), bottom("bottom") {
    add_child(&top);
    add_child(&bottom);
}

ConfigSpinMirror::ConfigSpinMirror(const std::string& name)
    : ConfigurableComposite(name),
      control("control"),
      ontime("ontime", Timestamp(kMidnight)),
      offtime("offtime", Timestamp(kMidnight)),
      duration("duration", 30, 0, 300),
      repeatinterval("repeatinterval", Timestamp(kHalfAnHour)),
      signalstrengthlevel("signalstrengthlevel", 40, 0, 100) {
    add_child(&control);
    add_child(&ontime);
    add_child(&offtime);
    add_child(&duration);
    add_child(&repeatinterval);
    add_child(&signalstrengthlevel);
}
