#ifndef TOOLS_EXCHANGE_H
#define TOOLS_EXCHANGE_H

#include <functional>
#include <string>
#include <vector>

#include "tools/analyzer_connection.h"

// Requests to the analyzer on one connection, each waited for. The daemon
// answers an XML request with one answer line and the ack line, both at
// once, and a request it refuses with nothing at all; text commands get no
// answer, but are handled in order with the XML requests.
class Exchange {
public:
    // Hands every line that is not an answer to `passed_over` (none: drops it).
    using LineHandler = std::function<void(const std::string&)>;

    // Requests on `link`, each answered within `timeout_ms`.
    Exchange(AnalyzerConnection& link, int timeout_ms, LineHandler passed_over = {});

    // Sends a text command.
    void Command(const std::string& line);
    // Sends an XML request and returns its answer line (empty for a request
    // that asks nothing). Throws VelaError when no answer comes in time, which
    // means that the analyzer refused the request, and when the connection
    // is lost.
    std::string Ask(const std::string& request);
    // The message lines that came for this client since the last call (such
    // as a calibration that was not taken), without their DATAMSG word.
    std::vector<std::string> TakeMessages();

private:
    AnalyzerConnection& link_;
    int timeout_ms_;
    LineHandler passed_over_;
    std::vector<std::string> messages_;
};

#endif
