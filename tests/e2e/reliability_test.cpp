// What an analyzer left alone for months must survive: clients that push
// the daemon's bounds, hundreds of clients at once, connections that come
// and go by the thousand, a client that never reads, a kill in the middle
// of a save, the year 2038.
#include <signal.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/support/analyzer.h"
#include "tests/support/line_client.h"
#include "tests/support/process.h"
#include "tests/support/tcp_end.h"
#include "tests/support/temp_root.h"

namespace {

const std::string kAck = "<norvance><vela><ack>true</ack></vela></norvance>\n";
const std::string kAskAck = "<norvance><vela><ack>&query;</ack></vela></norvance>\n";

std::string Repeat(const std::string& text, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i) all += text;
    return all;
}

// The first line of the daemon's output that starts with `prefix`, once it
// has come; empty when it did not.
std::string DaemonLine(DaemonUnderTest& daemon, const std::string& prefix) {
    std::string::size_type at = std::string::npos;
    WaitUntil([&] { return (at = daemon.Process().Output().find(prefix)) != std::string::npos; });
    if (at == std::string::npos) return "";
    const std::string& output = daemon.Process().Output();
    return output.substr(at, output.find('\n', at) - at);
}

// A figure of /proc/<pid>/status, in kB.
long StatusKb(pid_t pid, const std::string& field) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string name; status >> name;) {
        long value = 0;
        if (name == field + ":" && status >> value) return value;
    }
    return -1;
}

long OpenDescriptors(pid_t pid) {
    const std::string folder = "/proc/" + std::to_string(pid) + "/fd";
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

bool IsData(const std::string& line) { return line.compare(0, 5, "DATA\t") == 0; }

// The line that passes the processor's text message `mark` on to clients.
std::string MarkLine(const std::string& mark) {
    return "DATAMSG\tMessage from DSP: " + mark + "\n";
}

// The data lines `client` receives up to the processor message `mark`.
std::vector<std::string> DataLinesUpTo(LineClient& client, const std::string& mark) {
    std::vector<std::string> lines;
    for (std::string line; !(line = client.ReadLine()).empty() && line != MarkLine(mark);)
        if (IsData(line)) lines.push_back(line);
    return lines;
}

// Every line from the first data record after the data clock's acquisition
// on, 25 ticks apart.
void ExpectEveryRecord(const std::vector<std::string>& received) {
    for (std::size_t i = 0; i < received.size(); ++i)
        ASSERT_EQ(received[i].substr(0, received[i].find('\t', 5)),
                  "DATA\t" + std::to_string(3025 + 25 * i));
}

TEST(Bounds, AbusiveClientsAreEndedOrRefusedAndTheOthersServedOn) {
    const struct {
        const char* what;
        std::string request;
        const char* daemon_says;  // the start of the daemon's line
        bool closed;              // or refused, and answering after it
    } cases[] = {
        {"an endless line", std::string(1048576 + 8192, 'x'),
         "SocketClient: line longer than 1048576 bytes from ", true},
        {"1001 subscriptions", Repeat("<norvance><vela>&query_changes;</vela></norvance>\n", 1001),
         "SocketClient: more than 1000 subscriptions from ", true},
        {"the whole document 1000 times", "<norvance>" + Repeat("&query;", 1000) + "</norvance>\n",
         "GotRequest: answer longer than 1572864 bytes; not sent", false},
        {"300 000 levels of nesting", "<norvance><vela>" + Repeat("<a>", 300000) + "\n", "", false},
        {"200 000 entities", "<norvance><vela><output>" + Repeat("&amp;", 200000) + "\n", "",
         false},
    };
    AnalyzerUnderTest analyzer;
    auto& [root, sim, port, daemon] = analyzer;
    ASSERT_TRUE(daemon.Ready());
    LineClient bystander(port);
    for (const auto& c : cases) {
        LineClient client(port);
        ASSERT_FALSE(client.ReadLine().empty()) << c.what;
        client.Send(c.request);
        if (c.closed) {
            EXPECT_TRUE(client.WaitClosed(std::chrono::seconds(60))) << c.what;
        } else {
            client.Send(kAskAck);
            EXPECT_EQ(client.ReadLineStartingWith(kAck, std::chrono::seconds(60)), kAck) << c.what;
        }
        const std::string line = DaemonLine(daemon, c.daemon_says);
        EXPECT_EQ(line.substr(0, std::string(c.daemon_says).size()), c.daemon_says) << c.what;
        if (c.closed) {
            EXPECT_EQ(line.substr(line.size() - 9), "; closing") << line;
        }
    }
    bystander.Send(kAskAck);
    EXPECT_EQ(bystander.ReadLineStartingWith(kAck), kAck);
}

// 256 clients while records flow at 40 a second: one never reads and asks
// for the whole document a thousand times; every other gets every record,
// and the daemon's memory grows by little more than the silent client's
// limit.
TEST(Bounds, ManyClientsOneSilentEveryReaderGetsEveryRecord) {
    AnalyzerUnderTest analyzer;
    auto& [root, sim, port, daemon] = analyzer;
    ASSERT_TRUE(daemon.Ready());
    const pid_t pid = daemon.Process().pid();
    const long rss_before = StatusKb(pid, "VmRSS");

    LineClient silent(port, 4096);
    silent.Send(Repeat("<norvance>&query;</norvance>\n", 1000));
    std::vector<std::unique_ptr<LineClient>> readers;
    for (int i = 0; i < 255; ++i) {
        readers.push_back(std::make_unique<LineClient>(port));
        ASSERT_FALSE(readers.back()->ReadLine().empty()) << "client " << i;
    }
    const int seconds = 30;
    std::vector<std::vector<std::string>> received(readers.size());
    for (int second = 0; second < seconds; ++second) {
        ASSERT_EQ(sim.Ask("run 1000"), "ok\n");
        const std::string mark = "second-" + std::to_string(second);
        ASSERT_EQ(sim.Ask("message " + mark), "ok\n");
        for (std::size_t i = 0; i < readers.size(); ++i)
            for (const std::string& line : DataLinesUpTo(*readers[i], mark))
                received[i].push_back(line);
    }
    const long high_water = StatusKb(pid, "VmHWM");

    // Forty records a second from the first after the data clock's
    // acquisition, 25 ticks apart, the same for every reader.
    ASSERT_GE(received[0].size(), std::size_t(40 * (seconds - 4)));
    ExpectEveryRecord(received[0]);
    for (std::size_t i = 1; i < received.size(); ++i)
        ASSERT_EQ(received[i], received[0]) << "client " << i;
    std::cout << "256 clients, " << received[0].size() << " records each; VmRSS before "
              << rss_before << " kB, VmHWM after " << high_water << " kB" << std::endl;
#if !defined(BOREALIS_UNDER_EMULATION) && !defined(__SANITIZE_ADDRESS__)
    // The silent client holds at most 1.5 MiB and one answer; each reader
    // little. (The emulator's and the sanitizer's own memory are no measure
    // of the daemon's.)
    EXPECT_LT(high_water - rss_before, 8 * 1024);
#endif
}

TEST(Bounds, ConnectionsThatComeAndGoLeaveNoDescriptorBehind) {
    AnalyzerUnderTest analyzer;
    auto& [root, sim, port, daemon] = analyzer;
    ASSERT_TRUE(daemon.Ready());
    const pid_t pid = daemon.Process().pid();
    const long before = OpenDescriptors(pid);
    for (int i = 0; i < 1000; ++i) ASSERT_TRUE(LineClient(port).Connected()) << i;
    // Once this one is greeted, every earlier connection has been accepted.
    LineClient last(port);
    ASSERT_FALSE(last.ReadLine().empty());
    EXPECT_TRUE(WaitUntil([&] { return OpenDescriptors(pid) == before + 1; }))
        << OpenDescriptors(pid) << " descriptors, " << before << " before";
}

// A client that never reads, beside one that reads everything: the silent
// one loses records once the daemon holds its limit of them for it.
TEST(Bounds, SlowClientLosesRecordsAtItsLimitWhileAnotherGetsEvery) {
    const std::size_t data_limit = 1048576;
    AnalyzerUnderTest analyzer({"--manual"});
    auto& [root, sim, port, daemon] = analyzer;
    ASSERT_TRUE(daemon.Ready());
    LineClient reader(port);
    // Small buffers on the silent side, so that the daemon reaches its
    // limit sooner.
    LineClient silent(port, 4096);
    ASSERT_FALSE(reader.ReadLine().empty());
    ASSERT_FALSE(silent.ReadLine().empty());

    // A minute of records at a time, until the daemon must have dropped
    // some for the silent client: more than its limit plus what the kernel
    // holds for it.
    std::vector<std::string> received;
    std::size_t produced = 0, kernel_held = 0;
    std::string last_mark;
    for (int minute = 0; produced <= data_limit + kernel_held + 65536; ++minute) {
        ASSERT_LT(minute, 100) << "the kernel holds " << kernel_held << " bytes";
        ASSERT_EQ(sim.Ask("run 60000"), "ok\n");
        last_mark = "minute-" + std::to_string(minute);
        ASSERT_EQ(sim.Ask("message " + last_mark), "ok\n");
        for (const std::string& line : DataLinesUpTo(reader, last_mark)) {
            produced += line.size();
            received.push_back(line);
        }
        const auto sending = FindTcpEnd(port, silent.LocalPort());
        const auto receiving = FindTcpEnd(silent.LocalPort(), port);
        ASSERT_TRUE(sending && receiving);
        kernel_held = sending->send_queue + receiving->receive_queue;
    }
    ASSERT_FALSE(received.empty());
    ExpectEveryRecord(received);

    // The silent client finally gets some of the records, in order (the
    // kernel may take more of its output after the daemon began dropping, so
    // what it gets may have gaps); what the daemon kept for it meanwhile
    // stayed within the limit.
    std::size_t bytes = 0;
    std::vector<std::string> kept;
    for (std::string line; !(line = silent.ReadLine()).empty() && line != MarkLine(last_mark);) {
        bytes += line.size();
        if (IsData(line)) kept.push_back(line);
    }
    ASSERT_LT(kept.size(), received.size());
    auto next = received.begin();
    for (const std::string& line : kept) next = std::find(next, received.end(), line);
    EXPECT_NE(next, received.end()) << "every kept record was sent to the reader too, in order";
    EXPECT_LE(bytes - kernel_held, data_limit + 65536);
    reader.Send(kAskAck);
    EXPECT_EQ(reader.ReadLineStartingWith(kAck), kAck);
}

// A daemon killed at any moment of a configuration save starts again with
// the old file or the new one, never a broken one.
TEST(CrashSafeSave, AKilledDaemonLeavesTheOldFileOrTheNewOne) {
    const std::string rates[] = {
        "<norvance><vela><output><rate>10</rate></output></vela></norvance>\n",
        "<norvance><vela><output><rate>20</rate></output></vela></norvance>\n",
    };
    TempRoot root;
    SimulatedAnalyzer sim(root, {"--manual"});
    // The two texts of the file, as the daemon saves them.
    std::set<std::string> states;
    {
        const unsigned short port = UniqueTestPort();
        DaemonUnderTest daemon(root, port);
        ASSERT_TRUE(daemon.Ready());
        LineClient client(port);
        for (const std::string& rate : rates) {
            client.Send(rate);
            ASSERT_EQ(client.ReadLineStartingWith(kAck), kAck);
            states.insert(root.ReadFile("/etc/vela.conf"));
        }
    }
    ASSERT_EQ(states.size(), 2u);

    // Each daemon is killed after a different number of answers, while the
    // saves of the requests behind them go on.
    std::string requests;
    for (int i = 0; i < 100; ++i) requests += rates[i % 2];
    for (int round = 0; round < 20; ++round) {
        const unsigned short port = UniqueTestPort();
        DaemonUnderTest daemon(root, port);
        ASSERT_TRUE(daemon.Ready()) << "round " << round;
        LineClient client(port);
        client.Send(requests);
        for (int answers = 0; answers < round % 7; ++answers)
            ASSERT_EQ(client.ReadLineStartingWith(kAck), kAck);
        daemon.Process().Signal(SIGKILL);
        ASSERT_NE(daemon.Process().Wait(), -1);
        const std::string saved = root.ReadFile("/etc/vela.conf");
        ASSERT_EQ(states.count(saved), 1u) << "round " << round << ":\n" << saved;
    }
}

// The third field of a record: its SECONDS.
long long Seconds(const std::string& line) {
    const std::string::size_type start = line.find('\t', line.find('\t') + 1) + 1;
    return std::stoll(line.substr(start, line.find('\t', start) - start));
}

// The analyzer's records and data clock carry on past 2038-01-19 03:14:07
// UTC, the last second a signed 32-bit time can hold.
TEST(Year2038, RecordsAndTheDataClockRunOnPastTheLastSigned32BitSecond) {
    // The processor's frames arrive from 30 s before the turn on.
    AnalyzerUnderTest analyzer({"--manual", "--epoch", "2147483618"});
    auto& [root, sim, port, daemon] = analyzer;
    ASSERT_TRUE(daemon.Ready());
    LineClient client(port);
    client.Send("<norvance><vela><output><dataclock>true</dataclock></output></vela></norvance>\n");
    ASSERT_EQ(client.ReadLineStartingWith(kAck), kAck);
    ASSERT_EQ(sim.Ask("run 60000"), "ok\n");
    ASSERT_EQ(sim.Ask("message end"), "ok\n");

    std::vector<long long> data_seconds;
    std::vector<std::string> clock_lines;
    for (std::string line;
         !(line = client.ReadLine()).empty() && line != "DATAMSG\tMessage from DSP: end\n";) {
        if (IsData(line)) data_seconds.push_back(Seconds(line));
        if (line.compare(0, 10, "DATACLOCK\t") == 0) clock_lines.push_back(line);
    }
    // Forty records a second from the data clock's acquisition to the end,
    // their seconds counting on through the turn.
    ASSERT_GE(data_seconds.size(), 40u * 55);
    EXPECT_LT(data_seconds.front(), 2147483648);
    EXPECT_GT(data_seconds.back(), 2147483648 + 20);
    for (std::size_t i = 1; i < data_seconds.size(); ++i)
        ASSERT_TRUE(data_seconds[i] - data_seconds[i - 1] == 0 ||
                    data_seconds[i] - data_seconds[i - 1] == 1)
            << data_seconds[i - 1] << " then " << data_seconds[i];
    bool turned = false;
    for (const std::string& line : clock_lines)
        turned = turned || line.find("\t2038-01-19\t03:14:08\t") != std::string::npos;
    EXPECT_TRUE(turned) << "no data-clock record of 03:14:08 among " << clock_lines.size();
}

}  // namespace
