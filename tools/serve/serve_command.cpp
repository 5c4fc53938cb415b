#include <iostream>

#include "common/poll_processor.h"
#include "tools/analyzer_connection.h"
#include "tools/commands.h"
#include "tools/exchange.h"
#include "tools/record_json.h"
#include "tools/serve/live_feed.h"
#include "tools/serve/page_actions.h"
#include "tools/serve/view_server.h"
#include "tools/stop_request.h"
#include "tools/vela_error.h"

namespace {

constexpr int kPollMs = 50;  // how soon a browser's action is taken up
constexpr int kRetryMs = 2000;

const char kWholeDocument[] = "<norvance><vela>&query;</vela></norvance>";
// Answered with the elements that changed, whoever changed them.
const char kChangeSubscription[] = "<norvance><vela>&query_changes;</vela></norvance>";

std::string JsonList(const std::vector<std::string>& texts) {
    std::string list;
    for (const auto& text : texts) list += (list.empty() ? "" : ",") + JsonQuoted(text);
    return "[" + list + "]";
}

std::string IdentityJson(const AnalyzerIdentity& identity) {
    return "{\"model\":" + JsonQuoted(identity.model) +
           ",\"version\":" + JsonQuoted(identity.version) +
           ",\"name\":" + JsonQuoted(identity.name) + ",\"serial\":" + JsonQuoted(identity.serial) +
           ",\"box\":" + JsonQuoted(identity.box) + "}";
}

// One connection to the analyzer, for every browser, until it ends
// (VelaError) or a stop is requested: the data records and the greeting's
// news go to the feed, the configuration document is read again whenever
// the change subscription answers, and the browsers' actions are run.
class BrowserSession {
public:
    BrowserSession(AnalyzerConnection& link, LiveFeed& feed, int timeout_ms)
        : link_(link),
          feed_(feed),
          exchange_(link, timeout_ms, [this](const std::string& line) { Take(line); }) {}

    void Run(PageActions& actions, const std::string& where) {
        link_.Send(kChangeSubscription);
        feed_.SetState("connection", JsonQuoted(where + ": connected"));
        while (!StopRequested()) {
            if (config_stale_) {
                config_stale_ = false;
                feed_.SetState("config", JsonQuoted(exchange_.Ask(kWholeDocument)));
            }
            actions.Serve(&exchange_);
            if (const auto line = link_.NextLine(kPollMs))
                Take(*line);
            else if (link_.Closed())
                throw VelaError("the analyzer closed the connection");
        }
    }

private:
    void Take(const std::string& line) {
        try {
            if (const auto record = reader_.Take(line)) {
                if (record->type == "DATA") feed_.Publish("record", JsonLine(*record, reader_));
            } else if (identity_.Take(line)) {
                feed_.SetState("identity", IdentityJson(identity_));
            } else if (line.rfind("DATADIAGH\t", 0) == 0) {
                feed_.SetState("diagnames", JsonList(reader_.DiagNames()));
            } else if (!line.empty() && line[0] == '<') {
                config_stale_ = true;  // the subscription's answer
            }
        } catch (const BadRecord&) {
            // Never shown: a line that fails its checks is no measurement.
        }
    }

    AnalyzerConnection& link_;
    LiveFeed& feed_;
    RecordReader reader_;
    AnalyzerIdentity identity_;
    Exchange exchange_;
    bool config_stale_ = true;
};

// Waits `ms` before the next try, failing the browsers' actions meanwhile.
void WaitBeforeRetry(PageActions& actions, int ms) {
    for (int waited = 0; waited < ms && !StopRequested(); waited += kPollMs) {
        actions.Serve(nullptr);
        PollProcessor::Instance().Poll(kPollMs);  // a sleep that Ctrl-C ends
    }
}

}  // namespace

// Connects again, every kRetryMs, whenever the connection cannot be made or
// is lost, so that the view outlives a restart of the daemon.
int RunServe(const VelaOptions& options) {
    const int timeout_ms = options.TimeoutMs(kDefaultTimeout);
    const std::string where = options.host + " port " + std::to_string(options.port);
    LiveFeed feed;
    PageActions actions;
    // A calibration step is five exchanges with the analyzer.
    ViewServer server(options.listen, feed, actions, std::chrono::milliseconds(6 * timeout_ms));
    std::cout << "vela serve: the view of " << where << " at http://"
              << options.listen.substr(0, options.listen.rfind(':')) << ":" << server.Port()
              << "/ (Ctrl-C ends it)" << std::endl;
    while (!StopRequested()) {
        feed.SetState("connection", JsonQuoted(where + ": connecting"));
        try {
            AnalyzerConnection link(options.host, options.port, timeout_ms);
            BrowserSession(link, feed, timeout_ms).Run(actions, where);
        } catch (const VelaError& error) {
            if (StopRequested()) break;
            feed.SetState("connection", JsonQuoted(where + ": " + error.what() + "; trying again"));
            WaitBeforeRetry(actions, kRetryMs);
        }
    }
    actions.Close();  // so that no browser's request holds the server up
    return kExitOk;
}
