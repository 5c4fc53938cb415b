#include "borealis/config/config_cal.h"

ConfigCalRecord::ConfigCalRecord(const std::string& name)
    : ConfigurableComposite(name),
      time("time", Timestamp(0.0)),
      type("type", ""),
      ch4zero("ch4zero", 0),
      ch4span("ch4span", 1) {
    add_child(&time);
    add_child(&type);
    add_child(&ch4zero);
    add_child(&ch4span);
}

ConfigCalRecord::ConfigCalRecord(const Timestamp& when, const std::string& what, float zero,
                                 float span)
    : ConfigCalRecord("record") {
    time.set(when);
    type.set(what);
    ch4zero.set(zero);
    ch4span.set(span);
}

ConfigCalRecord& ConfigCalRecord::operator=(const ConfigCalRecord& other) {
    ConfigurableComposite::operator=(other);
    time = other.time;
    type = other.type;
    ch4zero = other.ch4zero;
    ch4span = other.ch4span;
    return *this;
}

ConfigCalHistory::ConfigCalHistory(const std::string& name)
    : ConfigurableCompositeDynamic<ConfigCalRecord>(name) {}

void ConfigCalHistory::append(const Timestamp& when, const std::string& what, float zero,
                              float span) {
    add_child(new ConfigCalRecord(when, what, zero, span));
}

ConfigCal::ConfigCal(const std::string& name)
    : ConfigurableComposite(name),
      ch4zero("ch4zero", 0),
      ch4span("ch4span", 1),
      ch4spanconc("ch4spanconc", 2),
      ch4lastzero("ch4lastzero", Timestamp(0.0)),
      ch4lastspan("ch4lastspan", Timestamp(0.0)),
      history("history") {
    add_child(&ch4zero);
    add_child(&ch4span);
    add_child(&ch4spanconc);
    add_child(&ch4lastzero);
    add_child(&ch4lastspan);
    add_child(&history);
}
