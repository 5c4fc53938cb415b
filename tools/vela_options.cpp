#include "tools/vela_options.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

#include "tools/vela_error.h"

namespace {

// One command: the options it takes besides the common ones, how many
// arguments, and its help.
struct CommandEntry {
    const char* name;
    std::vector<std::string> options;
    std::size_t min_arguments, max_arguments;
    const char* usage;
    const char* summary;
    const char* help;
};

const char kCommonHelp[] =
    "\nOptions of every command:\n"
    "  --host HOST        the analyzer, a name or an address (default localhost)\n"
    "  --port PORT        its TCP port (default 4410, or $BOREALIS_PORT)\n"
    "  --timeout SECONDS  how long to wait for the analyzer (default 5; find: 3)\n"
    "  --help             this help\n"
    "\nExit status: 0 done, 1 failed, 2 usage error, 3 cannot connect.\n";

const std::vector<CommandEntry>& Commands() {
    static const std::vector<CommandEntry> commands = {
        {"find",
         {},
         0,
         0,
         "vela find [--timeout SECONDS]",
         "find            list the analyzers on the local network",
         "Browses the local network for analyzers (DNS-SD service _norvance-vela._tcp)\n"
         "for --timeout seconds (default 3) and lists each one on a line: its name,\n"
         "host, addresses, port and TXT entries, separated by tabs. Fails when none\n"
         "was found.\n"},
        {"stream",
         {"csv", "json", "status", "clock", "count"},
         0,
         0,
         "vela stream [--csv | --json] [--status] [--clock] [--count N]",
         "stream          print the records as CSV or JSON lines",
         "Prints the analyzer's records as they come, each checked against its\n"
         "checksum (a bad line is reported on standard error and skipped).\n"
         "  --csv       CSV lines, the default: the record type, then the values; the\n"
         "              first record of a type follows its header line, the type with\n"
         "              H appended, then the column names\n"
         "  --json      one JSON object a line: \"type\", each column by name, and\n"
         "              DIAGFLAGS, the names of the DIAG bits that are set\n"
         "  --status    status records (DATASTAT) too\n"
         "  --clock     data clock records (DATACLOCK) too\n"
         "  --count N   end after N records\n"},
        {"log",
         {"status", "clock", "count"},
         1,
         1,
         "vela log [--status] [--clock] [--count N] DIR",
         "log DIR         record into daily CSV files under DIR",
         "Records into daily CSV files under DIR, one per record type and day (UTC),\n"
         "such as DIR/2026-11-23_DATA.csv: the column names first, then one line a\n"
         "record. A file that exists is appended to, a partial last line left by a\n"
         "crash is dropped first. --status, --clock and --count as for stream.\n"},
        {"get",
         {},
         1,
         1,
         "vela get PATH",
         "get PATH        print a setting, or a part of the configuration",
         "Prints an element of the analyzer's configuration, named by its path below\n"
         "vela (cfg/heater/top, output/rate): the value of an element that holds a\n"
         "value, or the element itself as indented XML. Fails when there is no such\n"
         "element.\n"},
        {"set",
         {},
         2,
         2,
         "vela set PATH VALUE",
         "set PATH VALUE  change a setting",
         "Writes VALUE into the element at PATH (as for get) and prints the element as\n"
         "the analyzer then holds it: a value out of range shows clamped, a read-only\n"
         "element keeps its value. A value the analyzer refuses gets no answer: vela\n"
         "waits --timeout seconds, says so and fails; the daemon's output (syslog on\n"
         "the analyzer) tells why.\n"},
        {"zero",
         {},
         0,
         0,
         "vela zero",
         "zero            take the CH4 zero (zero gas flowing)",
         "Takes the CH4 zero from the last second of data (zero gas flowing) and\n"
         "prints the calibration before and after. Not kept over a restart until\n"
         "commit.\n"},
        {"span",
         {},
         1,
         1,
         "vela span PPM",
         "span PPM        take the CH4 span (a span gas of PPM flowing)",
         "Takes the CH4 span from the last second of data, a span gas of PPM ppm\n"
         "flowing, and prints the calibration before and after.\n"},
        {"commit",
         {},
         0,
         0,
         "vela commit",
         "commit          keep the calibration over restarts",
         "Keeps the calibration in force over restarts.\n"},
        {"rollback",
         {},
         0,
         0,
         "vela rollback",
         "rollback        return to the calibration last kept",
         "Returns to the calibration last committed.\n"},
        {"watch",
         {},
         0,
         0,
         "vela watch",
         "watch           a live view of the analyzer",
         "A live view of the analyzer, refreshed in place: CH4, its density, the\n"
         "temperature, pressure and signal strength, the DIAG flags (those set\n"
         "highlighted; NO_COLOR turns highlighting off), the record rate, the\n"
         "analyzer's identity and the connection, which is made again when it is\n"
         "lost. Ctrl-C ends it.\n"},
        {"serve",
         {"listen"},
         0,
         0,
         "vela serve [--listen ADDR:PORT]",
         "serve           a live view of the analyzer in web browsers",
         "Serves a live view of the analyzer to web browsers at http://ADDR:PORT/\n"
         "(default 127.0.0.1:8044; port 0 takes a free one, and the address is\n"
         "printed): charts of CH4, its density, the temperature, pressure and signal\n"
         "strength over a window of one minute to one hour, the DIAG flags, the\n"
         "analyzer's identity and the connection, and a settings panel with the\n"
         "configuration, the output rate and the CH4 calibration. All browsers share\n"
         "one connection to the analyzer, which is made again when it is lost.\n"
         "Ctrl-C ends it.\n"
         "  --listen ADDR:PORT  where browsers connect ([ADDR]:PORT for IPv6;\n"
         "                      0.0.0.0:8044 lets other machines in)\n"},
    };
    return commands;
}

const CommandEntry* FindCommand(const std::string& name) {
    for (const auto& entry : Commands())
        if (name == entry.name) return &entry;
    return nullptr;
}

std::string Overview() {
    std::string text =
        "usage: vela [options] COMMAND [ARGUMENTS]\n"
        "\nThe client of the VELA CH4 analyzer's daemon.\n\nCommands:\n";
    for (const auto& entry : Commands()) text += std::string("  ") + entry.summary + "\n";
    return text + kCommonHelp + "\n'vela COMMAND --help' tells more about a command.\n";
}

long ParseNumber(const std::string& option, const std::string& text, long low, long high) {
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || errno != 0 || value < low || value > high)
        throw UsageError("--" + option + ": not a number from " + std::to_string(low) + " to " +
                         std::to_string(high) + ": " + text);
    return value;
}

double ParseSeconds(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !std::isfinite(value) || value <= 0 || value > 86400)
        throw UsageError("--timeout: not a number of seconds: " + text);
    return value;
}

bool TakesValue(const std::string& option) {
    return option == "host" || option == "port" || option == "timeout" || option == "count" ||
           option == "listen";
}

// Stores one option; `value` is empty for the flags.
void Apply(VelaOptions& options, const std::string& option, const std::string& value) {
    if (option == "host")
        options.host = value;
    else if (option == "port")
        options.port = static_cast<unsigned short>(ParseNumber(option, value, 1, 65535));
    else if (option == "timeout")
        options.timeout = ParseSeconds(value);
    else if (option == "count")
        options.count = ParseNumber(option, value, 1, 1000000000);
    else if (option == "listen")
        options.listen = value;
    else if (option == "csv")
        options.csv = true;
    else if (option == "json")
        options.json = true;
    else if (option == "status")
        options.status = true;
    else if (option == "clock")
        options.clock = true;
    else if (option == "help")
        options.help = true;
    else
        throw UsageError("unknown option --" + option);
}

void CheckAgainst(const CommandEntry& entry, const VelaOptions& options,
                  const std::vector<std::string>& given) {
    const std::string usage = std::string("\nusage: ") + entry.usage;
    for (const auto& option : given) {
        const bool common =
            option == "host" || option == "port" || option == "timeout" || option == "help";
        bool own = false;
        for (const auto& allowed : entry.options) own = own || option == allowed;
        if (!common && !own)
            throw UsageError(std::string(entry.name) + " takes no --" + option + usage);
    }
    if (options.csv && options.json) throw UsageError("--csv or --json, not both" + usage);
    if (options.arguments.size() < entry.min_arguments)
        throw UsageError(std::string(entry.name) + ": an argument is missing" + usage);
    if (options.arguments.size() > entry.max_arguments)
        throw UsageError(std::string(entry.name) + ": too many arguments" + usage);
}

}  // namespace

int VelaOptions::TimeoutMs(double fallback_seconds) const {
    return static_cast<int>(std::lround((timeout > 0 ? timeout : fallback_seconds) * 1000));
}

VelaOptions ParseVelaOptions(int argc, const char* const argv[]) {
    VelaOptions options;
    if (const char* port = std::getenv("BOREALIS_PORT"); port && *port) {
        try {
            options.port = static_cast<unsigned short>(ParseNumber("port", port, 1, 65535));
        } catch (const UsageError&) {
            throw UsageError(std::string("BOREALIS_PORT is not a port: ") + port);
        }
    }
    std::vector<std::string> given;
    bool options_ended = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (!options_ended && word == "--") {
            options_ended = true;
        } else if (!options_ended &&
                   (word == "-h" || (word.size() > 2 && word.compare(0, 2, "--") == 0))) {
            std::string option = word == "-h" ? "help" : word.substr(2), value;
            const auto equals = option.find('=');
            if (equals != std::string::npos) {
                value = option.substr(equals + 1);
                option.erase(equals);
            } else if (TakesValue(option)) {
                if (i + 1 >= argc) throw UsageError("--" + option + " needs a value");
                value = argv[++i];
            }
            Apply(options, option, value);
            given.push_back(option);
        } else if (options.command.empty()) {
            options.command = word;
        } else {
            options.arguments.push_back(word);
        }
    }
    if (options.command == "help") {
        options.command = options.arguments.empty() ? "" : options.arguments.front();
        options.arguments.clear();
        options.help = true;
    }
    if (options.help) return options;
    if (options.command.empty())
        throw UsageError("a command is missing\nusage: vela [options] COMMAND [ARGUMENTS]");
    const CommandEntry* entry = FindCommand(options.command);
    if (!entry) throw UsageError("unknown command " + options.command);
    CheckAgainst(*entry, options, given);
    return options;
}

std::string HelpText(const std::string& command) {
    const CommandEntry* entry = FindCommand(command);
    if (!entry) return Overview();
    return std::string("usage: ") + entry->usage + "\n\n" + entry->help + kCommonHelp;
}
