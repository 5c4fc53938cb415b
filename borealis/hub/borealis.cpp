#include "borealis/hub/borealis.h"

#include <signal.h>

#include <iostream>

#include "borealis/platform/platform.h"
#include "common/daemon_app.h"
#include "common/poll_processor.h"

namespace {

// Installs the recording handlers for the loop's two signals without
// forgetting a SIGINT that arrived during start-up: the stop request is
// honoured at the first check of the loop.
void CatchLoopSignals() {
    sigset_t& received = received_signals();
    sigset_t loop_signals, previous;
    sigemptyset(&loop_signals);
    sigaddset(&loop_signals, SIGINT);
    sigaddset(&loop_signals, SIGUSR1);
    sigprocmask(SIG_BLOCK, &loop_signals, &previous);
    const bool interrupted = sigismember(&received, SIGINT);
    catch_signal(received, SIGINT);
    catch_signal(received, SIGUSR1);
    if (interrupted) sigaddset(&received, SIGINT);
    sigprocmask(SIG_SETMASK, &previous, nullptr);
}

}  // namespace

Borealis::Borealis(Platform& platform, bool debug, bool no_clock_adjust)
    : platform_(platform),
      dsp_(platform),
      clock_(debug),
      server_("\n", AF_INET6),
      debug_(debug),
      no_clock_adjust_(no_clock_adjust),
      fanout_(server_),
      records_(doc_, clock_, fanout_, box_),
      sessions_(platform, doc_, fanout_, records_, box_, debug) {
    doc_.set_throw_errors(true);
    doc_.SetListener(this);
    dsp_.SetListener(this);
    dsp_.StartCpldClock();
    dsp_.SendStart();
    server_.AddListener(this);
    server_.Listen(platform_.Port());
}

Borealis::~Borealis() {
    server_.RemoveListener(this);
    dsp_.SetListener(nullptr);
    doc_.SetListener(nullptr);
}

void Borealis::Run() {
    CatchLoopSignals();
    sigset_t& received = received_signals();
    ReadConfiguration();
    while (!quit_) {
        if (test_and_clear_signal(received, SIGINT)) break;
        PollProcessor::Instance().Poll(2000);
        if (test_and_clear_signal(received, SIGUSR1)) ReadConfiguration();
    }
    std::cout << "Exiting..." << std::endl;
}

void Borealis::ReadConfiguration() {
    records_.SetWorkingCalibration(doc_.vela.cal.ch4zero.value(), doc_.vela.cal.ch4span.value());
    sessions_.NotifyConfigChanged();
}

// --- The signal processor ---

void Borealis::GotUnknownMessage(std::uint32_t, std::uint32_t, std::uint16_t cmd,
                                 const std::uint16_t*, std::size_t length) {
    std::cout << FormatUnknownMessage(cmd, length) << std::flush;
}

void Borealis::GotBadCommand(std::uint32_t, std::uint32_t, const std::string& text) {
    records_.OnMessage("Bad command: ", text);
}

void Borealis::GotData(std::uint32_t, std::uint32_t, const DSPDataRecord& record) {
    records_.OnData(record);
}

void Borealis::GotStatus(std::uint32_t, std::uint32_t, const DSPStatusRecord& record) {
    records_.OnStatus(record);
}

void Borealis::GotInitMessage(std::uint32_t, std::uint32_t, const std::string& text) {
    records_.OnMessage("INIT message from DSP: ", text);
}

void Borealis::GotDSPMessage(std::uint32_t, std::uint32_t, const std::string& text) {
    records_.OnMessage("Message from DSP: ", text);
}

void Borealis::GotPong(std::uint32_t, std::uint32_t) { std::cout << "GotPong" << std::endl; }

void Borealis::GotFatalMessage(std::uint32_t, std::uint32_t, const std::string& text) {
    records_.OnMessage("FATAL message from DSP: ", text);
}

void Borealis::GotWaveformS(std::uint32_t, std::uint32_t, const DSPWaveform& waveform) {
    records_.OnWaveform("DATAS", waveform);
}

void Borealis::GotWaveformR(std::uint32_t, std::uint32_t, const DSPWaveform& waveform) {
    records_.OnWaveform("DATAR", waveform);
}

void Borealis::GotWaveformSDC(std::uint32_t, std::uint32_t, const DSPWaveform& waveform) {
    records_.OnWaveform("DATASDC", waveform);
}

void Borealis::GotWaveformRDC(std::uint32_t, std::uint32_t, const DSPWaveform& waveform) {
    records_.OnWaveform("DATARDC", waveform);
}

void Borealis::GotClockSync(std::uint32_t seconds, std::uint32_t nanoseconds,
                            std::uint32_t ticks) {
    std::int32_t correction = 0;
    const TimePair arrival = TimePair::Of(seconds, nanoseconds);
    if (!clock_.Sync(arrival, ticks, correction)) return;
    records_.SetClockYz(correction);
    if (!no_clock_adjust_) dsp_.SetClockYz(ClockYzRegisterValue(correction));
}

void Borealis::GotTestData(std::uint32_t, std::uint32_t, const DSPTestRecord& record) {
    records_.OnTestData(record);
}

// --- Clients ---

void Borealis::ClientAdded(SocketClient* client) { sessions_.Greet(client); }

void Borealis::ClientRemoved(SocketClient* client) {
    if (client == box_.client) {
        box_.client = nullptr;
        fanout_.SendToAll("DATAEVENT\tBOXDISCONNECTED\n", SendLimit::ANSWER);
    }
    sessions_.Forget(client);
}

void Borealis::GotRequest(SocketClient* client, const std::string& message) {
    sessions_.HandleMessage(client, message);
}

// --- Changes of the configuration document ---

void Borealis::OutputRateChanged(int records_per_second) {
    records_.Pipeline().SetRate(records_per_second);
}

void Borealis::CalChanged() {
    records_.SetWorkingCalibration(doc_.vela.cal.ch4zero.value(), doc_.vela.cal.ch4span.value());
}

void Borealis::PollRequested() { records_.Pipeline().RequestNextData(); }

void Borealis::PollTestRequested() { dsp_.RequestTestData(); }
