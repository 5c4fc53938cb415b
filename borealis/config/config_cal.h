#ifndef BOREALIS_CONFIG_CONFIG_CAL_H
#define BOREALIS_CONFIG_CONFIG_CAL_H

#include <string>

#include "common/timestamp.h"
#include "configurable/config_dynamic.h"
#include "configurable/config_time.h"
#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// One entry of the calibration history: when a zero or span was taken, which
// one, and the zero and span in force after it.
class ConfigCalRecord : public ConfigurableComposite {
public:
    // An entry with default values, as the history makes when it reads one.
    explicit ConfigCalRecord(const std::string& name);
    // An entry named "record" holding the given values.
    ConfigCalRecord(const Timestamp& when, const std::string& what, float zero, float span);
    ConfigCalRecord(const ConfigCalRecord&) = delete;

    // Copies the values and the flags; name, parent and children stay.
    ConfigCalRecord& operator=(const ConfigCalRecord& other);
    // Two entries are the same entry when they were taken at the same time.
    bool operator==(const ConfigCalRecord& other) const { return time == other.time; }

    ConfigurableTimestamp time;
    ConfigurableString type;
    ConfigurableFloat ch4zero;
    ConfigurableFloat ch4span;
};

// vela/cal/history: every zero and span taken, oldest first.
class ConfigCalHistory : public ConfigurableCompositeDynamic<ConfigCalRecord> {
public:
    explicit ConfigCalHistory(const std::string& name = "history");

    // Appends an entry named "record"; the list owns it.
    void append(const Timestamp& when, const std::string& what, float zero, float span);
};

// vela/cal: the CH4 calibration in force and its history.
class ConfigCal : public ConfigurableComposite {
public:
    explicit ConfigCal(const std::string& name = "cal");

    ConfigurableFloat ch4zero;
    ConfigurableFloat ch4span;
    ConfigurableFloat ch4spanconc;
    ConfigurableTimestamp ch4lastzero;
    ConfigurableTimestamp ch4lastspan;
    ConfigCalHistory history;
};

#endif
