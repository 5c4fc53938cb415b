#include "sim/interface_box.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

namespace {

// How long the daemon may take to greet the box or to close its end.
constexpr std::int64_t kAnswerNs = 10'000'000'000;
constexpr std::size_t kLinesKept = 10000;
constexpr double kMaxRate = 1000;

// The fewest digits that read back as the same float.
std::string ShortFloat(float value) {
    char text[32];
    for (int digits = 1; digits <= 9; ++digits) {
        std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(value));
        if (std::strtof(text, nullptr) == value) break;
    }
    return text;
}

float ParseFloat(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const float value = std::strtof(text.c_str(), &end);
    if (text.empty() || *end != '\0' || errno == ERANGE) throw BoxError("not a number: " + text);
    return value;
}

long ParseLong(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || errno == ERANGE || value < INT32_MIN || value > INT32_MAX)
        throw BoxError("not a whole number: " + text);
    return value;
}

bool SameName(const std::string& a, const char* b) { return ::strcasecmp(a.c_str(), b) == 0; }

}  // namespace

InterfaceBox::InterfaceBox(EventLoop& loop, ProcessorTime& time, DeviceSocket& dsp,
                           unsigned short default_port)
    : loop_(loop),
      time_(time),
      dsp_(dsp),
      default_port_(default_port),
      deadline_(loop, [this] { TimedOut(); }),
      report_timer_(loop, [this] { SendDue(); }) {}

InterfaceBox::~InterfaceBox() {
    if (fd_ < 0) return;
    loop_.Forget(fd_);
    ::close(fd_);
}

void InterfaceBox::Connect(unsigned short port) {
    if (fd_ >= 0) throw BoxError("the box is connected already");
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // On the loopback address the connection is made or refused at once.
    if (fd < 0 || ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int error = errno;
        if (fd >= 0) ::close(fd);
        throw BoxError("cannot connect to port " + std::to_string(port) + ": " +
                       std::strerror(error));
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    fd_ = fd;
    ++connection_;
    state_ = State::kGreeting;
    input_.clear();
    output_.clear();
    received_.clear();
    loop_.Watch(fd_, POLLIN, [this](short revents) { Serve(revents); });
    deadline_.StartAt(MonotonicNs() + kAnswerNs);
    std::cout << "vela-sim: box connected to port " << port << std::endl;
    connected_ns_ = time_.NowNs();
    last_report_ns_ = -1;
    ArmTimer();
}

void InterfaceBox::Disconnect() {
    if (fd_ < 0) throw BoxError("the box is not connected");
    state_ = State::kClosing;
    report_timer_.Stop();
    deadline_.StartAt(MonotonicNs() + kAnswerNs);
    // The daemon closes its end once it has read everything; its close
    // tells us it has let the box go.
    if (output_.empty()) ::shutdown(fd_, SHUT_WR);
}

void InterfaceBox::WhenSettled(Done done) {
    settled_handlers_.push_back(std::move(done));
    Settle("");
}

void InterfaceBox::Settle(const std::string& error) {
    const bool busy = state_ == State::kGreeting || state_ == State::kClosing ||
                      pending_reports_ > 0 || !output_.empty();
    if (busy && error.empty()) return;
    std::vector<Done> handlers;
    handlers.swap(settled_handlers_);
    for (Done& handler : handlers) handler(error);
}

void InterfaceBox::SetRate(double per_second) {
    if (!(per_second >= 0 && per_second <= kMaxRate))
        throw BoxError("the rate must be from 0 to 1000 reports a second");
    rate_ = per_second;
    ArmTimer();
}

void InterfaceBox::SetValue(const std::string& name, const std::string& value) {
    static const char* const kAux[] = {"AUX5", "AUX6", "AUX7", "AUX8"};
    for (std::size_t i = 0; i < aux_.size(); ++i)
        if (SameName(name, kAux[i])) {
            aux_[i] = ParseFloat(value);
            return;
        }
    if (SameName(name, "USB"))
        usb_ = ParseLong(value);
    else if (SameName(name, "CAPACITY"))
        capacity_ = ParseFloat(value);
    else if (SameName(name, "FREE"))
        free_ = ParseFloat(value);
    else
        throw BoxError("unknown box value " + name);
}

void InterfaceBox::SetModel(const std::string& model, const std::string& description) {
    model_ = model;
    description_ = description;
}

std::string InterfaceBox::ReportLine() const {
    const timespec stamp = time_.Stamp();
    std::string line = "Base " + std::to_string(stamp.tv_sec) + " " +
                       std::to_string(stamp.tv_nsec) + " " + std::to_string(usb_) + " " +
                       ShortFloat(capacity_) + " " + ShortFloat(free_);
    for (float value : aux_) line += " " + ShortFloat(value);
    if (!model_.empty()) line += " " + model_;
    if (!model_.empty() && !description_.empty()) line += " " + description_;
    return line + "\n";
}

void InterfaceBox::SendReport() {
    if (fd_ < 0 || state_ == State::kClosing) throw BoxError("the box is not connected");
    Queue(ReportLine());
}

std::int64_t InterfaceBox::Period() const { return static_cast<std::int64_t>(1e9 / rate_); }

std::int64_t InterfaceBox::NextDueNs() const {
    if (fd_ < 0 || state_ == State::kClosing || rate_ <= 0) return -1;
    // The first report is due on connecting, each next one a period after
    // the one before.
    return last_report_ns_ < 0 ? connected_ns_ : last_report_ns_ + Period();
}

void InterfaceBox::SendDue() {
    const std::int64_t now = time_.NowNs();
    const std::int64_t due = NextDueNs();
    if (due < 0 || due > now) return;
    Queue(ReportLine());
    // Reports missed while the simulator was held up are not made up for.
    last_report_ns_ = due + (now - due) / Period() * Period();
    ArmTimer();
}

void InterfaceBox::ArmTimer() {
    if (!time_.IsManual() && NextDueNs() >= 0) report_timer_.StartAt(NextDueNs());
}

void InterfaceBox::Queue(const std::string& line) {
    ++pending_reports_;
    const unsigned long connection = connection_;
    dsp_.WhenSent([this, connection, line](const std::string&) {
        --pending_reports_;
        if (connection != connection_ || fd_ < 0) {
            Settle("");
            return;
        }
        output_ += line;
        Write();
    });
}

void InterfaceBox::Serve(short revents) {
    if (revents & POLLOUT) Write();
    if (fd_ >= 0 && (revents & (POLLIN | POLLHUP | POLLERR))) Read();
}

void InterfaceBox::Read() {
    char buffer[16384];
    const ssize_t got = ::recv(fd_, buffer, sizeof buffer, MSG_DONTWAIT);
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (got <= 0) {
        Closed(state_ == State::kClosing ? "" : "the daemon closed the box connection");
        return;
    }
    input_.append(buffer, static_cast<std::size_t>(got));
    for (std::size_t end; (end = input_.find('\n')) != std::string::npos;
         input_.erase(0, end + 1)) {
        received_.push_back(input_.substr(0, end));
        if (received_.size() > kLinesKept) received_.pop_front();
    }
    if (state_ == State::kGreeting && !received_.empty()) {
        state_ = State::kOpen;
        deadline_.Stop();
        Settle("");
    }
}

void InterfaceBox::Write() {
    if (!output_.empty()) {
        const ssize_t sent =
            ::send(fd_, output_.data(), output_.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN && errno != EINTR) {
            Closed(std::string("cannot write to the daemon: ") + std::strerror(errno));
            return;
        }
        if (sent > 0) output_.erase(0, static_cast<std::size_t>(sent));
    }
    if (output_.empty() && state_ == State::kClosing) ::shutdown(fd_, SHUT_WR);
    loop_.SetEvents(fd_, output_.empty() ? POLLIN : POLLIN | POLLOUT);
    Settle("");
}

void InterfaceBox::TimedOut() {
    Closed(state_ == State::kGreeting ? "the daemon did not greet the box within 10 s"
                                      : "the daemon did not close the box connection within 10 s");
}

void InterfaceBox::Closed(const std::string& error) {
    loop_.Forget(fd_);
    ::close(fd_);
    fd_ = -1;
    state_ = State::kIdle;
    output_.clear();
    deadline_.Stop();
    report_timer_.Stop();
    std::cout << "vela-sim: box disconnected" << std::endl;
    Settle(error);
}
