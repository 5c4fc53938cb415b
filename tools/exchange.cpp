#include "tools/exchange.h"

#include <chrono>
#include <optional>
#include <sstream>

#include "tools/stop_request.h"
#include "tools/vela_error.h"

namespace {

const char kAck[] = "<norvance><vela><ack>true</ack></vela></norvance>";
const char kMessage[] = "DATAMSG\t";

// Messages of the signal processor go to every client; any other message
// line answers this client's own command.
bool IsForThisClient(const std::string& text) {
    for (const char* prefix : {"Message from DSP: ", "INIT message from DSP: ", "Bad command: ",
                               "FATAL message from DSP: "})
        if (text.rfind(prefix, 0) == 0) return false;
    return true;
}

std::string Seconds(int ms) {
    std::ostringstream text;
    text << ms / 1000.0;
    return text.str();
}

}  // namespace

Exchange::Exchange(AnalyzerConnection& link, int timeout_ms, LineHandler passed_over)
    : link_(link), timeout_ms_(timeout_ms), passed_over_(std::move(passed_over)) {}

void Exchange::Command(const std::string& line) { link_.Send(line); }

std::string Exchange::Ask(const std::string& request) {
    link_.Send(request);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms_);
    // The answer is the line right before the ack; every line before it is
    // passed over once the next one shows that it was not the answer.
    std::optional<std::string> previous;
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        const auto line = link_.NextLine(static_cast<int>(std::max<long long>(left.count(), 0)));
        if (!line) {
            if (link_.Closed()) throw VelaError("the analyzer closed the connection");
            if (StopRequested()) throw VelaError("interrupted");
            if (left.count() > 0) continue;
            throw VelaError("no answer within " + Seconds(timeout_ms_) +
                            " s: the analyzer refused the request (its own output tells why)");
        }
        if (*line == kAck) return previous.value_or("");
        if (line->rfind(kMessage, 0) == 0 && IsForThisClient(line->substr(sizeof kMessage - 1))) {
            messages_.push_back(line->substr(sizeof kMessage - 1));
            continue;
        }
        if (previous && passed_over_) passed_over_(*previous);
        previous = *line;
    }
}

std::vector<std::string> Exchange::TakeMessages() {
    std::vector<std::string> messages;
    messages.swap(messages_);
    return messages;
}
