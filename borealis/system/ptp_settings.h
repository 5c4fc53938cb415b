#ifndef BOREALIS_SYSTEM_PTP_SETTINGS_H
#define BOREALIS_SYSTEM_PTP_SETTINGS_H

#include <string>

class Platform;

// The role of the PTP daemon that may discipline the analyzer's clock, kept
// in the option line ("PTPD_OPTS=...") of its configuration file, and the
// init script that starts and stops it.
class PtpSettings {
public:
    // The modes in the order of the choices of vela/cfg/clock/ptp.
    enum Mode { kAuto = 0, kSlaveOnly = 1, kPreferred = 2 };

    // Reads the mode from the configuration file (system paths, found
    // through `platform`). Never fails.
    explicit PtpSettings(Platform& platform, const std::string& config_file = "/etc/sysconfig/ptpd",
                         const std::string& init_script = "/etc/rc.d/init.d/ptpd");

    // Reads the mode from the configuration file again and returns it; a
    // file that cannot be read means kAuto. Never fails.
    int ReadMode();
    // Stores `mode` (kSlaveOnly, kPreferred, anything else kAuto) and, with
    // root rights, replaces the configuration file by one with that option
    // line last; a file that cannot be replaced is given up without a
    // message. Throws std::runtime_error when root rights cannot be had.
    void SetMode(int mode);
    // A client's choice `index` of vela/cfg/clock/ptp (0 auto, 2 preferred,
    // any other slave only): nothing when that mode is in force, otherwise
    // SetMode and Restart. Throws as SetMode.
    void ModeChanged(int index);

    // Run the init script with root rights and the argument "restart",
    // "stop", "start", "restartgps" or "startgps"; the last two mark the
    // daemon as run with GPS. The script's exit status is not examined.
    // Throw std::runtime_error when root rights cannot be had.
    void Restart();
    void Stop();
    void Start();
    void RestartGps();
    void StartGps();

    int mode() const { return mode_; }
    bool gps() const { return gps_; }

private:
    void RunInitScript(const std::string& action);

    Platform& platform_;
    std::string config_file_;
    std::string init_script_;
    int mode_ = kAuto;
    bool gps_ = false;
};

// The mode that the option lines of the configuration file `text` give:
// "-g" slave only, "-p" preferred (it wins over "-g" on the same line), no
// option line kAuto. Never fails.
int ReadPtpOptions(const std::string& text);
// `text` without its option lines and with the line of `mode` last (none for
// kAuto). Never fails.
std::string WritePtpOptions(const std::string& text, int mode);

#endif
