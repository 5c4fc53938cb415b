#include <cmath>
#include <cstdlib>
#include <iostream>

#include "tools/analyzer_actions.h"
#include "tools/analyzer_connection.h"
#include "tools/commands.h"
#include "tools/vela_error.h"

namespace {

// The elements of vela/cal that a calibration step changes.
const char* const kCalibration[] = {"ch4zero", "ch4span"};

// The XML request that runs the command element `element` of vela/cmd.
std::string CommandElement(const std::string& element) {
    return "<norvance><vela><cmd><" + element + ">true</" + element + "></cmd></vela></norvance>";
}

// The working zero and span, as the document holds them.
std::vector<std::string> Calibration(Exchange& exchange) {
    std::vector<std::string> values;
    for (const char* name : kCalibration) {
        const ElementPath path(std::string("cal/") + name);
        values.push_back(path.Find(exchange.Ask(path.QueryRequest())).value_or("?"));
    }
    return values;
}

}  // namespace

bool IsConcentration(const std::string& text) {
    char* end = nullptr;
    const double ppm = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' && std::isfinite(ppm) && ppm > 0;
}

// Zero, commit and rollback go through the command elements, so that their
// ack tells that they ran. A span goes as the text command, which takes its
// concentration without changing the span gas setting; the request for the
// values afterwards is handled after it. A zero or span that cannot be taken
// answers with a message line before the ack of the request that follows.
std::string CalibrationStep(Exchange& exchange, const std::string& step, const std::string& ppm) {
    if (step == "span" && !IsConcentration(ppm))
        throw VelaError("a span concentration is a number of ppm above 0: " + ppm);
    const std::vector<std::string> before = Calibration(exchange);
    exchange.TakeMessages();
    if (step == "zero")
        exchange.Ask(CommandElement("ch4zero"));
    else if (step == "span")
        exchange.Command("SpanCH4 " + ppm);
    else if (step == "commit")
        exchange.Ask(CommandElement("calcommit"));
    else if (step == "rollback")
        exchange.Ask(CommandElement("calrollback"));
    else
        throw VelaError("no calibration step " + step);
    const std::vector<std::string> after = Calibration(exchange);
    const std::vector<std::string> messages = exchange.TakeMessages();
    if (!messages.empty()) throw VelaError("the analyzer says: " + messages.front());
    std::string change;
    for (std::size_t i = 0; i < after.size(); ++i)
        change += std::string(kCalibration[i]) + " " +
                  (before[i] == after[i] ? after[i] : before[i] + " -> " + after[i]) + "\n";
    return change;
}

int RunCalibration(const VelaOptions& options) {
    const std::string ppm = options.command == "span" ? options.arguments.at(0) : "";
    if (options.command == "span" && !IsConcentration(ppm))
        throw UsageError("span: PPM is a concentration above 0: " + ppm + "\nusage: vela span PPM");
    AnalyzerConnection link(options.host, options.port, options.TimeoutMs(kDefaultTimeout));
    Exchange exchange(link, options.TimeoutMs(kDefaultTimeout));
    std::cout << CalibrationStep(exchange, options.command, ppm);
    return kExitOk;
}
