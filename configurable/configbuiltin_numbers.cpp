#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "configurable/configbuiltin.h"

namespace {

// Numbers are written like the stream writes a double by default: six
// significant digits, the shorter of fixed and exponent form.
void WriteNumber(std::ostream& out, float value) {
    if (std::isnan(value))
        out << "nan";
    else
        out << static_cast<double>(value);
}

// Reads "inf", "-inf" or "nan" as one word after a number failed to parse.
bool ReadFloatWord(std::istream& in, float& value) {
    in.clear();
    in.seekg(0);
    std::string word;
    if (!(in >> word)) return false;
    if (word == "inf")
        value = std::numeric_limits<float>::infinity();
    else if (word == "-inf")
        value = -std::numeric_limits<float>::infinity();
    else if (word == "nan")
        value = std::numeric_limits<float>::quiet_NaN();
    else
        return false;
    return true;
}

}  // namespace

ConfigurableFloat::ConfigurableFloat(const std::string& name, float defaultValue)
    : Configurable(name),
      theValue(defaultValue),
      theMin(-FLT_MAX),
      theMax(FLT_MAX),
      theDefault(defaultValue),
      theRangeMode(UNBOUNDED) {}

ConfigurableFloat::ConfigurableFloat(const std::string& name, float defaultValue, float min,
                                     float max, bool strict)
    : Configurable(name),
      theValue(defaultValue),
      theMin(min),
      theMax(max),
      theDefault(defaultValue),
      theRangeMode(strict ? STRICT : CLAMP) {}

void ConfigurableFloat::set(float value) {
    if (theRangeMode == STRICT && !(value > theMin || value < theMax)) {
        throw std::range_error("ConfigurableFloat: range error");
    }
    if (theRangeMode != UNBOUNDED) {
        if (value < theMin)
            value = theMin;
        else if (value > theMax)
            value = theMax;
    }
    if (value == theValue) return;
    theValue = value;
    set_changed(true);
}

void ConfigurableFloat::set_default() { set(theDefault); }

std::istream& ConfigurableFloat::read_value(std::istream& in, std::ostream& err) {
    float value = 0;
    if (in >> value || ReadFloatWord(in, value))
        set(value);
    else
        err << "unable to read float";
    return in;
}

std::ostream& ConfigurableFloat::write_value(std::ostream& out) const {
    WriteNumber(out, theValue);
    return out;
}

std::ostream& ConfigurableFloat::write_doctype(std::ostream& out) const {
    out << "float:";
    WriteNumber(out, theDefault);
    if (theRangeMode != UNBOUNDED) {
        out << ';';
        WriteNumber(out, theMin);
        out << "...";
        WriteNumber(out, theMax);
    }
    return out;
}

ConfigurableInteger::ConfigurableInteger(const std::string& name, int defaultValue)
    : ConfigurableInteger(name, defaultValue, INT_MIN, INT_MAX) {}

ConfigurableInteger::ConfigurableInteger(const std::string& name, int defaultValue, int min)
    : ConfigurableInteger(name, defaultValue, min, INT_MAX) {}

ConfigurableInteger::ConfigurableInteger(const std::string& name, int defaultValue, int min,
                                         int max)
    : Configurable(name),
      theValue(defaultValue),
      theMin(min),
      theMax(max),
      theDefault(defaultValue) {}

void ConfigurableInteger::set(int value) {
    if (value < theMin)
        value = theMin;
    else if (value > theMax)
        value = theMax;
    if (value == theValue) return;
    theValue = value;
    set_changed(true);
}

void ConfigurableInteger::set_default() { set(theDefault); }

// The analyzer's long is 32 bits: a number beyond that range fails to read
// on every platform alike.
std::istream& ConfigurableInteger::read_value(std::istream& in, std::ostream& err) {
    long long value = 0;
    if (in >> value && (value < INT32_MIN || value > INT32_MAX)) {
        in.setstate(std::ios_base::failbit);
    }
    if (in.fail())
        err << "unable to read integer";
    else
        set(static_cast<int>(value));
    return in;
}

std::ostream& ConfigurableInteger::write_value(std::ostream& out) const {
    return out << static_cast<long>(theValue);
}

std::ostream& ConfigurableInteger::write_doctype(std::ostream& out) const {
    out << "integer:" << static_cast<long>(theDefault);
    if (theMin != INT_MIN || theMax != INT_MAX) {
        out << ';' << static_cast<long>(theMin) << "..." << static_cast<long>(theMax);
    }
    return out;
}
