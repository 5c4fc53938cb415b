#include "sim/control_commands.h"

#include <strings.h>

#include <algorithm>
#include <cstring>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "sim/processor_messages.h"
#include "sim/span_gas.h"

namespace {

const char kOk[] = "ok\n";
const char kProcessorClosed[] = "the processor device is not open";

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
    if (text.empty() || *end != '\0' || errno == ERANGE)
        throw CommandError("not a number: " + text);
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
    using C = Completion;
    static const std::vector<Command> table = {
        {"set", "<FIELD> <value>", "set a field (names below; FLAGS: processor flag bits)",
         &ControlCommands::Set, C::kAtOnce},
        {"get", "<FIELD>", "the value set for a field", &ControlCommands::Get, C::kAtOnce},
        {"noise", "<0|1>", "1: realistic scatter; 0: every value exactly as set",
         &ControlCommands::Noise, C::kAtOnce},
        {"drift", "<ppm>", "rate error of the processor's millisecond counter",
         &ControlCommands::Drift, C::kAtOnce},
        {"run", "<ms>", "manual clock: send the frames due in the next ms", &ControlCommands::Run,
         C::kRunPlayed},
        {"message", "<text>", "send a text message from the processor", &ControlCommands::Message,
         C::kFramesSent},
        {"received", "", "frames the daemon wrote to dev/dsp4410, then end",
         &ControlCommands::Received, C::kAtOnce},
        {"connected", "", "yes while the daemon holds dev/dsp4410, else no",
         &ControlCommands::Connected, C::kAtOnce},
        {"ticks", "", "the processor's millisecond counter", &ControlCommands::Ticks, C::kAtOnce},
        {"mirror", "", "lines the daemon wrote to dev/mirror4410, then end",
         &ControlCommands::Mirror, C::kAtOnce},
        {"pong", "", "send a pong (code 2) from the processor", &ControlCommands::Pong,
         C::kFramesSent},
        {"fatal", "<text>", "send a fatal message (code 18) from the processor",
         &ControlCommands::Fatal, C::kFramesSent},
        {"frame", "<code>", "send a frame of that code without payload (an unknown code, say)",
         &ControlCommands::BareFrame, C::kFramesSent},
        {"motor", "<value>|fail|ok", "actual value; fail: spins unreported; ok: mended",
         &ControlCommands::Motor, C::kAtOnce},
        {"button", "<events>", "one packet of events (D, U, L) on dev/net_btn",
         &ControlCommands::Button, C::kAtOnce},
        {"gas steady", "", "hold CH4D where it is (ends a ramp)", &ControlCommands::GasSteady,
         C::kAtOnce},
        {"gas step", "<CH4D>", "CH4D steps to the value from the next record on",
         &ControlCommands::GasStep, C::kAtOnce},
        {"gas ramp", "<CH4D> <seconds>", "CH4D in a straight line to the value over that time",
         &ControlCommands::GasRamp, C::kAtOnce},
        {"gas zero", "", "zero gas: CH4D 0", &ControlCommands::GasZero, C::kAtOnce},
        {"gas span", "<ppm>", "span gas at TEMP and PRESSURE: CH4D for a span of 1",
         &ControlCommands::GasSpan, C::kAtOnce},
        {"fault short", "", "the next data frame leaves cut short", &ControlCommands::FaultShort,
         C::kAtOnce},
        {"fault garbage", "<bytes>", "a packet of 1 to 16384 random bytes now",
         &ControlCommands::FaultGarbage, C::kFramesSent},
        {"fault burst", "<n>", "next 1 to 100 data frames, all between, in one packet",
         &ControlCommands::FaultBurst, C::kAtOnce},
        {"fault stall", "<ms>", "the processor sends nothing for ms of its time",
         &ControlCommands::FaultStall, C::kAtOnce},
        {"box connect", "[port]", "connect as the interface box (default port: --port)",
         &ControlCommands::BoxConnect, C::kBoxSettled},
        {"box rate", "<per second>", "box reports a second, 0 to 1000 (default 1)",
         &ControlCommands::BoxRate, C::kAtOnce},
        {"box set", "<NAME> <value>", "AUX5..AUX8, USB, CAPACITY or FREE of the box reports",
         &ControlCommands::BoxSet, C::kAtOnce},
        {"box model", "[<word> [description]]", "the model and description box reports end with",
         &ControlCommands::BoxModel, C::kAtOnce},
        {"box send", "", "one box report now", &ControlCommands::BoxSend, C::kBoxSettled},
        {"box received", "[prefix]", "lines the daemon sent the box (with prefix), then end",
         &ControlCommands::BoxReceived, C::kAtOnce},
        {"box disconnect", "", "close the box's connection", &ControlCommands::BoxDisconnect,
         C::kBoxSettled},
        {"help", "", "this list, then end", &ControlCommands::ListCommands, C::kAtOnce},
    };
    return table;
}

const ControlCommands::Command* ControlCommands::Find(const std::string& line,
                                                      std::string& arguments) {
    for (const Command& command : Table()) {
        const std::size_t length = std::strlen(command.name);
        if (line.compare(0, length, command.name) != 0) continue;
        if (line.size() > length && line[length] != ' ' && line[length] != '\t') continue;
        const std::size_t start = line.find_first_not_of(" \t", length);
        arguments = start == std::string::npos ? "" : line.substr(start);
        arguments.erase(arguments.find_last_not_of(" \t") + 1);
        return &command;
    }
    return nullptr;
}

void ControlCommands::Execute(const std::string& line, const Reply& reply) {
    std::string arguments;
    const Command* command =
        Find(line.substr(std::min(line.size(), line.find_first_not_of(" \t"))), arguments);
    if (!command) {
        // A group's name alone, or with a word it does not know, is named
        // with that word.
        std::vector<std::string> words = Words(line);
        std::string name = words.empty() ? "" : words[0];
        if (words.size() > 1 && (words[0] == "gas" || words[0] == "fault" || words[0] == "box"))
            name += " " + words[1];
        reply("error: unknown command " + name + "\n");
        return;
    }
    const std::string answer = Answer(*command, arguments);
    auto answer_when_done = [reply](const std::string& error) {
        reply(error.empty() ? std::string(kOk) : "error: " + error + "\n");
    };
    if (command->completion == Completion::kAtOnce || answer != kOk)
        reply(answer);
    else if (command->completion == Completion::kFramesSent)
        // "ok" only once the daemon can read what the command sent.
        targets_.dsp.WhenSent(answer_when_done);
    else if (command->completion == Completion::kBoxSettled)
        targets_.box.WhenSettled(answer_when_done);
    else
        targets_.clock.WhenPlayed(answer_when_done);
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
        std::string call =
            std::string(command.name) + (*command.arguments ? " " : "") + command.arguments;
        // A long call has its purpose on a line of its own.
        if (call.size() >= 24) call += "\n" + std::string(25, ' ');
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
    if (!targets_.processor.SendText(kDspMessage, arguments)) throw CommandError(kProcessorClosed);
    return kOk;
}

std::string ControlCommands::Run(const std::string& arguments) {
    if (!targets_.processor.Manual()) throw CommandError("run needs the manual clock (--manual)");
    // Up to a day at once.
    targets_.clock.Run(ParseUnsigned(arguments, 86400000));
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

std::string ControlCommands::Pong(const std::string& arguments) {
    ExpectWords(arguments, 0, "pong");
    if (!targets_.processor.SendBare(kPong)) throw CommandError(kProcessorClosed);
    return kOk;
}

std::string ControlCommands::Fatal(const std::string& arguments) {
    if (!targets_.processor.SendText(kFatalMessage, arguments))
        throw CommandError(kProcessorClosed);
    return kOk;
}

std::string ControlCommands::BareFrame(const std::string& arguments) {
    ExpectWords(arguments, 1, "frame <code>");
    const auto code = static_cast<std::uint16_t>(ParseUnsigned(arguments, 65535));
    if (!targets_.processor.SendBare(code)) throw CommandError(kProcessorClosed);
    return kOk;
}

std::string ControlCommands::Motor(const std::string& arguments) {
    ExpectWords(arguments, 1, "motor <value>|fail|ok");
    if (arguments == "fail" || arguments == "ok")
        targets_.mirror.SetFailed(arguments == "fail");
    else
        targets_.mirror.SetActual(static_cast<int>(ParseUnsigned(arguments, 32767)));
    return kOk;
}

std::string ControlCommands::Button(const std::string& arguments) {
    if (arguments.empty()) throw CommandError("usage: button <events>");
    if (!targets_.button.Open()) throw CommandError("the button device is not open");
    if (!targets_.button.Send(arguments)) throw CommandError("the button device's queue is full");
    return kOk;
}

std::string ControlCommands::GasSteady(const std::string& arguments) {
    ExpectWords(arguments, 0, "gas steady");
    targets_.scenario.HoldCh4d(targets_.time.NowNs());
    return kOk;
}

std::string ControlCommands::GasStep(const std::string& arguments) {
    ExpectWords(arguments, 1, "gas step <CH4D>");
    targets_.scenario.Set("CH4D", ParseFloat(arguments));
    return kOk;
}

std::string ControlCommands::GasRamp(const std::string& arguments) {
    ExpectWords(arguments, 2, "gas ramp <CH4D> <seconds>");
    const std::vector<std::string> words = Words(arguments);
    const float seconds = ParseFloat(words[1]);
    if (!(seconds >= 0)) throw CommandError("not a time in seconds: " + words[1]);
    targets_.scenario.RampCh4d(ParseFloat(words[0]), seconds, targets_.time.NowNs());
    return kOk;
}

std::string ControlCommands::GasZero(const std::string& arguments) {
    ExpectWords(arguments, 0, "gas zero");
    targets_.scenario.Set("CH4D", 0);
    return kOk;
}

std::string ControlCommands::GasSpan(const std::string& arguments) {
    ExpectWords(arguments, 1, "gas span <ppm>");
    Scenario& scenario = targets_.scenario;
    scenario.Set("CH4D", SpanGasDensity(ParseFloat(arguments), scenario.Get("TEMP"),
                                        scenario.Get("PRESSURE")));
    return kOk;
}

std::string ControlCommands::FaultShort(const std::string& arguments) {
    ExpectWords(arguments, 0, "fault short");
    if (!targets_.processor.CutNextDataFrame()) throw CommandError(kProcessorClosed);
    return kOk;
}

std::string ControlCommands::FaultGarbage(const std::string& arguments) {
    ExpectWords(arguments, 1, "fault garbage <bytes>");
    // At most what one read of the device takes.
    const unsigned long bytes = ParseUnsigned(arguments, 16384);
    if (bytes == 0) throw CommandError("not a number from 1 to 16384: " + arguments);
    if (!targets_.processor.SendGarbage(bytes)) throw CommandError(kProcessorClosed);
    return kOk;
}

std::string ControlCommands::FaultBurst(const std::string& arguments) {
    ExpectWords(arguments, 1, "fault burst <n>");
    // 100 records and what comes between them fit one read of the device.
    const unsigned long count = ParseUnsigned(arguments, 100);
    if (count == 0) throw CommandError("not a number from 1 to 100: " + arguments);
    if (!targets_.processor.BurstNextData(static_cast<unsigned>(count)))
        throw CommandError(kProcessorClosed);
    return kOk;
}

std::string ControlCommands::FaultStall(const std::string& arguments) {
    ExpectWords(arguments, 1, "fault stall <ms>");
    if (!targets_.processor.Stall(ParseUnsigned(arguments, 86400000)))
        throw CommandError(kProcessorClosed);
    return kOk;
}

std::string ControlCommands::BoxConnect(const std::string& arguments) {
    if (Words(arguments).size() > 1) throw CommandError("usage: box connect [port]");
    const unsigned long port =
        arguments.empty() ? targets_.box.DefaultPort() : ParseUnsigned(arguments, 65535);
    targets_.box.Connect(static_cast<unsigned short>(port));
    return kOk;
}

std::string ControlCommands::BoxRate(const std::string& arguments) {
    ExpectWords(arguments, 1, "box rate <per second>");
    targets_.box.SetRate(ParseFloat(arguments));
    return kOk;
}

std::string ControlCommands::BoxSet(const std::string& arguments) {
    ExpectWords(arguments, 2, "box set <NAME> <value>");
    const std::vector<std::string> words = Words(arguments);
    targets_.box.SetValue(words[0], words[1]);
    return kOk;
}

std::string ControlCommands::BoxModel(const std::string& arguments) {
    const std::size_t blank = arguments.find_first_of(" \t");
    const std::size_t description = arguments.find_first_not_of(" \t", blank);
    targets_.box.SetModel(arguments.substr(0, blank),
                          description == std::string::npos ? "" : arguments.substr(description));
    return kOk;
}

std::string ControlCommands::BoxSend(const std::string& arguments) {
    ExpectWords(arguments, 0, "box send");
    targets_.box.SendReport();
    return kOk;
}

std::string ControlCommands::BoxReceived(const std::string& arguments) {
    if (Words(arguments).size() > 1) throw CommandError("usage: box received [prefix]");
    std::string answer;
    for (const std::string& line : targets_.box.Received())
        if (line.compare(0, arguments.size(), arguments) == 0) answer += line + "\n";
    return answer + "end\n";
}

std::string ControlCommands::BoxDisconnect(const std::string& arguments) {
    ExpectWords(arguments, 0, "box disconnect");
    targets_.box.Disconnect();
    return kOk;
}
