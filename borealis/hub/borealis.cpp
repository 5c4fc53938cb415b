#include "borealis/hub/borealis.h"

#include <signal.h>

#include <iostream>

#include "borealis/platform/platform.h"
#include "borealis/system/hardware_identity.h"
#include "borealis/system/interface_status.h"
#include "borealis/version.h"
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

// Shows a value that the system holds: clients cannot set it, and showing it
// is not a change anybody made.
void ShowSystemValue(ConfigurableString& element, const std::string& value) {
    element.set(value);
    element.set_read_only(true);
    element.set_changed(false);
}

}  // namespace

Borealis::Borealis(Platform& platform, bool debug, bool no_clock_adjust)
    : platform_(platform),
      bonjour_(this),
      time_(platform),
      ptp_(platform),
      network_(platform),
      button_(platform),
      dsp_(platform),
      clock_(debug),
      mirror_(platform, "/dev/mirror4410"),
      server_("\n", AF_INET6),
      debug_(debug),
      no_clock_adjust_(no_clock_adjust),
      fanout_(server_),
      records_(doc_, clock_, fanout_, box_, mirror_),
      sessions_(platform, doc_, fanout_, records_, box_, debug),
      files_(doc_, platform),
      calibration_(doc_, files_),
      settings_(doc_, dsp_, mirror_, platform, debug),
      advertisement_(bonjour_, platform) {
    platform_.FollowLocalTimeFile();
    doc_.set_throw_errors(true);
    // Only what changes from now on is to be applied and announced.
    doc_.set_changed(false);
    doc_.SetListener(this);
    sessions_.SetCommandHandler(
        [this](SocketClient* client, const std::string& line) { HandleCommand(client, line); });
    dsp_.SetListener(this);
    dsp_.StartCpldClock();
    dsp_.SendStart();
    server_.AddListener(this);
    server_.Listen(platform_.Port());
    button_.SetListener(this);
}

Borealis::~Borealis() {
    button_.SetListener(nullptr);
    server_.RemoveListener(this);
    dsp_.SetListener(nullptr);
    doc_.SetListener(nullptr);
}

void Borealis::Run() {
    CatchLoopSignals();
    sigset_t& received = received_signals();
    ReadConfiguration();
    if (debug_) PrintDiagnosticDumps();
    while (!quit_) {
        if (test_and_clear_signal(received, SIGINT)) break;
        PollProcessor::Instance().Poll(2000);
        if (test_and_clear_signal(received, SIGUSR1)) ReadConfiguration();
    }
    std::cout << "Exiting..." << std::endl;
}

void Borealis::ReadConfiguration() {
    if (ConfigTimezone::Zones().size() < 2) ConfigTimezone::SetZones(time_.zones());
    files_.LoadFactoryConf();
    settings_.DeriveLineLockTargets();
    files_.LoadCalConf();
    files_.LoadVelaConf([this] { FillSystemValues(); });
    settings_.SendLineLockControls();
    settings_.SendFactoryConstants();
    UseDocumentCalibration();
    sessions_.NotifyConfigChanged();
    advertisement_.Advertise(doc_.vela.cpld.ver.value(), doc_.vela.factory.serialnumber.value());
}

// The values the system holds rather than the file; setting them is not a
// change anybody made.
void Borealis::FillSystemValues() {
    Config4410& vela = doc_.vela;
    ShowSystemValue(vela.ver, kBorealisVersion);
    ShowSystemValue(vela.ipaddress, NetworkInterfaceInfo(platform_, "br0").address.ToString());
    ShowSystemValue(vela.name, GetHostName());
    ShowSystemValue(vela.cpld.ver, GetHardwareIdentity(platform_));
    vela.serialnumber.set_read_only(true);

    ConfigCfgClock& clock = vela.cfg.clock;
    clock.zone.set(time_.current_zone());
    clock.ptp.set(ptp_.ReadMode());
    ConfigCfgNetwork& network = vela.cfg.network;
    const InterfaceConfig& interface = network_.config();
    network.name.set(network_.host_name());
    network.configuration.set(interface.dhcp ? 0 : 1);  // "auto" or "manual"
    network.ipaddress.set(interface.address);
    network.netmask.set(interface.netmask);
    network.gateway.set(interface.gateway);
    clock.zone.set_changed(false);
    clock.ptp.set_changed(false);
    network.set_changed(false);
}

void Borealis::UseDocumentCalibration() {
    records_.SetWorkingCalibration(doc_.vela.cal.ch4zero.value(), doc_.vela.cal.ch4span.value());
}

// Four indented dumps of the document, each closed by a line of stars.
void Borealis::PrintDiagnosticDumps() {
    files_.SaveFactoryConf();
    files_.SaveCalConf();
    files_.SaveVelaConf();
    const char separator[] = "\n**********\n";
    doc_.vela.error.set("Test error message");
    std::cout << doc_.vela.error << separator;
    std::cout << doc_.vela.output << separator;
    std::cout << doc_ << separator;
    write_changes(std::cout, doc_) << separator << std::flush;
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

void Borealis::GotClockSync(std::uint32_t seconds, std::uint32_t nanoseconds, std::uint32_t ticks) {
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
        box_.Disconnect();
        fanout_.SendToAll(box_.EventLine(), SendLimit::ANSWER);
    }
    sessions_.Forget(client);
}

void Borealis::GotRequest(SocketClient* client, const std::string& message) {
    sessions_.HandleMessage(client, message);
}

// --- Changes of the configuration document ---

void Borealis::TempRangeChanged(int temprange) { settings_.ApplyTempRange(temprange); }

void Borealis::OutputRateChanged(int records_per_second) {
    records_.Pipeline().SetRate(records_per_second);
}

void Borealis::ZeroRequested() {
    try {
        const float zero = calibration_.Zero(records_.Pipeline().Recent());
        records_.SetWorkingCalibration(zero, records_.WorkingSpan());
    } catch (const CalibrationError& error) {
        return ReportCalibrationError(error);
    }
    sessions_.NotifyConfigChanged();
}

void Borealis::SpanRequested(float concentration) {
    try {
        const float span =
            calibration_.Span(concentration, records_.Pipeline().Recent(), records_.WorkingZero());
        records_.SetWorkingCalibration(records_.WorkingZero(), span);
    } catch (const CalibrationError& error) {
        return ReportCalibrationError(error);
    }
    sessions_.NotifyConfigChanged();
}

// A calibration that cannot be taken changes nothing; the client that asked
// is told in one message line.
void Borealis::ReportCalibrationError(const CalibrationError& error) {
    const std::string line = std::string("DATAMSG\t") + error.what() + "\n";
    fanout_.SendToClient(sessions_.CurrentClient(), line, SendLimit::ANSWER);
    std::cout << line << std::flush;
}

void Borealis::CalCommitRequested() { calibration_.Commit(); }

void Borealis::CalRollbackRequested() {
    calibration_.Rollback();
    UseDocumentCalibration();
}

void Borealis::CalChanged() { UseDocumentCalibration(); }

void Borealis::PollRequested() { records_.Pipeline().RequestNextData(); }

void Borealis::PollTestRequested() { dsp_.RequestTestData(); }

void Borealis::LineLockRequested() { settings_.SendLineLockSetup(); }

void Borealis::TopHeaterChanged(int heaterpower, int control, float deltat, int ontime,
                                int offtime) {
    mirror_.TopHeaterChanged(heaterpower, control, deltat, ontime, offtime);
}

void Borealis::BottomHeaterChanged(int heaterpower, int control, int signalstrengthlevel,
                                   int ontime, int offtime) {
    mirror_.BottomHeaterChanged(heaterpower, control, signalstrengthlevel, ontime, offtime);
}

void Borealis::SpinMirrorChanged(int control, int signalstrengthlevel, int ontime, int offtime,
                                 int duration, int repeatinterval) {
    mirror_.SpinMirrorChanged(control, signalstrengthlevel, ontime, offtime, duration,
                              repeatinterval);
}

void Borealis::LineLockChanged(int, float, std::uint16_t, int, float, std::uint16_t) {
    settings_.SendLineLockControls();
}

void Borealis::ClockTimeChanged(std::int64_t seconds) { time_.ClockTimeChanged(seconds, ptp_); }

void Borealis::TimeZoneChanged(const std::string& zone) { time_.SetZone(zone); }

void Borealis::PtpModeChanged(int ptp) { ptp_.ModeChanged(ptp); }

void Borealis::NetworkChanged(const std::string& host_name, bool dhcp, const std::string& address,
                              const std::string& netmask, const std::string& gateway) {
    network_.Update(host_name, dhcp, SocketAddress(address), SocketAddress(netmask),
                    SocketAddress(gateway));
}

void Borealis::FactoryChanged() {
    settings_.SendChangedFactoryConstants();
    sessions_.NotifyConfigChanged();
}

void Borealis::FactoryCommitRequested() { files_.SaveFactoryConf(); }

void Borealis::FactoryRollbackRequested() { files_.LoadFactoryConf(); }

void Borealis::RebootRequested() {
    dsp_.Close();
    platform_.Reboot();
    quit_ = true;
}

void Borealis::SaveRequested() { files_.SaveVelaConf(); }

// --- The network reset button ---

// A press brings the analyzer back on the network by DHCP, after a restart.
void Borealis::GotDown() {
    network_.SetDhcp();
    RebootRequested();
}
