#include "borealis/app/interim_loop.h"

#include <iostream>

#include "common/daemon_app.h"
#include "common/poll_processor.h"

InterimLoop::InterimLoop(bool debug, bool /*no_clock_adjust*/) : debug_(debug) {}

void InterimLoop::Run() {
    sigset_t& signals = received_signals();
    catch_signal(signals, SIGINT);
    catch_signal(signals, SIGUSR1);
    std::cout << "borealis: running" << (debug_ ? " (debug)" : "") << std::endl;
    for (;;) {
        if (test_and_clear_signal(signals, SIGINT)) break;
        PollProcessor::Instance().Poll(2000);
        // There is no configuration to reread yet; say that the request came.
        if (test_and_clear_signal(signals, SIGUSR1))
            std::cout << "Reread of the configuration requested" << std::endl;
    }
    std::cout << "Exiting..." << std::endl;
}
