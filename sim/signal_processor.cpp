#include "sim/signal_processor.h"

#include <algorithm>
#include <fstream>
#include <utility>

#include "sim/processor_messages.h"

namespace {

constexpr std::uint64_t kDataTicks = 25;  // 40 records a second
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
                                 ProcessorTime& time, const ProcessorSettings& settings)
    : device_(device),
      scenario_(scenario),
      settings_(settings),
      time_(time),
      clock_(settings.ticks_start, settings.drift_ppm, time_.NowNs()),
      timer_(loop, [this] { SendDue(); }),
      garbage_random_(settings.seed) {
    device_.SetHandlers({[this] { Opened(); }, [this](const std::string& p) { GotPacket(p); },
                         [this] { Closed(); }});
    // With a manual clock every frame is due and none may be lost.
    device_.KeepEveryPacket(time_.IsManual());
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
    double ppm = settings_.drift_ppm -
                 settings_.trim_ppm * static_cast<double>(trim_register_ - kTrimCentre);
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

bool SignalProcessor::SendBare(std::uint16_t code) {
    if (!device_.Open()) return false;
    Send(Frame{code, {}});
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
    cut_next_data_ = false;
    burst_left_ = 0;
    burst_.clear();
    ArmTimer();
}

void SignalProcessor::Closed() { timer_.Stop(); }

void SignalProcessor::GotPacket(const std::string& packet) {
    for (Frame& frame : DecodeFrames(packet)) {
        Answer(frame);
        received_.push_back(std::move(frame));
    }
}

void SignalProcessor::Answer(const Frame& command) {
    if (command.code == kTestDataRequest)
        Send(TestDataFrame());
    else if (!IsProcessorCommand(command.code))
        Send(TextFrame(kBadCommand, "code " + std::to_string(command.code)));
}

std::int64_t SignalProcessor::NextDueNs() const {
    return device_.Open() ? clock_.TimeOf(std::min(next_data_, next_second_)) : -1;
}

bool SignalProcessor::ReadsTrimRegisterBy(std::int64_t ns) const {
    return device_.Open() && clock_.TimeOf(next_second_) <= ns;
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
            const DataValues values = scenario_.NextData(time_.NowNs());
            SendOnGrid(DataFrame(static_cast<std::uint32_t>(next_data_), values, scenario_.Flags()),
                       true);
            next_data_ += kDataTicks;
        }
    }
    if (device_.Open()) ArmTimer();
}

void SignalProcessor::SendSecondly(std::uint32_t msec) {
    FollowTrimRegister();
    SendOnGrid(ClockSyncFrame(msec), false);
    SendOnGrid(StatusFrame(msec, scenario_.NextStatus()), false);
    for (std::uint16_t code : {kWaveformS, kWaveformR, kWaveformSdc, kWaveformRdc})
        SendOnGrid(WaveformFrame(code, msec), false);
}

void SignalProcessor::ArmTimer() {
    if (!time_.IsManual()) timer_.StartAt(clock_.TimeOf(std::min(next_data_, next_second_)));
}

void SignalProcessor::Send(const Frame& frame) {
    // The driver stamps each frame with the system time of its arrival.
    device_.Send(EncodeFrame(frame, time_.Stamp()));
}

void SignalProcessor::SendOnGrid(const Frame& frame, bool data) {
    std::string packet = EncodeFrame(frame, time_.Stamp());
    const bool cut = data && cut_next_data_;
    if (cut) {
        // Half the payload is missing: the daemon finds the frame's end
        // beyond what it read.
        packet.resize(packet.size() - frame.words.size());
        cut_next_data_ = false;
    }
    if (burst_left_ == 0) {
        device_.Send(packet);
        return;
    }
    burst_ += packet;
    // Nothing can follow a frame cut short in the same read: it ends a burst.
    if (cut || (data && --burst_left_ == 0)) {
        device_.Send(burst_);
        burst_.clear();
        burst_left_ = 0;
    }
}

bool SignalProcessor::CutNextDataFrame() {
    if (!device_.Open()) return false;
    cut_next_data_ = true;
    return true;
}

bool SignalProcessor::SendGarbage(std::size_t bytes) {
    if (!device_.Open()) return false;
    std::string packet;
    // The generator's own output, not a distribution's, so that the bytes
    // are the same with every standard library.
    while (packet.size() < bytes) packet.push_back(static_cast<char>(garbage_random_() & 0xFF));
    device_.Send(packet);
    return true;
}

bool SignalProcessor::BurstNextData(unsigned count) {
    if (!device_.Open()) return false;
    burst_left_ = count;
    return true;
}

bool SignalProcessor::Stall(std::uint64_t ms) {
    if (!device_.Open()) return false;
    const std::uint64_t end = clock_.TicksAt(time_.NowNs()) + ms;
    // Each grid resumes at its first point from the end of the stall on.
    for (auto [next, step] :
         {std::pair{&next_data_, kDataTicks}, std::pair{&next_second_, kSecondTicks}})
        if (*next < end) *next += (end - *next + step - 1) / step * step;
    ArmTimer();
    return true;
}
