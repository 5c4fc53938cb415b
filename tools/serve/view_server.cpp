#include "tools/serve/view_server.h"

#include <atomic>
#include <list>
#include <memory>
#include <mutex>

#include "tools/record_json.h"
#include "tools/serve/embedded_files.h"
#include "tools/vela_error.h"

namespace {

// How long an event stream waits for the feed before it looks whether the
// browser is still there.
constexpr std::chrono::milliseconds kFeedWait(500);

// A thread for each connection, so that a browser that follows the event
// stream holds no other browser up; threads that ended are joined as new
// ones start, the rest when the server stops.
class ThreadPerConnection : public httplib::TaskQueue {
public:
    void enqueue(std::function<void()> task) override {
        std::lock_guard<std::mutex> lock(mutex_);
        for (auto worker = workers_.begin(); worker != workers_.end();) {
            if (!*worker->done) {
                ++worker;
                continue;
            }
            worker->thread.join();
            worker = workers_.erase(worker);
        }
        auto done = std::make_shared<std::atomic<bool>>(false);
        workers_.push_back({std::thread([task, done] {
                                task();
                                *done = true;
                            }),
                            done});
    }

    void shutdown() override {
        std::lock_guard<std::mutex> lock(mutex_);
        for (auto& worker : workers_) worker.thread.join();
        workers_.clear();
    }

private:
    struct Worker {
        std::thread thread;
        std::shared_ptr<std::atomic<bool>> done;
    };
    std::mutex mutex_;
    std::list<Worker> workers_;
};

// The host and port of "ADDR:PORT" or "[ADDR]:PORT".
std::pair<std::string, int> HostAndPort(const std::string& listen) {
    const auto colon = listen.rfind(':');
    const std::string usage = "--listen: not ADDR:PORT: " + listen + "\nusage: vela serve";
    if (colon == std::string::npos || colon == 0) throw UsageError(usage);
    std::string host = listen.substr(0, colon);
    if (host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
    const std::string digits = listen.substr(colon + 1);
    if (digits.empty() || digits.size() > 5 ||
        digits.find_first_not_of("0123456789") != digits.npos)
        throw UsageError(usage);
    const int port = std::stoi(digits);
    if (port > 65535) throw UsageError(usage);
    return {host, port};
}

}  // namespace

ViewServer::ViewServer(const std::string& listen, LiveFeed& feed, PageActions& actions,
                       std::chrono::milliseconds action_wait)
    : feed_(feed), actions_(actions), action_wait_(action_wait) {
    const auto [host, port] = HostAndPort(listen);
    server_.new_task_queue = [] { return new ThreadPerConnection; };
    server_.set_keep_alive_timeout(2);
    Route();
    port_ = port == 0 ? server_.bind_to_any_port(host) : port;
    if (port_ < 0 || (port != 0 && !server_.bind_to_port(host, port)))
        throw VelaError("cannot listen on " + listen);
    thread_ = std::thread([this] { server_.listen_after_bind(); });
}

ViewServer::~ViewServer() {
    feed_.Close();
    server_.stop();
    thread_.join();
}

void ViewServer::Route() {
    for (const EmbeddedFile& file : EmbeddedFiles())
        server_.Get(file.url, [&file](const httplib::Request&, httplib::Response& response) {
            response.set_header("Cache-Control", "no-cache");
            response.set_content(file.content.data(), file.content.size(),
                                 std::string(file.type) + "; charset=utf-8");
        });
    server_.Get("/events", [this](const httplib::Request&, httplib::Response& response) {
        response.set_header("Cache-Control", "no-cache");
        auto cursor = std::make_shared<LiveFeed::Cursor>();
        response.set_chunked_content_provider(
            "text/event-stream", [this, cursor](std::size_t, httplib::DataSink& sink) {
                const std::string text = feed_.Next(*cursor, kFeedWait);
                if (feed_.Closed()) return false;
                // An empty comment tells whether the browser is still there.
                const std::string sent = text.empty() ? ":\n\n" : text;
                return sink.write(sent.data(), sent.size());
            });
    });
    server_.Post("/action", [this](const httplib::Request& request, httplib::Response& response) {
        std::string json;
        try {
            const std::string text =
                actions_.Run(request.get_param_value("action"), request.get_param_value("argument"),
                             action_wait_);
            json = "{\"ok\":true,\"text\":" + JsonQuoted(text) + "}";
        } catch (const std::exception& error) {
            json = "{\"ok\":false,\"text\":" + JsonQuoted(error.what()) + "}";
        }
        response.set_content(json, "application/json");
    });
}
