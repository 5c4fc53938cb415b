#include "sim/control_commands.h"

#include <strings.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "sim/processor_messages.h"

namespace {

const char kOk[] = "ok\n";

std::vector<std::string> Words(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

void ExpectWords(const std::string& arguments, std::size_t count, const char* usage) {
    if (Words(arguments).size() != count) throw CommandError(std::string("usage: ") + usage);
}

float ParseFloat(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    float value = std::strtof(text.c_str(), &end);
    if (text.empty() || *end != '\0' || errno == ERANGE) throw CommandError("not a number: " + text);
    return value;
}

unsigned long ParseUnsigned(const std::string& text, unsigned long maximum) {
    char* end = nullptr;
    errno = 0;
    unsigned long value = std::strtoul(text.c_str(), &end, 0);
    if (text.empty() || text[0] == '-' || *end != '\0' || errno == ERANGE || value > maximum)
        throw CommandError("not a number from 0 to " + std::to_string(maximum) + ": " + text);
    return value;
}

bool IsFlags(const std::string& name) { return ::strcasecmp(name.c_str(), "FLAGS") == 0; }

// Enough digits for the value to read back as the same float.
std::string FloatText(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

}  // namespace

const std::vector<ControlCommands::Command>& ControlCommands::Table() {
    static const std::vector<Command> table = {
        {"set", "<FIELD> <value>", "set a field (names below; FLAGS: processor flag bits)",
         &ControlCommands::Set, false},
        {"get", "<FIELD>", "the value set for a field", &ControlCommands::Get, false},
        {"noise", "<0|1>", "1: realistic scatter; 0: every value exactly as set",
         &ControlCommands::Noise, false},
        {"drift", "<ppm>", "rate error of the processor's millisecond counter", &ControlCommands::Drift,
         false},
        {"run", "<ms>", "manual clock: send the frames due in the next ms",
         &ControlCommands::Run, true},
        {"message", "<text>", "send a text message from the processor", &ControlCommands::Message, true},
        {"received", "", "frames the daemon wrote to dev/dsp4410, then end",
         &ControlCommands::Received, false},
        {"connected", "", "yes while the daemon holds dev/dsp4410, else no", &ControlCommands::Connected,
         false},
        {"ticks", "", "the processor's millisecond counter", &ControlCommands::Ticks, false},
        {"mirror", "", "lines the daemon wrote to dev/mirror4410, then end",
         &ControlCommands::Mirror, false},
        {"help", "", "this list, then end", &ControlCommands::ListCommands, false},
    };
    return table;
}

void ControlCommands::Execute(const std::string& line, const Reply& reply) {
    std::istringstream in(line);
    std::string name;
    in >> name;
    std::string arguments;
    std::getline(in >> std::ws, arguments);
    arguments.erase(arguments.find_last_not_of(" \t") + 1);
    for (const Command& command : Table()) {
        if (name != command.name) continue;
        const std::string answer = Answer(command, arguments);
        if (!command.sends_frames || answer != kOk) {
            reply(answer);
            return;
        }
        // "ok" only once the daemon can read what the command sent.
        targets_.dsp.WhenSent([reply](const std::string& error) {
            reply(error.empty() ? std::string(kOk) : "error: " + error + "\n");
        });
        return;
    }
    reply("error: unknown command " + name + "\n");
}

std::string ControlCommands::Answer(const Command& command, const std::string& arguments) {
    try {
        return (this->*command.run)(arguments);
    } catch (const std::exception& error) {
        return std::string("error: ") + error.what() + "\n";
    }
}

std::string ControlCommands::Help() {
    std::string help;
    for (const Command& command : Table()) {
        std::string call = std::string(command.name) + (*command.arguments ? " " : "") + command.arguments;
        call.resize(std::max<std::size_t>(call.size() + 1, 24), ' ');
        help += "  " + call + command.purpose + "\n";
    }
    std::vector<std::string> fields = Scenario::FieldNames();
    fields.push_back("FLAGS");
    std::string line = "Fields:";
    for (const std::string& name : fields) {
        if (line.size() + 1 + name.size() > 78) {
            help += line + "\n";
            line = "       ";
        }
        line += " " + name;
    }
    return help + line + "\n";
}

std::string ControlCommands::Set(const std::string& arguments) {
    ExpectWords(arguments, 2, "set <FIELD> <value>");
    std::vector<std::string> words = Words(arguments);
    if (IsFlags(words[0]))
        targets_.scenario.SetFlags(static_cast<std::uint16_t>(ParseUnsigned(words[1], 0xFFFF)));
    else
        targets_.scenario.Set(words[0], ParseFloat(words[1]));
    return kOk;
}

std::string ControlCommands::Get(const std::string& arguments) {
    ExpectWords(arguments, 1, "get <FIELD>");
    if (IsFlags(arguments)) return std::to_string(targets_.scenario.Flags()) + "\n";
    return FloatText(targets_.scenario.Get(arguments)) + "\n";
}

std::string ControlCommands::Noise(const std::string& arguments) {
    if (arguments != "0" && arguments != "1") throw CommandError("usage: noise <0|1>");
    targets_.scenario.SetNoise(arguments == "1");
    return kOk;
}

std::string ControlCommands::Drift(const std::string& arguments) {
    ExpectWords(arguments, 1, "drift <ppm>");
    targets_.processor.SetDriftPpm(ParseFloat(arguments));
    return kOk;
}

std::string ControlCommands::Message(const std::string& arguments) {
    if (!targets_.processor.SendText(kDspMessage, arguments))
        throw CommandError("the processor device is not open");
    return kOk;
}

std::string ControlCommands::Run(const std::string& arguments) {
    if (!targets_.processor.Manual()) throw CommandError("run needs the manual clock (--manual)");
    // Up to a day at once.
    targets_.processor.Advance(ParseUnsigned(arguments, 86400000));
    return kOk;
}

std::string ControlCommands::Received(const std::string&) {
    std::string answer;
    for (const Frame& frame : targets_.processor.Received()) {
        answer += std::to_string(frame.code);
        for (std::uint16_t word : frame.words) answer += " " + std::to_string(word);
        answer += "\n";
    }
    return answer + "end\n";
}

std::string ControlCommands::Connected(const std::string&) {
    return targets_.dsp.Open() ? "yes\n" : "no\n";
}

std::string ControlCommands::Ticks(const std::string&) {
    return std::to_string(targets_.processor.Ticks()) + "\n";
}

std::string ControlCommands::Mirror(const std::string&) {
    std::string answer;
    for (const std::string& line : targets_.mirror.Lines()) answer += line + "\n";
    return answer + "end\n";
}

std::string ControlCommands::ListCommands(const std::string&) { return Help() + "end\n"; }
