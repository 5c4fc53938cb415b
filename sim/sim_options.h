#ifndef SIM_SIM_OPTIONS_H
#define SIM_SIM_OPTIONS_H

#include <stdexcept>
#include <string>

#include "sim/simulator.h"

// A command line that cannot be used; the text says why.
class OptionError : public std::runtime_error {
public:
    explicit OptionError(const std::string& message) : std::runtime_error(message) {}
};

struct CommandLine {
    SimOptions options;
    bool help = false;
};

// Reads the command line; throws OptionError for an unknown option, a bad
// number or a missing --root.
CommandLine ParseCommandLine(int argc, char* argv[]);

// The --help text: options and control commands.
std::string UsageText();

#endif
