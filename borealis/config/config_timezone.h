#ifndef BOREALIS_CONFIG_CONFIG_TIMEZONE_H
#define BOREALIS_CONFIG_CONFIG_TIMEZONE_H

#include <string>
#include <vector>

#include "configurable/configbuiltin.h"

// vela/cfg/clock/zone: the time zone, one of the zones installed on the
// analyzer. All instances share one option table; it starts as the single
// zone "UTC" and is replaced by the installed zones once they are known.
class ConfigTimezone : public ConfigurableMultipleChoice {
public:
    explicit ConfigTimezone(const std::string& name = "zone");

    using ConfigurableMultipleChoice::set;
    // Selects the zone of that name; an unknown name leaves the value as it is.
    void set(const std::string& zoneName);

    // Replaces the shared table by `zones`, in their order. An empty list is
    // ignored: a choice needs at least one option.
    static void SetZones(const std::vector<std::string>& zones);
    static const std::vector<std::string>& Zones() { return theZones; }

    // Reads a new zone table from zone names separated by "|", the form in
    // which the type description lists them.
    std::istream& read_doctype(std::istream& in, std::ostream& err) override;

private:
    static std::vector<std::string> theZones;
};

#endif
