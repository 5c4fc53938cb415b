#ifndef BOREALIS_CONFIG_CONFIG_OUTPUT_H
#define BOREALIS_CONFIG_CONFIG_OUTPUT_H

#include <string>
#include <vector>

#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// vela/output/rate: the data-record rate in records per second; 0 stops the
// data records.
class ConfigRate : public ConfigurableMultipleChoice {
public:
    explicit ConfigRate(const std::string& name = "rate");

    // Records per second of the current option.
    int number() const;

private:
    static std::vector<std::string> theOptions;
    static std::vector<int> theNumbers;
};

// vela/output: the data rate and the optional record streams of the client
// being served.
class ConfigOutput : public ConfigurableComposite {
public:
    explicit ConfigOutput(const std::string& name = "output");

    ConfigRate rate;
    ConfigurableBool waveforms;
    ConfigurableBool status;
    ConfigurableBool dataclock;
    ConfigurableBool dataclocksync;
};

#endif
