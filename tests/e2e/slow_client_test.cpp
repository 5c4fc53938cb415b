// A client that never reads, beside one that reads everything.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/analyzer.h"
#include "tests/support/line_client.h"
#include "tests/support/tcp_end.h"
#include "tests/support/temp_root.h"

namespace {

const std::size_t kDataLimit = 1048576;

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

TEST(SlowClient, LosesRecordsAtItsLimitWhileAnotherGetsEvery) {
    TempRoot root;
    SimulatedAnalyzer sim(root, {"--manual"});
    const unsigned short port = UniqueTestPort();
    DaemonUnderTest daemon(root, port);
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
    for (int minute = 0; produced <= kDataLimit + kernel_held + 65536; ++minute) {
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

    // The reader got every record, 25 ticks apart, from the first after
    // the data clock's acquisition on.
    ASSERT_FALSE(received.empty());
    for (std::size_t i = 0; i < received.size(); ++i)
        ASSERT_EQ(received[i].substr(0, received[i].find('\t', 5)),
                  "DATA\t" + std::to_string(3025 + 25 * i));

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
    EXPECT_LE(bytes - kernel_held, kDataLimit + 65536);

    // And it still answers.
    reader.Send("<norvance><vela><ack>&query;</ack></vela></norvance>\n");
    EXPECT_EQ(reader.ReadLineStartingWith("<norvance>"),
              "<norvance><vela><ack>true</ack></vela></norvance>\n");
}

}  // namespace
