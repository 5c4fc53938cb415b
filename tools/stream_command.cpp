#include <functional>
#include <iostream>
#include <set>

#include "tools/analyzer_connection.h"
#include "tools/commands.h"
#include "tools/daily_log.h"
#include "tools/exchange.h"
#include "tools/record_csv.h"
#include "tools/record_json.h"
#include "tools/stop_request.h"
#include "tools/vela_error.h"

namespace {

const char kMessage[] = "DATAMSG\t";
const char kStatusOn[] = "<norvance><vela><output><status>true</status></output></vela></norvance>";

// Takes each record, with the reader that knows its type's names.
using RecordSink = std::function<void(const Record&, const RecordReader&)>;

// One received line: a record goes to `sink`; a message is shown; a bad
// line is reported and skipped. True for a record.
bool Handle(RecordReader& reader, const std::string& line, const RecordSink& sink) {
    try {
        if (const auto record = reader.Take(line)) {
            sink(*record, reader);
            return true;
        }
        if (line.rfind(kMessage, 0) == 0)
            std::cerr << "vela: analyzer: " << line.substr(sizeof kMessage - 1) << std::endl;
    } catch (const BadRecord& error) {
        std::cerr << "vela: " << error.what() << ", line skipped: " << line << std::endl;
    }
    return false;
}

// Connects, asks for the optional streams, then hands every record to
// `sink` until --count records were taken, a stop is requested or the
// connection ends.
int Pump(const VelaOptions& options, const std::string& doing, const RecordSink& sink) {
    AnalyzerConnection link(options.host, options.port, options.TimeoutMs(kDefaultTimeout));
    RecordReader reader;
    long taken = 0;
    const auto take = [&](const std::string& line) { taken += Handle(reader, line, sink); };
    Exchange exchange(link, options.TimeoutMs(kDefaultTimeout), take);
    // The clock's header comes back at once; the status request's answer
    // then shows that the command was taken too.
    if (options.clock) exchange.Command("TurnDataClockOn");
    if (options.status) exchange.Ask(kStatusOn);
    std::cerr << "vela: " << doing << " " << link.Identity().Describe() << " at " << options.host
              << " port " << options.port << std::endl;
    while (!StopRequested() && (options.count == 0 || taken < options.count)) {
        if (const auto line = link.NextLine(1000))
            take(*line);
        else if (link.Closed())
            throw VelaError("the analyzer closed the connection");
    }
    return kExitOk;
}

}  // namespace

int RunStream(const VelaOptions& options) {
    std::set<std::string> headed;
    return Pump(options, "streaming from", [&](const Record& record, const RecordReader& reader) {
        if (options.json) {
            std::cout << JsonLine(record, reader) << '\n';
        } else {
            if (headed.insert(record.type).second && !record.columns.empty())
                std::cout << CsvHeader(record, true) << '\n';
            std::cout << CsvLine(record, true) << '\n';
        }
        std::cout.flush();
    });
}

int RunLog(const VelaOptions& options) {
    const std::string& folder = options.arguments.front();
    DailyLog log(folder);
    return Pump(options, "logging into " + folder + " from",
                [&](const Record& record, const RecordReader&) { log.Write(record); });
}
