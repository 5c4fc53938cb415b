#ifndef TOOLS_SERVE_PAGE_ACTIONS_H
#define TOOLS_SERVE_PAGE_ACTIONS_H

#include <chrono>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <string>

class Exchange;

// What browsers ask of the analyzer, handed from the threads that serve them
// to the one thread that talks to the analyzer, and answered back. Actions:
// "rate" (the output rate, `argument` its option text), "zero", "span"
// (`argument` the concentration in ppm), "commit", "rollback".
class PageActions {
public:
    // Queues the action and waits up to `wait` for it to run; returns the
    // text to show, or throws VelaError with the reason it failed.
    std::string Run(const std::string& action, const std::string& argument,
                    std::chrono::milliseconds wait);
    // Runs the queued actions over `exchange`, in arrival order; with none
    // (no connection to the analyzer), each fails at once.
    void Serve(Exchange* exchange);
    // Fails every action queued or still to come: vela serve is ending.
    void Close();

private:
    struct Job {
        std::string action, argument;
        std::promise<std::string> answer;
    };

    std::mutex mutex_;
    std::deque<std::shared_ptr<Job>> queued_;
    bool closed_ = false;
};

#endif
