#include "borealis/discovery/net_reset_button.h"

#include <fcntl.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "borealis/platform/linux_platform.h"
#include "borealis/platform/sim_platform.h"
#include "common/socket.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/error_text.h"
#include "tests/support/pump.h"
#include "tests/support/temp_root.h"

namespace {

using Events = std::vector<std::string>;

struct Recorder : NetResetButtonDevice::Listener {
    Events events;
    void GotDown() override { events.push_back("down"); }
    void GotUp() override { events.push_back("up"); }
    void GotLong() override { events.push_back("long"); }
};

// The driver's side of the simulated device.
Socket ListenAt(const std::string& path) {
    Socket socket(AF_UNIX, SOCK_SEQPACKET, 0);
    socket.Bind(SocketAddress(path));
    socket.Listen(1);
    return socket;
}

// A button connected to a test driver under a simulated root.
struct Connected {
    TempRoot root;
    SimPlatform platform{root.path(), 4410};
    Socket listening = ListenAt(root / "/dev/net_btn");
    NetResetButtonDevice button{platform};
    Socket driver = listening.Accept();
    Recorder recorder;

    Connected() { EXPECT_EQ(nullptr, button.SetListener(&recorder)); }
    // Sends one packet and runs the loop until the button has read it: the
    // kernel counts a packet against its sender until it is read.
    bool Send(const std::string& packet) {
        driver.Send(packet.data(), packet.size(), 0);
        return PumpUntil([&] {
            int unread = -1;
            return ::ioctl(driver.GetFd(), SIOCOUTQ, &unread) == 0 && unread == 0;
        });
    }
    Events Press(const std::string& packet) {
        recorder.events.clear();
        EXPECT_TRUE(Send(packet));
        return recorder.events;
    }
};

// Which bytes reset the network (a down) and which do nothing is in the
// button_reset scenario.
TEST(NetResetButtonDevice, ReadsTheAnalyzersDevice32BytesAtATime) {
    TempRoot root(false);
    const std::string path = root / "/net_btn";
    LinuxPlatform analyzer;
    EXPECT_EQ("StreamFile: Unable to open " + path + ": No such file or directory",
              ErrorText([&] { NetResetButtonDevice button(analyzer, path); }));
    ASSERT_EQ(0, ::mkfifo(path.c_str(), 0600));
    NetResetButtonDevice button(analyzer, path);  // opened for reading only, it would block
    Recorder recorder;
    button.SetListener(&recorder);
    const int driver = ::open(path.c_str(), O_WRONLY);
    const std::string pending = "DU" + std::string(38, 'L');
    ASSERT_EQ(40, ::write(driver, pending.data(), pending.size()));
    EXPECT_TRUE(PumpUntil([&] { return !recorder.events.empty(); }));
    EXPECT_EQ(32u, recorder.events.size());
    EXPECT_TRUE(PumpUntil([&] { return recorder.events.size() == 40; }));
    EXPECT_EQ((Events{"down", "up", "long"}),
              Events(recorder.events.begin(), recorder.events.begin() + 3));
    ::close(driver);
}

TEST(NetResetButtonDevice, PrintsFailuresAndKeepsReading) {
    {
        TempRoot root;
        SimPlatform platform(root.path(), 4410);
        EXPECT_EQ(
            "StreamFile: Unable to open " + root.path() + "/dev/net_btn: No such file or directory",
            ErrorText([&] { NetResetButtonDevice button(platform); }));
    }
    Connected c;
    struct Failing : Recorder {
        void GotDown() override { throw std::runtime_error("cannot switch to DHCP"); }
    } failing;
    c.button.SetListener(&failing);
    CaptureStdout out;
    // A failing listener loses the rest of its read, not the next one.
    EXPECT_TRUE(c.Send("DU"));
    EXPECT_EQ(Events{}, failing.events);
    EXPECT_EQ("NetResetButtonDevice::HandleRead(): ERROR: cannot switch to DHCP\n", out.Text());
    c.button.SetListener(&c.recorder);
    EXPECT_EQ(Events{"up"}, c.Press("U"));
}

}  // namespace
