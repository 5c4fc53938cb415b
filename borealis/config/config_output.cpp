#include "borealis/config/config_output.h"

#include "borealis/config/config_choice.h"

std::vector<std::string> ConfigRate::theOptions;
std::vector<int> ConfigRate::theNumbers;

ConfigRate::ConfigRate(const std::string& name)
    : ConfigurableMultipleChoice(
          name, SharedOptions(theOptions, {"0", "1", "2", "5", "10", "20", "40"}), 6 /* "40" */) {
    SharedNumbers(theNumbers, {0, 1, 2, 5, 10, 20, 40});
}

int ConfigRate::number() const { return theNumbers[value()]; }

ConfigOutput::ConfigOutput(const std::string& name)
    : ConfigurableComposite(name),
      rate("rate"),
      waveforms("waveforms", false),
      status("status", false),
      dataclock("dataclock", false),
      dataclocksync("dataclocksync", false) {
    add_child(&rate);
    add_child(&waveforms);
    add_child(&status);
    add_child(&dataclock);
    add_child(&dataclocksync);
}
