// vela-sim: the simulated analyzer.
#include <iostream>

#include "sim/root_builder.h"
#include "sim/sim_options.h"
#include "sim/simulator.h"

int main(int argc, char* argv[]) {
    try {
        CommandLine line = ParseCommandLine(argc, argv);
        if (line.help) {
            std::cout << UsageText();
            return 0;
        }
        BuildRoot(line.options.root);
        Simulator simulator(line.options);
        std::cout << "vela-sim: ready " << line.options.root << std::endl;
        simulator.Run();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
