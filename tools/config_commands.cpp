#include <iostream>

#include "tools/analyzer_actions.h"
#include "tools/analyzer_connection.h"
#include "tools/commands.h"
#include "tools/vela_error.h"

std::string GetElement(Exchange& exchange, const ElementPath& path) {
    const auto element = path.Find(exchange.Ask(path.QueryRequest()));
    if (!element) throw VelaError("the analyzer has no element vela/" + path.Text());
    return *element;
}

// The write is answered with nothing but the ack, whether it changed a value
// or not; the element asked for again afterwards shows what the analyzer
// made of it.
std::string SetElement(Exchange& exchange, const ElementPath& path, const std::string& value) {
    exchange.Ask(path.WriteRequest(value));
    return GetElement(exchange, path);
}

int RunGet(const VelaOptions& options) {
    const ElementPath path(options.arguments.at(0));
    AnalyzerConnection link(options.host, options.port, options.TimeoutMs(kDefaultTimeout));
    Exchange exchange(link, options.TimeoutMs(kDefaultTimeout));
    std::cout << GetElement(exchange, path) << std::endl;
    return kExitOk;
}

int RunSet(const VelaOptions& options) {
    const ElementPath path(options.arguments.at(0));
    const std::string& value = options.arguments.at(1);
    if (value.find_first_of("\r\n") != std::string::npos)
        throw UsageError("a value is one line\nusage: vela set PATH VALUE");
    AnalyzerConnection link(options.host, options.port, options.TimeoutMs(kDefaultTimeout));
    Exchange exchange(link, options.TimeoutMs(kDefaultTimeout));
    std::cout << SetElement(exchange, path, value) << std::endl;
    return kExitOk;
}
