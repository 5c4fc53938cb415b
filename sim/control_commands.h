#ifndef SIM_CONTROL_COMMANDS_H
#define SIM_CONTROL_COMMANDS_H

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "sim/device_socket.h"
#include "sim/mirror_device.h"
#include "sim/scenario.h"
#include "sim/signal_processor.h"

// A control command that cannot be carried out; the text says why.
class CommandError : public std::runtime_error {
public:
    explicit CommandError(const std::string& message) : std::runtime_error(message) {}
};

// The parts of the simulated analyzer that commands act on.
struct ControlTargets {
    Scenario& scenario;
    SignalProcessor& processor;
    MirrorDevice& mirror;
    DeviceSocket& dsp;
};

// The control protocol: one command per line, looked up in a table of
// commands by its first word.
class ControlCommands {
public:
    // Takes the answer to one command.
    using Reply = std::function<void(const std::string& answer)>;

    explicit ControlCommands(ControlTargets targets) : targets_(targets) {}

    // Carries out one line and gives `reply` its answer: "ok", a value, or
    // several lines closed by "end"; "error: " and the reason when the
    // command fails. Always ends with a line end. A command that sends
    // frames answers once they have left for the daemon.
    void Execute(const std::string& line, const Reply& reply);
    // One line per command with its arguments and purpose, for --help.
    static std::string Help();

private:
    struct Command {
        const char* name;
        const char* arguments;
        const char* purpose;
        std::string (ControlCommands::*run)(const std::string& arguments);
        bool sends_frames;
    };
    std::string Answer(const Command& command, const std::string& arguments);
    static const std::vector<Command>& Table();

    std::string Set(const std::string& arguments);
    std::string Get(const std::string& arguments);
    std::string Noise(const std::string& arguments);
    std::string Drift(const std::string& arguments);
    std::string Message(const std::string& arguments);
    std::string Run(const std::string& arguments);
    std::string Received(const std::string& arguments);
    std::string Connected(const std::string& arguments);
    std::string Ticks(const std::string& arguments);
    std::string Mirror(const std::string& arguments);
    std::string ListCommands(const std::string& arguments);

    ControlTargets targets_;
};

#endif
