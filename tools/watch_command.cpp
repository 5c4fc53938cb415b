#include <chrono>
#include <cstdlib>
#include <iostream>

#include "common/poll_processor.h"
#include "tools/analyzer_connection.h"
#include "tools/commands.h"
#include "tools/stop_request.h"
#include "tools/vela_error.h"
#include "tools/watch_view.h"

namespace {

constexpr int kRefreshMs = 250;
constexpr int kRetryMs = 2000;

// The terminal while the view runs: the cursor hidden and the screen
// cleared; on the way out the last frame stays and the cursor comes back.
class Screen {
public:
    Screen() { std::cout << "\x1b[?25l\x1b[2J" << std::flush; }
    ~Screen() { std::cout << "\x1b[?25h" << std::endl; }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // Draws the frame over the last one: each line cleared to its end, and
    // the rest of the screen below.
    void Draw(const std::string& frame) {
        std::string text = "\x1b[H";
        for (std::string::size_type start = 0, end;
             (end = frame.find('\n', start)) != std::string::npos; start = end + 1)
            text += frame.substr(start, end - start) + "\x1b[K\n";
        std::cout << text << "\x1b[J" << std::flush;
    }
};

// Shows the records of one connection until it ends (VelaError) or a stop
// is requested, drawing at most every kRefreshMs.
void Follow(AnalyzerConnection& link, WatchView& view, Screen& screen, bool highlight) {
    RecordReader reader;
    AnalyzerIdentity identity = link.Identity();
    auto drawn = std::chrono::steady_clock::now();
    while (!StopRequested()) {
        if (const auto line = link.NextLine(kRefreshMs)) {
            try {
                if (const auto record = reader.Take(*line))
                    view.Take(*record, reader);
                else if (identity.Take(*line))
                    view.SetIdentity(identity);
            } catch (const BadRecord&) {
                view.CountBadLine();
            }
        } else if (link.Closed()) {
            throw VelaError("the analyzer closed the connection");
        }
        if (std::chrono::steady_clock::now() - drawn >= std::chrono::milliseconds(kRefreshMs)) {
            screen.Draw(view.Render(highlight));
            drawn = std::chrono::steady_clock::now();
        }
    }
}

}  // namespace

// Connects again, every kRetryMs, whenever the connection cannot be made or
// is lost, so that the view outlives a restart of the daemon.
int RunWatch(const VelaOptions& options) {
    const bool highlight = std::getenv("NO_COLOR") == nullptr;
    WatchView view(options.host + " port " + std::to_string(options.port));
    Screen screen;
    while (!StopRequested()) {
        view.SetConnection("connecting");
        screen.Draw(view.Render(highlight));
        try {
            AnalyzerConnection link(options.host, options.port, options.TimeoutMs(kDefaultTimeout));
            view.SetIdentity(link.Identity());
            view.SetConnection("connected");
            Follow(link, view, screen, highlight);
        } catch (const VelaError& error) {
            if (StopRequested()) break;
            view.SetConnection(std::string(error.what()) + "; trying again");
            screen.Draw(view.Render(highlight));
            PollProcessor::Instance().Poll(kRetryMs);  // a sleep that Ctrl-C ends
        }
    }
    return kExitOk;
}
