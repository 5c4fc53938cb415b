#include "borealis/config/config_timezone.h"

#include <algorithm>
#include <iterator>

std::vector<std::string> ConfigTimezone::theZones;

namespace {

// The first instance finds the table empty; UTC is always there.
const std::vector<std::string>* InitialZones(std::vector<std::string>& zones) {
    if (zones.empty()) {
        zones.push_back("UTC");
    }
    return &zones;
}

std::vector<std::string> SplitAtBars(const std::string& text) {
    std::vector<std::string> names;
    std::string::size_type start = 0;
    while (start <= text.size()) {
        std::string::size_type bar = text.find('|', start);
        if (bar == std::string::npos) {
            bar = text.size();
        }
        if (bar > start) {
            names.push_back(text.substr(start, bar - start));
        }
        start = bar + 1;
    }
    return names;
}

}  // namespace

ConfigTimezone::ConfigTimezone(const std::string& name)
    : ConfigurableMultipleChoice(name, InitialZones(theZones), 0) {}

void ConfigTimezone::set(const std::string& zoneName) {
    auto found = std::find(theZones.begin(), theZones.end(), zoneName);
    if (found != theZones.end()) {
        set(static_cast<int>(found - theZones.begin()));
    }
}

void ConfigTimezone::SetZones(const std::vector<std::string>& zones) {
    if (!zones.empty()) {
        theZones = zones;
    }
}

std::istream& ConfigTimezone::read_doctype(std::istream& in, std::ostream& /*err*/) {
    std::string text(std::istreambuf_iterator<char>(in), {});
    std::vector<std::string> zones = SplitAtBars(text);
    SetZones(zones);
    return in;
}
