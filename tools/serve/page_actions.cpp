#include "tools/serve/page_actions.h"

#include "tools/analyzer_actions.h"
#include "tools/vela_error.h"

namespace {

std::string Perform(Exchange& exchange, const std::string& action, const std::string& argument) {
    if (action == "rate" && argument.find_first_of("\r\n") != std::string::npos)
        throw VelaError("a rate is one line");
    if (action == "rate")
        return "output rate " + SetElement(exchange, ElementPath("output/rate"), argument);
    if (action == "zero" || action == "span" || action == "commit" || action == "rollback")
        return CalibrationStep(exchange, action, argument);
    throw VelaError("no action " + action);
}

}  // namespace

std::string PageActions::Run(const std::string& action, const std::string& argument,
                             std::chrono::milliseconds wait) {
    auto job = std::make_shared<Job>();
    job->action = action;
    job->argument = argument;
    std::future<std::string> answer = job->answer.get_future();
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (closed_) throw VelaError("vela serve is ending");
        queued_.push_back(job);
    }
    if (answer.wait_for(wait) != std::future_status::ready)
        throw VelaError("the analyzer did not answer in time");
    return answer.get();
}

void PageActions::Serve(Exchange* exchange) {
    for (;;) {
        std::shared_ptr<Job> job;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            if (queued_.empty()) return;
            job = queued_.front();
            queued_.pop_front();
        }
        try {
            if (!exchange) throw VelaError("not connected to the analyzer");
            job->answer.set_value(Perform(*exchange, job->action, job->argument));
        } catch (const std::exception&) {
            // A lost connection shows in the session's next read.
            job->answer.set_exception(std::current_exception());
        }
    }
}

void PageActions::Close() {
    std::lock_guard<std::mutex> lock(mutex_);
    closed_ = true;
    for (const auto& job : queued_)
        job->answer.set_exception(std::make_exception_ptr(VelaError("vela serve is ending")));
    queued_.clear();
}
