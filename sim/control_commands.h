#ifndef SIM_CONTROL_COMMANDS_H
#define SIM_CONTROL_COMMANDS_H

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "sim/device_socket.h"
#include "sim/interface_box.h"
#include "sim/manual_clock.h"
#include "sim/mirror_device.h"
#include "sim/processor_time.h"
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
    DeviceSocket& button;
    InterfaceBox& box;
    ManualClock& clock;
    ProcessorTime& time;
};

// The control protocol: one command per line, looked up in a table of
// commands by its first word, or its first two for a group ("box send").
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
    // When a command that went well answers.
    enum class Completion {
        kAtOnce,
        kFramesSent,  // once what it sent has left for the daemon
        kBoxSettled,  // once the interface box has done what it was told
        kRunPlayed,   // once the manual clock has played the run
    };
    struct Command {
        const char* name;
        const char* arguments;
        const char* purpose;
        std::string (ControlCommands::*run)(const std::string& arguments);
        Completion completion;
    };
    std::string Answer(const Command& command, const std::string& arguments);
    static const Command* Find(const std::string& line, std::string& arguments);
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
    std::string Pong(const std::string& arguments);
    std::string Fatal(const std::string& arguments);
    std::string BareFrame(const std::string& arguments);
    std::string Motor(const std::string& arguments);
    std::string Button(const std::string& arguments);
    std::string GasSteady(const std::string& arguments);
    std::string GasStep(const std::string& arguments);
    std::string GasRamp(const std::string& arguments);
    std::string GasZero(const std::string& arguments);
    std::string GasSpan(const std::string& arguments);
    std::string FaultShort(const std::string& arguments);
    std::string FaultGarbage(const std::string& arguments);
    std::string FaultBurst(const std::string& arguments);
    std::string FaultStall(const std::string& arguments);
    std::string BoxConnect(const std::string& arguments);
    std::string BoxRate(const std::string& arguments);
    std::string BoxSet(const std::string& arguments);
    std::string BoxModel(const std::string& arguments);
    std::string BoxSend(const std::string& arguments);
    std::string BoxReceived(const std::string& arguments);
    std::string BoxDisconnect(const std::string& arguments);

    ControlTargets targets_;
};

#endif
