#include "borealis/system/ptp_settings.h"

#include "borealis/platform/platform.h"
#include "borealis/system/system_file.h"
#include "common/run_command.h"

namespace {

const char kOptionLine[] = "PTPD_OPTS";

// `text` as one shell word, whatever characters the path holds.
std::string ShellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

}  // namespace

int ReadPtpOptions(const std::string& text) {
    int mode = PtpSettings::kAuto;
    for (const std::string& line : SplitLines(text)) {
        if (!StartsWith(line, kOptionLine)) continue;
        if (line.find("-g") != std::string::npos) mode = PtpSettings::kSlaveOnly;
        if (line.find("-p") != std::string::npos) mode = PtpSettings::kPreferred;
    }
    return mode;
}

std::string WritePtpOptions(const std::string& text, int mode) {
    std::string result;
    for (const std::string& line : SplitLines(text))
        if (!StartsWith(line, kOptionLine)) result += line + "\n";
    if (mode == PtpSettings::kSlaveOnly) result += std::string(kOptionLine) + "=-g\n";
    if (mode == PtpSettings::kPreferred) result += std::string(kOptionLine) + "=-p\n";
    return result;
}

PtpSettings::PtpSettings(Platform& platform, const std::string& config_file,
                         const std::string& init_script)
    : platform_(platform), config_file_(config_file), init_script_(init_script) {
    ReadMode();
}

int PtpSettings::ReadMode() {
    mode_ = ReadPtpOptions(ReadTextFile(platform_.Path(config_file_)).value_or(""));
    return mode_;
}

void PtpSettings::SetMode(int mode) {
    mode_ = mode == kSlaveOnly || mode == kPreferred ? mode : kAuto;
    const std::string path = platform_.Path(config_file_);
    const std::string text = WritePtpOptions(ReadTextFile(path).value_or(""), mode_);
    platform_.AsSuperUser([&] { ReplaceFile(path, text); });
}

void PtpSettings::ModeChanged(int index) {
    const int wanted = index == kAuto || index == kPreferred ? index : kSlaveOnly;
    if (wanted == mode_) return;
    SetMode(wanted);
    Restart();
}

void PtpSettings::Restart() { RunInitScript("restart"); }
void PtpSettings::Stop() { RunInitScript("stop"); }
void PtpSettings::Start() { RunInitScript("start"); }

void PtpSettings::RestartGps() {
    gps_ = true;
    RunInitScript("restartgps");
}

void PtpSettings::StartGps() {
    gps_ = true;
    RunInitScript("startgps");
}

void PtpSettings::RunInitScript(const std::string& action) {
    const std::string command = ShellQuoted(platform_.Path(init_script_)) + " " + action;
    platform_.AsSuperUser([&] { RunCommand(command); });
}
