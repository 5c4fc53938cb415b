#include "tools/watch_view.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

constexpr int kFlagsPerRow = 4;
constexpr int kFlagWidth = 16;

std::string Formatted(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string UtcTime(long long seconds) {
    const std::time_t time = static_cast<std::time_t>(seconds);
    std::tm utc{};
    char text[32];
    ::gmtime_r(&time, &utc);
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", &utc);
    return text;
}

}  // namespace

WatchView::WatchView(std::string address) : address_(std::move(address)) {}

void WatchView::Take(const Record& record, const RecordReader& reader) {
    if (record.type != "DATA") return;
    last_ = record;
    diag_names_ = reader.DiagNames();
    try {
        const long long second = std::stoll(record.Value("SECONDS"));
        if (second != second_) {
            if (++second_changes_ >= 3) rate_ = count_;
            second_ = second;
            count_ = 0;
        }
        ++count_;
    } catch (const std::exception&) {
        // A record without its time is shown but not counted.
    }
}

// A value of the last data record in `format`; "-" before the first one,
// and the text as sent when it is no number.
std::string WatchView::Measurement(const std::string& column, const char* format) const {
    if (!last_) return "-";
    const std::string text = last_->Value(column);
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    return text.empty() || *end != '\0' ? text : Formatted(format, value);
}

std::string WatchView::RecordLine() const {
    std::string line =
        "  Records       " + (rate_ < 0 ? std::string("-") : std::to_string(rate_)) + " a second";
    if (last_) {
        try {
            line += ", last " + UtcTime(std::stoll(last_->Value("SECONDS")));
        } catch (const std::exception&) {
            // No time to show.
        }
    }
    return line + (bad_lines_ ? ", " + std::to_string(bad_lines_) + " bad lines skipped" : "") +
           "\n";
}

std::string WatchView::Flags(bool highlight) const {
    const unsigned long diag = last_ ? std::strtoul(last_->Value("DIAG").c_str(), nullptr, 10) : 0;
    char word[16];
    std::snprintf(word, sizeof word, "0x%04lx", diag);
    std::string text = std::string("  DIAG ") + word + "\n";
    for (std::size_t bit = 0; bit < diag_names_.size() && bit < 32; ++bit) {
        const bool set = diag & (1ul << bit);
        std::string name = (highlight ? "" : set ? "*" : " ") + diag_names_[bit];
        name.resize(std::max<std::size_t>(name.size(), kFlagWidth - 1), ' ');
        if (bit % kFlagsPerRow == 0) text += "  ";
        text += highlight ? (set ? "\x1b[1;7m" : "\x1b[2m") + name + "\x1b[0m" : name;
        text +=
            (bit % kFlagsPerRow == kFlagsPerRow - 1 || bit + 1 == diag_names_.size()) ? "\n" : " ";
    }
    return text;
}

std::string WatchView::Render(bool highlight) const {
    std::string frame = identity_.model + " " + identity_.name + "  SN " + identity_.serial +
                        "  version " + identity_.version + "  box " + identity_.box + "\n";
    frame += address_ + ": " + connection_ + "\n\n";
    frame += "  CH4           " + Measurement("CH4", "%.3f") + " ppm\n";
    frame += "  CH4 density   " + Measurement("CH4D", "%.4f") + " mmol/m3\n";
    frame += "  Temperature   " + Measurement("TEMP", "%.2f") + " C\n";
    frame += "  Pressure      " + Measurement("PRESSURE", "%.2f") + " kPa\n";
    frame += "  Signal (RSSI) " + Measurement("RSSI", "%.0f") + "\n";
    frame += RecordLine() + "\n";
    frame += Flags(highlight);
    return frame + "\nCtrl-C ends the view.\n";
}
