#ifndef TOOLS_SERVE_VIEW_SERVER_H
#define TOOLS_SERVE_VIEW_SERVER_H

#include <httplib.h>

#include <chrono>
#include <string>
#include <thread>

#include "tools/serve/live_feed.h"
#include "tools/serve/page_actions.h"

// The HTTP side of vela serve, on threads of its own: the page and its
// files, the live feed as an event stream (GET /events), and the actions
// (POST /action with the form fields action and argument, answered with a
// JSON object {"ok": true|false, "text": "..."}). Each browser connection has
// a thread, so that any number of browsers can follow the feed at once.
class ViewServer {
public:
    // Listens on `listen` ("ADDR:PORT", "[ADDR]:PORT" for IPv6); throws
    // UsageError for a malformed address and VelaError when it cannot
    // listen there. An action waits up to `action_wait` for its answer.
    ViewServer(const std::string& listen, LiveFeed& feed, PageActions& actions,
               std::chrono::milliseconds action_wait);
    // Closes the feed, stops listening and waits for every connection's thread.
    ~ViewServer();
    ViewServer(const ViewServer&) = delete;
    ViewServer& operator=(const ViewServer&) = delete;

    // The port it listens on.
    int Port() const { return port_; }

private:
    void Route();

    LiveFeed& feed_;
    PageActions& actions_;
    std::chrono::milliseconds action_wait_;
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};

#endif
