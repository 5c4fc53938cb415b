#include "borealis/dsp/dsp_device.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "borealis/dsp/dsp_words.h"
#include "borealis/platform/linux_platform.h"
#include "borealis/platform/sim_platform.h"
#include "common/socket.h"
#include "tests/borealis/dsp/recording_listener.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/error_text.h"
#include "tests/support/pump.h"
#include "tests/support/temp_root.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Events = std::vector<std::string>;

// A frame as the driver delivers it (code, length, payload, every word
// little-endian) after an arrival time of 0: the scenarios pin how arrival
// times are read, through the record times.
Bytes Frame(std::uint16_t cmd, const std::vector<std::uint16_t>& words) {
    std::vector<std::uint16_t> all = {0, 0, 0, 0, cmd, static_cast<std::uint16_t>(words.size())};
    all.insert(all.end(), words.begin(), words.end());
    Bytes bytes;
    for (std::uint16_t w : all)
        bytes.insert(bytes.end(), {std::uint8_t(w & 0xFF), std::uint8_t(w >> 8)});
    return bytes;
}

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Socket Listening(const std::string& path) {
    Socket socket(AF_UNIX, SOCK_SEQPACKET, 0);
    socket.Bind(SocketAddress(path));
    socket.Listen(1);
    return socket;
}

// A device under a simulated root, connected to the processor's end of its
// SOCK_SEQPACKET socket: one packet is what one read of the device returns
// or one write gives it.
struct Connected {
    TempRoot root;
    SimPlatform platform{root.path(), 4410};
    Socket listening = Listening(root / "/dev/dsp4410");
    DSPDevice device{platform};
    Socket processor = listening.Accept();
    RecordingListener listener;
    Connected() { device.SetListener(&listener); }

    void Send(const Bytes& packet) {
        EXPECT_EQ(processor.Write(packet.data(), packet.size()), packet.size());
    }
    // One packet written by the device, running the loop meanwhile; empty
    // when none came before the deadline.
    Bytes Receive() {
        Bytes packet(65536);
        ssize_t n = -1;
        PumpUntil([&] {
            return (n = ::recv(processor.GetFd(), packet.data(), packet.size(), MSG_DONTWAIT)) >= 0;
        });
        packet.resize(n < 0 ? 0 : n);
        return packet;
    }
    // Sends `packet` and then a pong as a marker; returns the events that
    // came before the marker's.
    Events Deliver(const Bytes& packet) {
        listener.events.clear();
        Send(packet);
        Send(Frame(2, {}));
        EXPECT_TRUE(PumpUntil(
            [&] { return !listener.events.empty() && listener.events.back() == "pong"; }));
        Events events = listener.events;
        if (!events.empty()) events.pop_back();  // the marker's
        return events;
    }
};

TEST(DSPDevice, ParsesEachReadOnItsOwnAndDropsIncompleteTails) {
    Connected c;
    const Bytes frame = Frame(3, {'H', 'i'});
    const Bytes half = Bytes(frame.begin(), frame.begin() + frame.size() / 2);
    const struct {
        const char* what;
        Bytes packet;
        Events expected;
    } reads[] = {
        {"first read after opening", frame, {}},
        {"11 bytes", Bytes(11, 0), {}},
        {"one and a half frames", frame + half, {"dsp Hi"}},
        {"empty payload", Frame(24, {}), {"code24"}},
        {"two frames", Frame(2, {}) + frame, {"pong", "dsp Hi"}},
        {"odd trailing byte", frame + Bytes(1, 0), {"dsp Hi"}},
    };
    for (const auto& read : reads) EXPECT_EQ(read.expected, c.Deliver(read.packet)) << read.what;
}

TEST(DSPDevice, WritesQueuedFramesInOneWriteInOrder) {
    Connected c;
    const struct {
        std::function<void(DSPDevice&)> send;
        Bytes expected;
    } senders[] = {
        // The other requests are in the scenarios' listings of what the
        // processor received.
        {[](DSPDevice& d) { d.LockLaserTemp(FloatFromBits(0x12345678)); },
         Frame(17, {0x1234, 0x5678})},
        {[](DSPDevice& d) { d.SetOffsets(-2, 3, 4); }, Frame(26, {0xFFFE, 3, 4})},
    };
    Bytes expected;
    for (const auto& sender : senders) {
        sender.send(c.device);
        expected = expected + sender.expected;
    }
    EXPECT_EQ(POLLIN | POLLOUT, c.device.GetEvents());
    EXPECT_EQ(expected, c.Receive());
    EXPECT_EQ(0u, c.device.QueuedWords());
    EXPECT_EQ(POLLIN, c.device.GetEvents());
}

TEST(DSPDevice, PartialWriteKeepsOutputEventUntilQueueIsEmpty) {
    // A FIFO takes the place of the analyzer's device; a one-page pipe makes
    // every write of the large queue partial.
    TempRoot root(false);
    const std::string path = root / "/dsp4410";
    ASSERT_EQ(0, ::mkfifo(path.c_str(), 0600));
    int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    LinuxPlatform analyzer;
    DSPDevice device(analyzer, path);
    ASSERT_GT(::fcntl(device.GetFd(), F_SETPIPE_SZ, 4096), 0);
    ASSERT_EQ(0, ::fcntl(device.GetFd(), F_SETFL, ::fcntl(device.GetFd(), F_GETFL) | O_NONBLOCK));

    Bytes expected, received;
    const std::vector<std::uint16_t> payload(1000, 0xABCD);
    for (std::uint16_t cmd = 1; cmd <= 8; ++cmd) {
        device.Send(cmd, payload.data(), 1000);
        expected = expected + Frame(cmd, payload);
    }
    auto drain = [&] {
        Bytes chunk(65536);
        for (ssize_t n; (n = ::read(reader, chunk.data(), chunk.size())) > 0;)
            received.insert(received.end(), chunk.begin(), chunk.begin() + n);
    };
    int writes = 0;
    for (; device.QueuedWords() > 0 && writes < 100; ++writes) {
        drain();  // before each turn of the loop, so that the device only writes
        ASSERT_EQ(POLLIN | POLLOUT, device.GetEvents());
        PollProcessor::Instance().Poll(1000);
    }
    drain();
    ::close(reader);
    EXPECT_GT(writes, 3);
    EXPECT_EQ(POLLIN, device.GetEvents());
    EXPECT_EQ(expected, received);
}

TEST(DSPDevice, ReportsHandlerErrorsAndGoesOn) {
    Connected c;
    struct Throwing : RecordingListener {
        void GotDSPMessage(std::uint32_t, std::uint32_t, const std::string& t) override {
            throw std::runtime_error("no room for " + t);
        }
    } throwing;
    c.device.SetListener(&throwing);
    CaptureStdout out;
    // A failing callback loses the rest of its read, not the next one.
    c.Send(Frame(2, {}));  // the first read, discarded
    c.Send(Frame(3, {'x'}) + Frame(2, {}));
    c.Send(Frame(24, {}));
    ASSERT_TRUE(PumpUntil([&] { return !throwing.events.empty(); }));
    EXPECT_EQ(Events{"code24"}, throwing.events);

    // A write the socket refuses: the queue stays for the next try.
    int small = 4096;
    ASSERT_EQ(0, ::setsockopt(c.device.GetFd(), SOL_SOCKET, SO_SNDBUF, &small, sizeof small));
    std::vector<std::uint16_t> big(DSPDevice::kBufferWords, 1);
    c.device.Send(1, big.data(), static_cast<std::uint16_t>(big.size()));
    ASSERT_TRUE(PumpUntil([&] { return out.Text().find("HandleWrite") != std::string::npos; }));
    // The refused write is printed again at every turn of the loop.
    EXPECT_EQ(
        0u,
        out.Text().find(
            "DSPDevice::HandleRead(): ERROR: no room for x\n"
            "DSPDevice::HandleWrite(): ERROR: StreamFileBase: error in Write: Message too long\n"))
        << out.Text();
    EXPECT_EQ(DSPDevice::kBufferWords + 6, c.device.QueuedWords());
    EXPECT_EQ(POLLIN | POLLOUT, c.device.GetEvents());
    c.device.SetListener(nullptr);
}

TEST(DSPDevice, OpeningAMissingDeviceFails) {
    TempRoot root;
    SimPlatform platform(root.path(), 4410);
    EXPECT_EQ(
        "StreamFile: Unable to open " + root.path() + "/dev/dsp4410: No such file or directory",
        ErrorText([&] { DSPDevice device(platform); }));
}

// What the requests write is in the start-up test and the servo scenarios.
TEST(DSPDevice, CpldRequestsFailWithoutTheSimulatedRegisterFiles) {
    Connected c;
    EXPECT_EQ("Unable to start CPLD clock: No such file or directory",
              ErrorText([&] { c.device.StartCpldClock(); }));
    EXPECT_EQ("Unable to set CPLD clock_yz register: No such file or directory",
              ErrorText([&] { c.device.SetClockYz(1); }));
}

TEST(DSPDevice, CpldRequestsOnTheAnalyzerGoToTheDevice) {
    // A plain file takes the place of the device: the driver's requests fail
    // on it, after root rights were gained (or refused) and given back.
#ifdef BOREALIS_UNDER_EMULATION
    GTEST_SKIP() << "qemu-arm passes only the ioctl requests it knows on to the kernel; "
                    "the driver's own requests fail there with ENOSYS";
#endif
    TempRoot root(false);
    root.WriteFile("/dsp4410", "");
    LinuxPlatform analyzer;
    DSPDevice device(analyzer, root / "/dsp4410");
    const uid_t user = ::geteuid();
    const std::string refused = "Unable to gain super user priviledges: Operation not permitted";
    EXPECT_EQ(user == 0 ? "Unable to start CPLD clock: Inappropriate ioctl for device" : refused,
              ErrorText([&] { device.StartCpldClock(); }));
    EXPECT_EQ(user == 0 ? "Unable to set CPLD clock_yz register: Inappropriate ioctl for device"
                        : refused,
              ErrorText([&] { device.SetClockYz(32768); }));
    EXPECT_EQ(user, ::geteuid());
}

}  // namespace
