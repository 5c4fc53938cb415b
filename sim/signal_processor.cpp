#include "sim/signal_processor.h"

#include <algorithm>
#include <fstream>

#include "sim/processor_messages.h"

namespace {

constexpr std::uint64_t kDataTicks = 25;      // 40 records a second
constexpr std::uint64_t kSecondTicks = 1000;
constexpr long kTrimCentre = 32768;
const char kInitText[] = "VELA DSP 2.3 ready";

// The first point of the grid `start` + k x `step` after `now`.
std::uint64_t NextOnGrid(std::uint64_t start, std::uint64_t step, std::uint64_t now) {
    if (now < start) return start;
    return now + step - (now - start) % step;
}

// `next` moved past a long stall so that no burst of stale records follows;
// it stays on its grid.
std::uint64_t SkipStall(std::uint64_t next, std::uint64_t step, std::uint64_t now) {
    if (now < next || now - next <= kSecondTicks) return next;
    return next + (now - next) / step * step;
}

}  // namespace

SignalProcessor::SignalProcessor(EventLoop& loop, DeviceSocket& device, Scenario& scenario,
                                 const ProcessorSettings& settings)
    : device_(device),
      scenario_(scenario),
      settings_(settings),
      time_(settings.manual ? ProcessorTime::Manual(settings.epoch) : ProcessorTime::Real()),
      clock_(settings.ticks_start, settings.drift_ppm, time_.NowNs()),
      timer_(loop, [this] { SendDue(); }) {
    device_.SetHandlers({[this] { Opened(); }, [this](const std::string& p) { GotPacket(p); },
                         [this] { Closed(); }});
    // With a manual clock every frame is due and none may be lost.
    device_.KeepEveryPacket(settings.manual);
}

std::uint32_t SignalProcessor::Ticks() const {
    return static_cast<std::uint32_t>(clock_.TicksAt(time_.NowNs()));
}

void SignalProcessor::SetDriftPpm(double ppm) {
    settings_.drift_ppm = ppm;
    ApplyRate();
}

void SignalProcessor::ApplyRate() {
    // A register above its centre slows the counter down.
    double ppm = settings_.drift_ppm - settings_.trim_ppm * static_cast<double>(trim_register_ - kTrimCentre);
    clock_.SetPpm(ppm, time_.NowNs());
}

void SignalProcessor::FollowTrimRegister() {
    long value = kTrimCentre;
    std::ifstream file(settings_.clock_yz_path);
    if (!(file >> value) || value == trim_register_) return;
    trim_register_ = value;
    ApplyRate();
}

bool SignalProcessor::SendText(std::uint16_t code, const std::string& text) {
    if (!device_.Open()) return false;
    Send(TextFrame(code, text));
    return true;
}

void SignalProcessor::Opened() {
    // The daemon throws away the first read after opening the device.
    Send(Frame{kStartupMessage, {}});
    Send(TextFrame(kInitMessage, kInitText));
    std::uint64_t now = clock_.TicksAt(time_.NowNs());
    next_data_ = NextOnGrid(settings_.ticks_start, kDataTicks, now);
    // The first synchronisation message comes at once (with a manual clock:
    // with the first advance), so that the daemon starts acquiring its data
    // clock before the first record.
    next_second_ = now;
    ArmTimer();
}

void SignalProcessor::Closed() { timer_.Stop(); }

void SignalProcessor::GotPacket(const std::string& packet) {
    for (Frame& frame : DecodeFrames(packet)) {
        if (frame.code == kTestDataRequest) Send(TestDataFrame());
        received_.push_back(std::move(frame));
    }
}

void SignalProcessor::Advance(std::uint64_t ms) {
    const std::int64_t end = time_.NowNs() + static_cast<std::int64_t>(ms) * 1000000;
    // Each frame leaves at the moment it falls due, so that its stamp is
    // what real time would have given it.
    while (device_.Open()) {
        const std::int64_t due = clock_.TimeOf(std::min(next_data_, next_second_));
        if (due > end) break;
        time_.AdvanceTo(due);
        SendDue();
    }
    time_.AdvanceTo(end);
}

void SignalProcessor::SendDue() {
    std::uint64_t now = clock_.TicksAt(time_.NowNs());
    next_data_ = SkipStall(next_data_, kDataTicks, now);
    next_second_ = SkipStall(next_second_, kSecondTicks, now);
    // Frames go out in tick order, so that a synchronisation message never
    // carries less than a record already sent.
    while (device_.Open() && std::min(next_data_, next_second_) <= now) {
        if (next_second_ < next_data_) {
            SendSecondly(static_cast<std::uint32_t>(next_second_));
            next_second_ += kSecondTicks;
        } else {
            Send(DataFrame(static_cast<std::uint32_t>(next_data_), scenario_.NextData(), scenario_.Flags()));
            next_data_ += kDataTicks;
        }
    }
    if (device_.Open()) ArmTimer();
}

void SignalProcessor::SendSecondly(std::uint32_t msec) {
    FollowTrimRegister();
    Send(ClockSyncFrame(msec));
    Send(StatusFrame(msec, scenario_.NextStatus()));
    for (std::uint16_t code : {kWaveformS, kWaveformR, kWaveformSdc, kWaveformRdc})
        Send(WaveformFrame(code, msec));
}

void SignalProcessor::ArmTimer() {
    if (!time_.IsManual()) timer_.StartAt(clock_.TimeOf(std::min(next_data_, next_second_)));
}

void SignalProcessor::Send(const Frame& frame) {
    // The driver stamps each frame with the system time of its arrival.
    device_.Send(EncodeFrame(frame, time_.Stamp()));
}
