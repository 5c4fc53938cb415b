#include "configurable/config_time.h"

#include <cstdint>
#include <iomanip>

ConfigurableTimestamp::ConfigurableTimestamp(const std::string& name, const Timestamp& defaultValue)
    : Configurable(name), theValue(defaultValue), theDefault(defaultValue) {}

void ConfigurableTimestamp::set(const Timestamp& value) {
    if (value.get() == theValue.get()) return;
    theValue = value;
    set_changed(true);
}

void ConfigurableTimestamp::set_default() { set(theDefault); }

// Once the date part is read the reader leaves the stream good, so only a
// date that does not parse is an error.
std::istream& ConfigurableTimestamp::read_value(std::istream& in, std::ostream& err) {
    Timestamp value(0.0);
    if (in >> value)
        set(value);
    else
        err << "unable to read Timestamp" << std::endl;
    return in;
}

std::ostream& ConfigurableTimestamp::write_value(std::ostream& out) const {
    return out << theValue;
}

std::ostream& ConfigurableTimestamp::write_doctype(std::ostream& out) const {
    return out << "YYYY-MM-DD HH:MM:SS.SS";
}

namespace {

// Reads one field as the analyzer's 32-bit long reads it: a number beyond
// that range fails the stream on every platform alike.
std::istream& ReadField(std::istream& in, long long& field) {
    if (in >> field && (field < INT32_MIN || field > INT32_MAX)) {
        in.setstate(std::ios_base::failbit);
    }
    return in;
}

}  // namespace

// Hours and minutes are not limited to their ranges: 25:00 is 90000 seconds.
std::istream& ConfigurableTime_HourMinutes::read_value(std::istream& in, std::ostream& err) {
    long long hours = 0;
    long long minutes = 0;
    char separator = 0;
    if (ReadField(in, hours) >> separator && separator == ':' && ReadField(in, minutes)) {
        set(Timestamp(hours * 3600.0 + minutes * 60.0));
    } else {
        err << "unable to read time (should be HH:MM)" << std::endl;
    }
    return in;
}

std::ostream& ConfigurableTime_HourMinutes::write_value(std::ostream& out) const {
    out << std::setfill('0') << std::setw(2) << value().hour() << ':' << std::setw(2)
        << value().minute() << std::setfill(' ');
    return out;
}

std::ostream& ConfigurableTime_HourMinutes::write_doctype(std::ostream& out) const {
    return out << "HH:MM";
}
