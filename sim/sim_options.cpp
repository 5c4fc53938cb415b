#include "sim/sim_options.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include "sim/control_commands.h"

namespace {

double Number(const std::string& option, const std::string& text) {
    char* end = nullptr;
    errno = 0;
    double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || errno == ERANGE)
        throw OptionError("vela-sim: " + option + " needs a number, not \"" + text + "\"");
    return value;
}

std::uint64_t Count(const std::string& option, const std::string& text, std::uint64_t maximum) {
    char* end = nullptr;
    errno = 0;
    unsigned long long value = std::strtoull(text.c_str(), &end, 0);
    if (text.empty() || text[0] == '-' || *end != '\0' || errno == ERANGE || value > maximum)
        throw OptionError("vela-sim: " + option + " needs a whole number from 0 to " +
                          std::to_string(maximum) + ", not \"" + text + "\"");
    return value;
}

}  // namespace

CommandLine ParseCommandLine(int argc, char* argv[]) {
    CommandLine line;
    SimOptions& options = line.options;
    for (int i = 1; i < argc; ++i) {
        std::string option = argv[i];
        std::string value;
        bool has_value = false;
        if (auto equals = option.find('=');
            option.compare(0, 2, "--") == 0 && equals != std::string::npos) {
            value = option.substr(equals + 1);
            option.resize(equals);
            has_value = true;
        }
        auto next = [&]() -> std::string {
            if (has_value) return value;
            if (i + 1 >= argc) throw OptionError("vela-sim: " + option + " needs a value");
            return argv[++i];
        };
        if (option == "--help" || option == "-h")
            line.help = true;
        else if (option == "--root")
            options.root = next();
        else if (option == "--ticks-start")
            options.processor.ticks_start = Count(option, next(), 0xFFFFFFFFu);
        else if (option == "--drift-ppm")
            options.processor.drift_ppm = Number(option, next());
        else if (option == "--trim-ppm")
            options.processor.trim_ppm = Number(option, next());
        else if (option == "--manual")
            options.processor.manual = true;
        else if (option == "--epoch")
            options.processor.epoch = static_cast<std::int64_t>(Count(option, next(), 0xFFFFFFFFu));
        else if (option == "--no-noise")
            options.noise = false;
        else if (option == "--seed")
            options.seed = static_cast<std::uint32_t>(Count(option, next(), 0xFFFFFFFFu));
        else if (option == "--port")
            options.port = static_cast<unsigned short>(Count(option, next(), 65535));
        else
            throw OptionError("vela-sim: unknown option " + option + " (see --help)");
    }
    if (options.root.empty() && !line.help)
        throw OptionError("vela-sim: --root DIR is required (see --help)");
    return line;
}

std::string UsageText() {
    return "Usage: vela-sim --root DIR [options]\n"
           "Plays the CH4 analyzer's hardware under DIR for a daemon run with\n"
           "BOREALIS_ROOT=DIR: builds the files it expects when missing, serves\n"
           "dev/dsp4410, dev/mirror4410 and dev/net_btn, plays the interface box on\n"
           "request, and takes commands on run/vela-sim.ctl. Prints\n"
           "\"vela-sim: ready DIR\" once everything listens; stops on SIGINT or SIGTERM.\n"
           "\n"
           "Options:\n"
           "  --root DIR          the simulated root (required)\n"
           "  --ticks-start N     the processor's millisecond counter at start\n"
           "                      (default 1000; near 4294967295 to see it wrap)\n"
           "  --drift-ppm X       the counter's rate error in ppm (default 0)\n"
           "  --trim-ppm K        rate change in ppm per count of the clock_yz register away\n"
           "                      from 32768, above it slower (default 1)\n"
           "  --manual            manual clock: time stands still until the command run\n"
           "                      advances it; frames are stamped with --epoch plus the\n"
           "                      simulated time, and noise is off until noise 1\n"
           "  --epoch SECONDS     the manual clock's system time at start, in seconds\n"
           "                      since 1970 (default 1767225600: 2026-01-01 00:00:00 UTC)\n"
           "  --no-noise          send every value exactly as set (as the command noise 0)\n"
           "  --seed N            seed of the noise and of fault garbage (default 4410)\n"
           "  --port N            the daemon's TCP port, for box connect (default 4410)\n"
           "  --help              this text\n"
           "\n"
           "Control commands, one per line on run/vela-sim.ctl:\n" +
           ControlCommands::Help();
}
