// The analyzer's records and data clock carry on past 2038-01-19 03:14:07
// UTC, the last second a signed 32-bit time can hold.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/analyzer.h"
#include "tests/support/line_client.h"
#include "tests/support/temp_root.h"

namespace {

const std::string kAck = "<norvance><vela><ack>true</ack></vela></norvance>\n";

// The third field of a record: its SECONDS.
long long Seconds(const std::string& line) {
    const std::string::size_type start = line.find('\t', line.find('\t') + 1) + 1;
    return std::stoll(line.substr(start, line.find('\t', start) - start));
}

TEST(Year2038, RecordsAndTheDataClockRunOnPastTheLastSigned32BitSecond) {
    TempRoot root;
    // The processor's frames arrive from 30 s before the turn on.
    SimulatedAnalyzer sim(root, {"--manual", "--epoch", "2147483618"});
    const unsigned short port = UniqueTestPort();
    DaemonUnderTest daemon(root, port);
    ASSERT_TRUE(daemon.Ready());
    LineClient client(port);
    client.Send("<norvance><vela><output><dataclock>true</dataclock></output></vela></norvance>\n");
    ASSERT_EQ(client.ReadLineStartingWith(kAck), kAck);
    ASSERT_EQ(sim.Ask("run 60000"), "ok\n");
    ASSERT_EQ(sim.Ask("message end"), "ok\n");

    std::vector<long long> data_seconds;
    std::vector<std::string> clock_lines;
    for (std::string line; !(line = client.ReadLine()).empty() &&
                           line != "DATAMSG\tMessage from DSP: end\n";) {
        if (line.compare(0, 5, "DATA\t") == 0) data_seconds.push_back(Seconds(line));
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
