#ifndef BOREALIS_HUB_BOREALIS_H
#define BOREALIS_HUB_BOREALIS_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "borealis/config/calibration.h"
#include "borealis/config/config_files.h"
#include "borealis/config/doc4410.h"
#include "borealis/discovery/bonjour_client.h"
#include "borealis/discovery/net_reset_button.h"
#include "borealis/discovery/service_advertisement.h"
#include "borealis/dsp/data_clock.h"
#include "borealis/dsp/dsp_device.h"
#include "borealis/hub/analyzer_settings.h"
#include "borealis/hub/client_fanout.h"
#include "borealis/hub/client_sessions.h"
#include "borealis/hub/interface_box.h"
#include "borealis/hub/measurement_records.h"
#include "borealis/system/network_settings.h"
#include "borealis/system/ptp_settings.h"
#include "borealis/system/time_settings.h"
#include "borealis/upkeep/washme.h"
#include "common/socket_server.h"

class Platform;
struct TextCommand;

// The daemon's one central object: it owns every device, the TCP server, the
// configuration document and the system settings, listens to all of them, and
// runs the poll loop. Its own code is wiring: each callback hands its event
// to the part that owns the concern.
class Borealis : public DSPDevice::Listener,
                 public SocketServerListener,
                 public Doc4410::Listener,
                 public BonjourClientListener,
                 public NetResetButtonDevice::Listener {
public:
    // Builds and wires everything, starts the CPLD clock, greets the signal
    // processor and listens for clients. Throws when a device cannot be
    // opened, the clock cannot be started or the port cannot be bound.
    Borealis(Platform& platform, bool debug, bool no_clock_adjust);
    ~Borealis() override;
    Borealis(const Borealis&) = delete;
    Borealis& operator=(const Borealis&) = delete;

    // Reads the configuration, then serves the loop until SIGINT or a quit
    // request; SIGUSR1 rereads the configuration. Prints "Exiting...".
    void Run();
    // Reads the three configuration files and applies all of them.
    void ReadConfiguration();

    // --- The signal processor ---
    void GotUnknownMessage(std::uint32_t, std::uint32_t, std::uint16_t cmd, const std::uint16_t*,
                           std::size_t length) override;
    void GotBadCommand(std::uint32_t, std::uint32_t, const std::string& text) override;
    void GotData(std::uint32_t, std::uint32_t, const DSPDataRecord& record) override;
    void GotStatus(std::uint32_t, std::uint32_t, const DSPStatusRecord& record) override;
    void GotInitMessage(std::uint32_t, std::uint32_t, const std::string& text) override;
    void GotDSPMessage(std::uint32_t, std::uint32_t, const std::string& text) override;
    void GotPong(std::uint32_t, std::uint32_t) override;
    void GotFatalMessage(std::uint32_t, std::uint32_t, const std::string& text) override;
    void GotWaveformS(std::uint32_t, std::uint32_t, const DSPWaveform& waveform) override;
    void GotWaveformR(std::uint32_t, std::uint32_t, const DSPWaveform& waveform) override;
    void GotWaveformSDC(std::uint32_t, std::uint32_t, const DSPWaveform& waveform) override;
    void GotWaveformRDC(std::uint32_t, std::uint32_t, const DSPWaveform& waveform) override;
    void GotClockSync(std::uint32_t seconds, std::uint32_t nanoseconds,
                      std::uint32_t ticks) override;
    void GotTestData(std::uint32_t, std::uint32_t, const DSPTestRecord& record) override;

    // --- Clients ---
    void ClientAdded(SocketClient* client) override;
    void ClientRemoved(SocketClient* client) override;
    void GotRequest(SocketClient* client, const std::string& message) override;

    // --- Changes of the configuration document ---
    void TempRangeChanged(int temprange) override;
    void OutputRateChanged(int records_per_second) override;
    void ZeroRequested() override;
    void SpanRequested(float concentration) override;
    void CalCommitRequested() override;
    void CalRollbackRequested() override;
    void CalChanged() override;
    void PollRequested() override;
    void PollTestRequested() override;
    void LineLockRequested() override;
    void TopHeaterChanged(int heaterpower, int control, float deltat, int ontime,
                          int offtime) override;
    void BottomHeaterChanged(int heaterpower, int control, int signalstrengthlevel, int ontime,
                             int offtime) override;
    void SpinMirrorChanged(int control, int signalstrengthlevel, int ontime, int offtime,
                           int duration, int repeatinterval) override;
    void LineLockChanged(int, float, std::uint16_t, int, float, std::uint16_t) override;
    void ClockTimeChanged(std::int64_t seconds) override;
    void TimeZoneChanged(const std::string& zone) override;
    void PtpModeChanged(int ptp) override;
    void NetworkChanged(const std::string& host_name, bool dhcp, const std::string& address,
                        const std::string& netmask, const std::string& gateway) override;
    void FactoryChanged() override;
    void FactoryCommitRequested() override;
    void FactoryRollbackRequested() override;
    void RebootRequested() override;
    void SaveRequested() override;

    // --- The network reset button ---
    void GotDown() override;

private:
    // A client line that is not XML; the only answers are headers.
    void HandleCommand(SocketClient* client, const std::string& line);
    void ExecuteCommand(SocketClient* client, const TextCommand& command, std::ostream& answer);
    void HandleBoxReport(SocketClient* client, const std::string& fields, std::ostream& answer);
    void FillSystemValues();
    void UseDocumentCalibration();
    void ReportCalibrationError(const CalibrationError& error);
    void PrintDiagnosticDumps();

    Platform& platform_;
    BonjourClient bonjour_;
    TimeSettings time_;
    PtpSettings ptp_;
    NetworkSettings network_;
    NetResetButtonDevice button_;
    Doc4410 doc_;
    DSPDevice dsp_;
    DataClock clock_;
    WashMe mirror_;
    SocketServer server_;
    bool quit_ = false;
    const bool debug_;
    const bool no_clock_adjust_;
    InterfaceBox box_;
    ClientFanout fanout_;
    MeasurementRecords records_;
    ClientSessions sessions_;
    ConfigFiles files_;
    Calibration calibration_;
    AnalyzerSettings settings_;
    ServiceAdvertisement advertisement_;
};

#endif
