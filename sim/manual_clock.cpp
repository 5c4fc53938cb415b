#include "sim/manual_clock.h"

#include <algorithm>

ManualClock::ManualClock(ProcessorTime& time, SignalProcessor& processor, InterfaceBox& box,
                         DeviceSocket& dsp)
    : time_(time), processor_(processor), box_(box), dsp_(dsp) {}

void ManualClock::Run(std::uint64_t ms) {
    if (playing_) throw std::runtime_error("another run is still playing");
    playing_ = true;
    end_ns_ = time_.NowNs() + static_cast<std::int64_t>(ms) * 1000000;
    Play();
}

void ManualClock::Play() {
    for (;;) {
        const std::int64_t processor_due = processor_.NextDueNs();
        const std::int64_t box_due = box_.NextDueNs();
        const std::int64_t due = processor_due < 0 ? box_due
                                 : box_due < 0     ? processor_due
                                                   : std::min(processor_due, box_due);
        if (due < 0 || due > end_ns_) break;
        if (processor_.ReadsTrimRegisterBy(due) && !dsp_.AllRead()) {
            dsp_.WhenRead([this](const std::string& error) {
                if (error.empty())
                    Play();
                else
                    Finish(error);
            });
            return;
        }
        // Each sends at the moment it falls due, so that its stamp is what
        // real time would have given it; the processor first on a tie.
        time_.AdvanceTo(due);
        if (processor_due == due) processor_.SendDue();
        if (box_due == due) box_.SendDue();
    }
    Finish("");
}

void ManualClock::Finish(const std::string& error) {
    time_.AdvanceTo(end_ns_);
    playing_ = false;
    std::vector<Done> handlers;
    handlers.swap(played_handlers_);
    for (Done& handler : handlers) {
        if (error.empty())
            dsp_.WhenRead(std::move(handler));
        else
            handler(error);
    }
}

void ManualClock::WhenPlayed(Done done) {
    if (playing_)
        played_handlers_.push_back(std::move(done));
    else
        dsp_.WhenRead(std::move(done));
}
