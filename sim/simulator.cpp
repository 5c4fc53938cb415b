#include "sim/simulator.h"

namespace {

ProcessorSettings WithTrimRegister(ProcessorSettings settings, const std::string& root) {
    settings.clock_yz_path = root + "/sys/devices/platform/io4410/clock_yz";
    return settings;
}

Scenario MakeScenario(const SimOptions& options) {
    Scenario scenario(options.seed);
    // A manual clock is there for repeatable runs: exact values unless
    // noise is asked for.
    scenario.SetNoise(options.noise && !options.processor.manual);
    return scenario;
}

}  // namespace

Simulator::Simulator(const SimOptions& options)
    : scenario_(MakeScenario(options)),
      dsp_(loop_, options.root + "/dev/dsp4410"),
      mirror_socket_(loop_, options.root + "/dev/mirror4410"),
      button_(loop_, options.root + "/dev/net_btn"),
      processor_(loop_, dsp_, scenario_, WithTrimRegister(options.processor, options.root)),
      mirror_(mirror_socket_),
      commands_({scenario_, processor_, mirror_, dsp_}),
      control_(loop_, options.root + "/run/vela-sim.ctl",
               [this](const std::string& line, const ControlServer::Reply& reply) {
                   commands_.Execute(line, reply);
               }),
      signals_(loop_, [this] { loop_.Stop(); }) {}
