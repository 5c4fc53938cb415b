#ifndef CONFIGURABLE_CONFIG_TIME_H
#define CONFIGURABLE_CONFIG_TIME_H

#include <string>

#include "common/timestamp.h"
#include "configurable/configurable.h"

// A full date and time, written "YYYY-MM-DD HH:MM:SS.SS".
class ConfigurableTimestamp : public Configurable {
public:
    ConfigurableTimestamp(const std::string& name, const Timestamp& defaultValue);
    ConfigurableTimestamp& operator=(const ConfigurableTimestamp& other) = default;
    bool operator==(const ConfigurableTimestamp& other) const {
        return theValue.get() == other.theValue.get();
    }

    const Timestamp& value() const { return theValue; }
    void set(const Timestamp& value);

    void set_default() override;
    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;

private:
    Timestamp theValue;
    Timestamp theDefault;
};

// A time of day (or a duration) as "HH:MM", held as hours*3600 + minutes*60
// seconds from the epoch of Timestamp.
class ConfigurableTime_HourMinutes : public ConfigurableTimestamp {
public:
    ConfigurableTime_HourMinutes(const std::string& name, const Timestamp& defaultValue)
        : ConfigurableTimestamp(name, defaultValue) {}

    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;
};

#endif
