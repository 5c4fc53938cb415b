#include "common/poll_idle_handler.h"

#include "common/poll_processor.h"

PollIdleHandler::~PollIdleHandler() { Unregister(); }

void PollIdleHandler::Register() {
    if (registered_) return;
    PollProcessor& processor = PollProcessor::Instance();
    processor.idle_handlers_.Add(this);
    done_ = false;
    registered_ = true;
    processor.idle_done_ = false;
}

void PollIdleHandler::Unregister() {
    if (!registered_) return;
    PollProcessor::Instance().idle_handlers_.Remove(this);
    registered_ = false;
}
