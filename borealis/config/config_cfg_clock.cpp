#include "borealis/config/config_cfg_clock.h"

#include <cstdio>
#include <ctime>
#include <sstream>
#include <stdexcept>

#include "borealis/config/config_choice.h"

std::vector<std::string> ConfigCfgClockPTP::theOptions;

ConfigCfgClockPTP::ConfigCfgClockPTP(const std::string& name)
    : ConfigurableMultipleChoice(
          name, SharedOptions(theOptions, {"auto", "slaveonly", "preferred"}), 0 /* "auto" */) {}

ConfigCfgClock::ConfigCfgClock(const std::string& name)
    : ConfigurableComposite(name),
      time("time", "00:00:00"),
      date("date", "1970-01-01"),
      zone("zone"),
      ptp("ptp") {
    add_child(&time);
    add_child(&date);
    add_child(&zone);
    add_child(&ptp);
}

namespace {

struct Fields {
    int first;
    int second;
    int third;
};

// Three integers separated by `separator`, as in "2024-02-10" or "12:5:7";
// false when a number is missing or a separator is another character.
bool ReadFields(const std::string& text, char separator, Fields& fields) {
    std::istringstream in(text);
    char firstSeparator = 0;
    char secondSeparator = 0;
    in >> fields.first >> firstSeparator >> fields.second >> secondSeparator >> fields.third;
    return !in.fail() && firstSeparator == separator && secondSeparator == separator;
}

std::string Format(const char* format, int first, int second, int third) {
    char text[40];
    std::snprintf(text, sizeof text, format, first, second, third);
    return text;
}

}  // namespace

std::int64_t ConfigCfgClock::Time() const {
    Fields day{};
    if (!ReadFields(date.value(), '-', day)) {
        throw std::runtime_error("Invalid date format (should be YYYY-MM-DD): " + date.value());
    }
    Fields clock{};
    if (!ReadFields(time.value(), ':', clock)) {
        throw std::runtime_error("Invalid time format (should be HH:MM:SS): " + time.value());
    }
    std::tm local{};
    local.tm_year = day.first - 1900;
    local.tm_mon = day.second - 1;
    local.tm_mday = day.third;
    local.tm_hour = clock.first;
    local.tm_min = clock.second;
    local.tm_sec = clock.third;
    local.tm_isdst = -1;  // the zone's rules decide whether daylight saving applies
    return std::mktime(&local);
}

void ConfigCfgClock::SetFromTime(std::int64_t seconds) {
    std::time_t when = static_cast<std::time_t>(seconds);
    std::tm local{};
    localtime_r(&when, &local);
    date.set(Format("%04d-%02d-%02d", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday));
    time.set(Format("%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec));
}
