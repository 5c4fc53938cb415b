#include "sim/simulator.h"

namespace {

ProcessorSettings WithRootAndSeed(const SimOptions& options) {
    ProcessorSettings settings = options.processor;
    settings.clock_yz_path = options.root + "/sys/devices/platform/io4410/clock_yz";
    settings.seed = options.seed;
    return settings;
}

ProcessorTime MakeTime(const ProcessorSettings& settings) {
    return settings.manual ? ProcessorTime::Manual(settings.epoch) : ProcessorTime::Real();
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
    : time_(MakeTime(options.processor)),
      scenario_(MakeScenario(options)),
      dsp_(loop_, options.root + "/dev/dsp4410"),
      mirror_socket_(loop_, options.root + "/dev/mirror4410"),
      button_(loop_, options.root + "/dev/net_btn"),
      processor_(loop_, dsp_, scenario_, time_, WithRootAndSeed(options)),
      mirror_(mirror_socket_),
      box_(loop_, time_, dsp_, options.port),
      clock_(time_, processor_, box_, dsp_),
      commands_({scenario_, processor_, mirror_, dsp_, button_, box_, clock_, time_}),
      control_(loop_, options.root + "/run/vela-sim.ctl",
               [this](const std::string& line, const ControlServer::Reply& reply) {
                   commands_.Execute(line, reply);
               }),
      signals_(loop_, [this] { loop_.Stop(); }) {}
