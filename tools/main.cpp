// vela: the command-line client of the VELA CH4 analyzer's daemon.

#include <iostream>
#include <map>

#include "tools/commands.h"
#include "tools/stop_request.h"
#include "tools/vela_error.h"
#include "tools/vela_options.h"

namespace {

int Run(const VelaOptions& options) {
    static const std::map<std::string, int (*)(const VelaOptions&)> commands = {
        {"find", RunFind},
        {"stream", RunStream},
        {"log", RunLog},
        {"get", RunGet},
        {"set", RunSet},
        {"zero", RunCalibration},
        {"span", RunCalibration},
        {"commit", RunCalibration},
        {"rollback", RunCalibration},
        {"watch", RunWatch},
#ifdef VELA_SERVE
        {"serve", RunServe},
#endif
    };
    const auto command = commands.find(options.command);
    if (command == commands.end())
        throw VelaError("this vela was built without " + options.command);
    return command->second(options);
}

}  // namespace

int main(int argc, char* argv[]) {
    try {
        const VelaOptions options = ParseVelaOptions(argc, argv);
        if (options.help) {
            std::cout << HelpText(options.command);
            return kExitOk;
        }
        CatchStopSignals();
        return Run(options);
    } catch (const UsageError& error) {
        std::cerr << "vela: " << error.what() << "\n";
        return error.status();
    } catch (const VelaError& error) {
        std::cerr << "vela: " << error.what() << std::endl;
        return error.status();
    } catch (const std::exception& error) {
        std::cerr << "vela: " << error.what() << std::endl;
        return kExitFailure;
    }
}
