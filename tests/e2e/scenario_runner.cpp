#include "tests/e2e/scenario_runner.h"

#include <netinet/tcp.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <optional>
#include <regex>
#include <stdexcept>

#include "tests/support/process.h"
#include "tests/support/tcp_end.h"

namespace {

const std::chrono::seconds kDeadline(20);

// A step that cannot be carried out; ends the run.
class StepError : public std::runtime_error {
public:
    explicit StepError(const std::string& message) : std::runtime_error(message) {}
};

// The first word of `text` and the rest after the blanks that follow it.
std::pair<std::string, std::string> SplitFirst(const std::string& text) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::size_t rest = std::min(text.find_first_not_of(' ', end), text.size());
    return {text.substr(0, end), text.substr(rest)};
}

std::vector<std::string> Words(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

// A scenario's text with its escapes \n, \t and \\ turned into characters.
std::string Unescape(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char next = text[++i];
        out += next == 'n' ? '\n' : next == 't' ? '\t' : next;
    }
    return out;
}

// A received line as the transcript shows it: without its line end, tabs
// as \t, so that the transcript is plain text.
std::string Escape(const std::string& line) {
    std::string out;
    for (char c : line)
        out += c == '\t'   ? "\\t"
               : c == '\r' ? "\\r"
               : c == '\\' ? "\\\\"
                           : std::string(c != '\n', c);
    return out;
}

// What depends on the host or the wall clock: the host name in the greeting,
// the clock's date and time in XML answers, and any other timestamp there.
std::string Mask(const std::string& line) {
    const std::string name_event = "DATAEVENT\tNAME\t";
    if (line.compare(0, name_event.size(), name_event) == 0) return name_event + "<hostname>\n";
    if (line.empty() || line[0] != '<') return line;
    static const std::regex clock_date("(<clock>(?:(?!</clock>).)*<date>)[^<]*"),
        clock_time("(<clock>(?:(?!</clock>).)*<time>)[^<]*"),
        timestamp("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d(\\.\\d+)?");
    std::string masked = std::regex_replace(line, clock_date, "$1YYYY-MM-DD");
    masked = std::regex_replace(masked, clock_time, "$1HH:MM:SS");
    return std::regex_replace(masked, timestamp, "YYYY-MM-DD HH:MM:SS");
}

// The type word of a record line ("DATA", "DATASTAT", ...); empty for any
// other line: events, messages, headers (type words ending in H), answers.
std::string RecordType(const std::string& line) {
    if (line.compare(0, 4, "DATA") != 0) return "";
    const std::string type = line.substr(0, line.find_first_of("\t\n"));
    if (type == "DATAMSG" || type == "DATAEVENT" || type.back() == 'H') return "";
    return type;
}

// Whether a record line ends in the right CHK: the byte sum of the line up
// to and including the tab before it, modulo 256, right-aligned in three.
bool ChecksumRight(const std::string& line) {
    const std::size_t end = line.size() - (line.back() == '\n' ? 1 : 0);
    if (end < 4 || line[end - 4] != '\t') return false;
    unsigned sum = 0;
    for (std::size_t i = 0; i + 3 < end; ++i) sum += static_cast<unsigned char>(line[i]);
    char chk[8];
    std::snprintf(chk, sizeof chk, "%3u", sum % 256);
    return line.compare(end - 3, 3, chk) == 0;
}

// Whether `number` is still pending for process `pid`, not yet handled.
bool SignalPending(pid_t pid, int number) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    const unsigned long long bit = 1ull << (number - 1);
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, 7, "SigPnd:") != 0 && line.compare(0, 7, "ShdPnd:") != 0) continue;
        if (std::stoull(line.substr(7), nullptr, 16) & bit) return true;
    }
    return false;
}

}  // namespace

ScenarioRunner::ScenarioRunner() : port_(UniqueTestPort()) {}

ScenarioRunner::~ScenarioRunner() {
    // Clients first, then the daemon, then the simulator: the daemon never
    // has to outlive the devices it holds.
    readers_.clear();
    daemon_.reset();
    sim_.reset();
}

std::string ScenarioRunner::Run(const std::string& scenario) {
    std::istringstream lines(scenario);
    int number = 0;
    try {
        // The interface box of `sim box connect` goes to this daemon's port.
        sim_ = std::make_unique<SimulatedAnalyzer>(
            root_, std::vector<std::string>{"--manual", "--port", std::to_string(port_)});
        for (std::string line; std::getline(lines, line);) {
            ++number;
            line.erase(0, line.find_first_not_of(" \t"));
            line.erase(line.find_last_not_of(" \t\r") + 1);
            if (line.empty() || line[0] == '#') continue;
            Step(line);
        }
    } catch (const std::exception& error) {
        problems_.push_back("line " + std::to_string(number) + ": " + error.what());
    }
    return transcript_.str();
}

void ScenarioRunner::Step(const std::string& step) {
    transcript_ << "> " << step << "\n";
    const auto [first, rest] = SplitFirst(step);
    if (first == "sim")
        Sim(rest);
    else if (first == "file")
        File(rest);
    else if (first == "show")
        Show(rest);
    else if (first == "remove")
        Remove(rest);
    else if (first == "daemon")
        Daemon(rest);
    else if (first == "client")
        Client(rest);
    else if (Reader* reader = Find(first))
        ClientAction(*reader, rest);
    else
        throw StepError("unknown step: " + step);
    Settle();
}

void ScenarioRunner::Sim(const std::string& command) {
    if (command.rfind("box received", 0) == 0) AwaitBoxBarrier();
    const std::string answer = sim_->Ask(command);
    if (answer == "ok\n") {
        if (command.rfind("box connect", 0) == 0) box_connected_ = true;
        if (command == "box disconnect") box_connected_ = false;
        return;
    }
    if (answer.empty()) throw StepError("vela-sim did not answer " + command);
    std::istringstream lines(answer);
    // Shown and masked as the clients' lines are: the box's listing holds
    // what the daemon sent it, its greeting included.
    for (std::string line; std::getline(lines, line);)
        transcript_ << "sim| " << Escape(Mask(line)) << "\n";
}

// The box is a client like any other: the barrier reaches it too, but
// nothing else waits for it (the daemon's small writes may wait for the
// box's acknowledgement).
void ScenarioRunner::AwaitBoxBarrier() {
    if (!box_connected_ || marks_ == 0) return;
    const std::string mark_line =
        "DATAMSG\tMessage from DSP: e2e-mark-" + std::to_string(marks_) + "\n";
    const auto box_has_mark = [&] {
        return sim_->Ask("box received DATAMSG").find(mark_line) != std::string::npos;
    };
    if (!WaitUntil(box_has_mark, kDeadline)) throw StepError("the box received no barrier");
}

void ScenarioRunner::File(const std::string& arguments) {
    const auto [path, text] = SplitFirst(arguments);
    root_.WriteFile(path, Unescape(text));
}

void ScenarioRunner::Show(const std::string& path) {
    if (::access((root_ / path).c_str(), F_OK) != 0) {
        transcript_ << "file: missing\n";
        return;
    }
    std::istringstream lines(root_.ReadFile(path));
    for (std::string line; std::getline(lines, line);)
        transcript_ << (line.empty() ? "file|" : "file| ") << Escape(line) << "\n";
}

void ScenarioRunner::Remove(const std::string& path) {
    if (::unlink((root_ / path).c_str()) != 0)
        throw StepError("cannot remove " + path + ": " + std::strerror(errno));
}

void ScenarioRunner::Daemon(const std::string& arguments) {
    const std::vector<std::string> words = Words(arguments);
    if (!words.empty() && words[0] == "start")
        StartDaemon(std::vector<std::string>(words.begin() + 1, words.end()));
    else if (words.size() == 1 && words[0] == "stop")
        StopDaemon();
    else if (words.size() == 2 && words[0] == "signal")
        SignalDaemon(words[1]);
    else
        throw StepError("unknown daemon step: " + arguments);
}

void ScenarioRunner::StartDaemon(const std::vector<std::string>& options) {
    if (DaemonRunning()) throw StepError("the daemon runs already");
    daemon_.reset();
    daemon_ = std::make_unique<DaemonUnderTest>(root_, port_, options);
    daemon_output_taken_ = 0;
    exit_shown_ = false;
    if (!daemon_->Ready())
        throw StepError("the daemon did not greet:\n" + daemon_->Process().Output());
}

void ScenarioRunner::StopDaemon() {
    if (!DaemonRunning()) throw StepError("the daemon does not run");
    daemon_->Process().Signal(SIGINT);
    const int status = daemon_->Process().Wait(kDeadline);
    if (status < 0) throw StepError("the daemon did not stop");
    ShowExit(status);
}

// Its connections end with it: what the clients and its output got last,
// then its exit status.
void ScenarioRunner::ShowExit(int status) {
    for (Reader& reader : readers_) ReadUpTo(reader, "");
    DaemonOutputUpTo("");
    daemon_lines_ += "daemon: exit " + std::to_string(status) + "\n";
    exit_shown_ = true;
}

void ScenarioRunner::SignalDaemon(const std::string& name) {
    if (!DaemonRunning()) throw StepError("the daemon does not run");
    if (name != "USR1") throw StepError("unknown signal " + name);
    const int number = SIGUSR1;
    daemon_->Process().Signal(number);
    // Once its handler has run, the daemon acts on the signal before it
    // polls again, so before it can see the barrier.
    const pid_t pid = daemon_->Process().pid();
    if (!WaitUntil([&] { return !SignalPending(pid, number); }, kDeadline))
        throw StepError("the daemon did not take signal " + name);
}

void ScenarioRunner::Client(const std::string& arguments) {
    const std::vector<std::string> words = Words(arguments);
    const bool summary = words.size() == 2 && words[1] == "summary";
    if (words.empty() || (words.size() == 2 && !summary) || words.size() > 2)
        throw StepError("usage: client <name> [summary]");
    const std::string& name = words[0];
    const char* const step_words[] = {"sim", "file", "show", "remove", "daemon", "client"};
    if (Find(name) ||
        std::find(std::begin(step_words), std::end(step_words), name) != std::end(step_words))
        throw StepError("client name taken: " + name);
    if (!DaemonRunning()) throw StepError("no daemon to connect to");
    Reader reader{name, summary, std::make_unique<LineClient>(port_), {}, {}, false};
    if (!reader.client->Connected()) throw StepError(name + " could not connect");
    // The first greeting line shows the daemon has taken the connection, so
    // the barrier reaches this client too.
    const std::string first = reader.client->ReadLine(kDeadline);
    if (first.empty()) throw StepError(name + " was not greeted");
    Take(reader, first);
    readers_.push_back(std::move(reader));
}

void ScenarioRunner::ClientAction(Reader& reader, const std::string& action) {
    const auto [verb, text] = SplitFirst(action);
    if (verb == "send") {
        reader.client->Send(Unescape(text) + "\n");
        AwaitRequestRead(reader);
    } else if (verb == "close" && text.empty()) {
        const unsigned short client_port = reader.client->LocalPort();
        readers_.erase(std::find_if(readers_.begin(), readers_.end(),
                                    [&](const Reader& other) { return &other == &reader; }));
        AwaitClosedByDaemon(client_port);
    } else {
        throw StepError("unknown client step: " + action);
    }
}

// The daemon handles what one read gave it to the end before it looks at
// the processor device again: once it has read the whole request, every
// line the request causes comes before the barrier.
void ScenarioRunner::AwaitRequestRead(Reader& reader) {
    if (!DaemonRunning() || reader.client->Closed()) return;
    const unsigned short client_port = reader.client->LocalPort();
    const bool read = WaitUntil(
        [&] {
            if (reader.client->Unacknowledged() > 0)
                return false;  // not all in the daemon's queue yet
            const std::optional<TcpEnd> end = FindTcpEnd(port_, client_port);
            return !end || end->receive_queue == 0;
        },
        kDeadline);
    if (!read) throw StepError("the daemon did not read " + reader.name + "'s request");
}

// The daemon has let the connection go once its end has left CLOSE_WAIT.
void ScenarioRunner::AwaitClosedByDaemon(unsigned short client_port) {
    if (!DaemonRunning()) return;
    const bool closed = WaitUntil(
        [&] {
            const std::optional<TcpEnd> end = FindTcpEnd(port_, client_port);
            return !end || (end->state != TCP_ESTABLISHED && end->state != TCP_CLOSE_WAIT);
        },
        kDeadline);
    if (!closed) throw StepError("the daemon did not close the connection");
}

bool ScenarioRunner::DaemonRunning() {
    return daemon_ && daemon_->Process().Wait(std::chrono::milliseconds(0)) < 0;
}

// Two barriers: by the time the first has reached the clients, the daemon
// has written to the processor whatever the step made it send; the
// processor's answers to that come before the second. A daemon that ends by
// itself in the step (a reboot lets the processor go first) needs no
// barrier: once it has exited, everything it did is in.
void ScenarioRunner::Settle() {
    for (int round = 0; round < 2 && DaemonRunning(); ++round) {
        const std::string mark = "e2e-mark-" + std::to_string(++marks_);
        const std::string answer = sim_->Ask("message " + mark);
        if (answer != "ok\n") {
            if (daemon_->Process().Wait(kDeadline) >= 0)
                break;  // it let the processor go on its way out
            throw StepError("the barrier did not go out: " + answer);
        }
        const std::string mark_line = "DATAMSG\tMessage from DSP: " + mark + "\n";
        for (Reader& reader : readers_) ReadUpTo(reader, mark_line);
        DaemonOutputUpTo(mark_line);
    }
    if (daemon_ && !exit_shown_ && !DaemonRunning()) ShowExit(daemon_->Process().Wait(kDeadline));
    for (Reader& reader : readers_) {
        for (const std::string& line : reader.lines)
            transcript_ << reader.name << (line.empty() ? "|" : "| ") << line << "\n";
        for (const auto& [type, count] : reader.record_counts)
            transcript_ << reader.name << "| " << count << " x " << type << "\n";
        if (reader.closed_now) transcript_ << reader.name << ": closed\n";
        reader.lines.clear();
        reader.record_counts.clear();
        reader.closed_now = false;
    }
    transcript_ << daemon_lines_;
    daemon_lines_.clear();
}

void ScenarioRunner::ReadUpTo(Reader& reader, const std::string& mark) {
    if (reader.client->Closed()) return;
    for (;;) {
        const std::string line = reader.client->ReadLine(kDeadline);
        if (line.empty() && reader.client->Closed()) {
            reader.closed_now = true;
            return;
        }
        if (line.empty()) throw StepError(reader.name + " received no barrier");
        if (!mark.empty() && line == mark) return;
        Take(reader, line);
    }
}

void ScenarioRunner::Take(Reader& reader, const std::string& line) {
    const std::string type = RecordType(line);
    if (!type.empty() && !ChecksumRight(line))
        problems_.push_back(reader.name + " received a record with a wrong CHK: " + Escape(line));
    if (type.empty() || !reader.summary) {
        reader.lines.push_back(Escape(Mask(line)));
        return;
    }
    for (auto& [seen, count] : reader.record_counts)
        if (seen == type) {
            ++count;
            return;
        }
    reader.record_counts.emplace_back(type, 1);
}

void ScenarioRunner::DaemonOutputUpTo(const std::string& mark) {
    ChildProcess& process = daemon_->Process();
    const auto mark_at = [&] {
        return mark.empty() ? std::string::npos : process.Output().find(mark, daemon_output_taken_);
    };
    // A daemon that exits before it prints the mark has printed all it will.
    if (!mark.empty() &&
        !WaitUntil([&] { return mark_at() != std::string::npos || !DaemonRunning(); }, kDeadline))
        throw StepError("the daemon printed no barrier");
    const std::string& output = process.Output();
    const std::size_t at = mark_at();
    const std::size_t end = at == std::string::npos ? output.size() : at;
    std::istringstream lines(output.substr(daemon_output_taken_, end - daemon_output_taken_));
    for (std::string line; std::getline(lines, line);)
        daemon_lines_ += (line.empty() ? "daemon|" : "daemon| ") + Escape(line) + "\n";
    daemon_output_taken_ = at == std::string::npos ? end : end + mark.size();
}

ScenarioRunner::Reader* ScenarioRunner::Find(const std::string& name) {
    for (Reader& reader : readers_)
        if (reader.name == name) return &reader;
    return nullptr;
}
