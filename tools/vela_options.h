#ifndef TOOLS_VELA_OPTIONS_H
#define TOOLS_VELA_OPTIONS_H

#include <string>
#include <vector>

// What one vela command line asks for.
struct VelaOptions {
    std::string command;                 // "find", "stream", ...; empty for none
    std::vector<std::string> arguments;  // the words after the command that are no options
    std::string host = "localhost";
    unsigned short port = 4410;  // BOREALIS_PORT when set
    double timeout = 0;          // seconds; 0: the command's default
    bool csv = false;
    bool json = false;
    bool status = false;
    bool clock = false;
    long count = 0;                         // records to take before ending; 0: no limit
    std::string listen = "127.0.0.1:8044";  // where serve takes browsers
    bool help = false;

    // The deadline of the command in milliseconds: --timeout, or `fallback`.
    int TimeoutMs(double fallback_seconds) const;
};

// Reads a command line (program name first): options may stand before or
// after the command, "--" ends them, and a word such as "-5" is an argument.
// Throws UsageError naming what is wrong, with the command's usage line.
VelaOptions ParseVelaOptions(int argc, const char* const argv[]);

// The help text of `command`; the overview of all commands when it is empty
// or unknown.
std::string HelpText(const std::string& command);

#endif
