// A daemon killed at any moment of a configuration save starts again with
// the old file or the new one, never a broken one.
#include <signal.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "tests/support/analyzer.h"
#include "tests/support/line_client.h"
#include "tests/support/temp_root.h"

namespace {

const std::string kAck = "<norvance><vela><ack>true</ack></vela></norvance>\n";
const std::string kRates[] = {
    "<norvance><vela><output><rate>10</rate></output></vela></norvance>\n",
    "<norvance><vela><output><rate>20</rate></output></vela></norvance>\n",
};

TEST(CrashSafeSave, AKilledDaemonLeavesTheOldFileOrTheNewOne) {
    TempRoot root;
    SimulatedAnalyzer sim(root, {"--manual"});
    // The two texts of the file, as the daemon saves them.
    std::set<std::string> states;
    {
        const unsigned short port = UniqueTestPort();
        DaemonUnderTest daemon(root, port);
        ASSERT_TRUE(daemon.Ready());
        LineClient client(port);
        for (const std::string& rate : kRates) {
            client.Send(rate);
            ASSERT_EQ(client.ReadLineStartingWith(kAck), kAck);
            states.insert(root.ReadFile("/etc/vela.conf"));
        }
    }
    ASSERT_EQ(states.size(), 2u);

    // Each daemon is killed after a different number of answers, while the
    // saves of the requests behind them go on.
    std::string requests;
    for (int i = 0; i < 100; ++i) requests += kRates[i % 2];
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

}  // namespace
