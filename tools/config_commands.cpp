#include <iostream>

#include "tools/analyzer_connection.h"
#include "tools/commands.h"
#include "tools/element_path.h"
#include "tools/exchange.h"
#include "tools/vela_error.h"

namespace {

// Asks for the element and prints it as ElementPath::Find gives it.
void PrintElement(Exchange& exchange, const ElementPath& path) {
    const auto element = path.Find(exchange.Ask(path.QueryRequest()));
    if (!element) throw VelaError("the analyzer has no element vela/" + path.Text());
    std::cout << *element << std::endl;
}

}  // namespace

int RunGet(const VelaOptions& options) {
    const ElementPath path(options.arguments.at(0));
    AnalyzerConnection link(options.host, options.port, options.TimeoutMs(kDefaultTimeout));
    Exchange exchange(link, options.TimeoutMs(kDefaultTimeout));
    PrintElement(exchange, path);
    return kExitOk;
}

// The write is answered with nothing but the ack, whether it changed a value
// or not; the element asked for again afterwards shows what the analyzer
// made of it.
int RunSet(const VelaOptions& options) {
    const ElementPath path(options.arguments.at(0));
    const std::string& value = options.arguments.at(1);
    if (value.find_first_of("\r\n") != std::string::npos)
        throw UsageError("a value is one line\nusage: vela set PATH VALUE");
    AnalyzerConnection link(options.host, options.port, options.TimeoutMs(kDefaultTimeout));
    Exchange exchange(link, options.TimeoutMs(kDefaultTimeout));
    exchange.Ask(path.WriteRequest(value));
    PrintElement(exchange, path);
    return kExitOk;
}
