// Clients that push the daemon's bounds: abusive requests, hundreds of
// clients at once, connections that come and go by the thousand.
#include <dirent.h>

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/analyzer.h"
#include "tests/support/line_client.h"
#include "tests/support/process.h"
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

int OpenDescriptors(pid_t pid) {
    DIR* folder = ::opendir(("/proc/" + std::to_string(pid) + "/fd").c_str());
    int count = 0;
    while (folder && ::readdir(folder)) ++count;
    if (folder) ::closedir(folder);
    return count;
}

bool IsData(const std::string& line) { return line.compare(0, 5, "DATA\t") == 0; }

// The data lines `client` receives up to the processor message `mark`.
std::vector<std::string> DataLinesUpTo(LineClient& client, const std::string& mark) {
    const std::string mark_line = "DATAMSG\tMessage from DSP: " + mark + "\n";
    std::vector<std::string> lines;
    for (std::string line; !(line = client.ReadLine()).empty() && line != mark_line;)
        if (IsData(line)) lines.push_back(line);
    return lines;
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
    TempRoot root;
    SimulatedAnalyzer sim(root, {"--manual"});
    const unsigned short port = UniqueTestPort();
    DaemonUnderTest daemon(root, port);
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
    TempRoot root;
    SimulatedAnalyzer sim(root, {"--manual"});
    const unsigned short port = UniqueTestPort();
    DaemonUnderTest daemon(root, port);
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
    for (std::size_t i = 0; i < received[0].size(); ++i)
        ASSERT_EQ(received[0][i].substr(0, received[0][i].find('\t', 5)),
                  "DATA\t" + std::to_string(3025 + 25 * i));
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
    TempRoot root;
    SimulatedAnalyzer sim(root, {"--manual"});
    const unsigned short port = UniqueTestPort();
    DaemonUnderTest daemon(root, port);
    ASSERT_TRUE(daemon.Ready());
    const pid_t pid = daemon.Process().pid();
    const int before = OpenDescriptors(pid);
    for (int i = 0; i < 1000; ++i) ASSERT_TRUE(LineClient(port).Connected()) << i;
    // The last client closed is released at the next connection.
    LineClient last(port);
    ASSERT_FALSE(last.ReadLine().empty());
    EXPECT_TRUE(WaitUntil([&] { return OpenDescriptors(pid) == before + 1; }))
        << OpenDescriptors(pid) << " descriptors, " << before << " before";
}

}  // namespace
