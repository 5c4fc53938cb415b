#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "borealis/dsp/dsp_words.h"
#include "sim/frame_codec.h"
#include "sim/zone_files.h"
#include "tests/support/analyzer.h"
#include "tests/support/temp_root.h"

namespace {

int Connect(const std::string& path, int type) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    int fd = ::socket(AF_UNIX, type | SOCK_CLOEXEC, 0);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        ADD_FAILURE() << path;
    return fd;
}

bool Readable(int fd) {
    pollfd entry{fd, POLLIN, 0};
    return ::poll(&entry, 1, 5000) == 1;
}

// What arrives on `fd` up to and including `end`, or until nothing more
// comes.
std::string ReadUpTo(int fd, const std::string& end) {
    std::string text;
    char buffer[4096];
    ssize_t got;
    while (text.find(end) == std::string::npos && Readable(fd) &&
           (got = ::read(fd, buffer, sizeof buffer)) > 0)
        text.append(buffer, static_cast<std::size_t>(got));
    return text;
}

// One packet, whole.
std::string ReadPacket(int fd) {
    char packet[65536];
    ssize_t got = Readable(fd) ? ::recv(fd, packet, sizeof packet, 0) : -1;
    return got > 0 ? std::string(packet, static_cast<std::size_t>(got)) : "";
}

std::uint16_t Little16(const std::string& bytes, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes.at(at)) |
                                      static_cast<unsigned char>(bytes.at(at + 1)) << 8);
}

std::string Text(const std::vector<std::uint16_t>& words) {
    return std::string(words.begin(), words.end());
}

// The 32-bit field `n` of a payload (high half first).
std::uint32_t Field(const Frame& frame, int n) { return JoinWords(&frame.words.at(2 * n)); }

// vela-sim under a root of its own, ready to be talked to.
class VelaSim : public ::testing::Test {
protected:
    void Start(const std::vector<std::string>& options = {}) {
        sim_ = std::make_unique<SimulatedAnalyzer>(root_, options);
        EXPECT_EQ(sim_->Process().Output(), "vela-sim: ready " + root_.path() + "\n");
    }
    std::string Ask(const std::string& command) { return sim_->Ask(command); }
    // A command whose answer waits for what the test does meanwhile.
    std::future<std::string> AskLater(const std::string& command) {
        return std::async(std::launch::async, [this, command] { return sim_->Ask(command); });
    }

    // One packet from the processor device holding one frame, decoded; its
    // arrival time must be the system time of sending.
    Frame ReadFrame(int fd) {
        const std::string packet = ReadPacket(fd);
        EXPECT_GE(packet.size(), 12u);
        if (packet.size() < 12) return {};
        auto little32 = [&](std::size_t at) {
            return Little16(packet, at) | std::uint32_t{Little16(packet, at + 2)} << 16;
        };
        EXPECT_NEAR(static_cast<double>(little32(0)), static_cast<double>(std::time(nullptr)), 2.0);
        EXPECT_LT(little32(4), 1000000000u);
        EXPECT_EQ(packet.size(), 12u + 2 * Little16(packet, 10));
        std::vector<Frame> frames = DecodeFrames(packet);
        return frames.empty() ? Frame{} : frames[0];
    }

    TempRoot root_{false};
    std::unique_ptr<SimulatedAnalyzer> sim_;
};

TEST_F(VelaSim, BuildsTheRootAroundSeededFiles) {
    root_.WriteFile("/etc/hostname", "seeded\n");
    Start();
    EXPECT_EQ(root_.ReadFile("/etc/hostname"), "seeded\n");
    EXPECT_EQ(root_.ReadFile("/sys/bus/platform/devices/io4410/rev"), "259\n");
    EXPECT_EQ(root_.ReadFile("/etc/timezone"), "UTC\n");
    EXPECT_EQ(root_.ReadFile("/etc/localtime").substr(0, 4), "TZif");
    EXPECT_EQ(root_.ReadFile("/usr/share/zoneinfo/posix/UTC"), root_.ReadFile("/etc/localtime"));
}

// The values the records carry and the start-up text are in the scenarios,
// on the manual clock.
TEST_F(VelaSim, StartsUpThenSendsTheScenarioOnItsTickGridInRealTime) {
    Start();
    int dsp = Connect(root_ / "/dev/dsp4410", SOCK_SEQPACKET);
    EXPECT_EQ(ReadFrame(dsp).code, 24);
    EXPECT_EQ(ReadFrame(dsp).code, 4);

    std::vector<std::uint32_t> data_ticks;
    bool synchronised = false, status_seen = false;
    while (!(synchronised && status_seen && data_ticks.size() >= 3)) {
        Frame frame = ReadFrame(dsp);
        if (frame.code == 0) break;
        if (frame.code == 7) {
            ASSERT_EQ(frame.words.size(), 30u);
            data_ticks.push_back(Field(frame, 0));
        } else if (frame.code == 25) {
            // Never behind a record already sent.
            ASSERT_EQ(frame.words.size(), 2u);
            EXPECT_GE(Field(frame, 0), data_ticks.empty() ? 0 : data_ticks.back());
            synchronised = true;
        } else if (frame.code == 6) {
            status_seen = frame.words.size() == 28;
        }
    }
    ASSERT_GE(data_ticks.size(), 3u);
    for (std::size_t i = 1; i < data_ticks.size(); ++i)
        EXPECT_EQ(data_ticks[i] - data_ticks[i - 1], 25u);
    ::close(dsp);
}

// Control errors, the device served again and the motor's reports are in
// the sim_control and upkeep scenarios.
TEST_F(VelaSim, AnswersEveryFrameOfOneWriteAndRemovesItsSocketsWhenStopped) {
    Start();
    int dsp = Connect(root_ / "/dev/dsp4410", SOCK_SEQPACKET);
    // A test data request, a laser set point and a code the processor does
    // not know, in one write.
    const std::uint8_t request[] = {0, 0, 0, 0, 0, 0, 0,  0, 29, 0, 0,    0,    0, 0,
                                    0, 0, 0, 0, 0, 0, 17, 0, 2,  0, 0xF4, 0x41, 0, 0,
                                    0, 0, 0, 0, 0, 0, 0,  0, 99, 0, 0,    0};
    ASSERT_EQ(::send(dsp, request, sizeof request, 0), static_cast<ssize_t>(sizeof request));
    EXPECT_EQ(Ask("message Hi there"), "ok\n");
    bool test_data = false, message = false, bad_command = false;
    while (!(test_data && message && bad_command)) {
        Frame frame = ReadFrame(dsp);
        if (frame.code == 0) break;
        if (frame.code == 30) test_data = frame.words.size() == 22;
        if (frame.code == 3) message = Text(frame.words) == "Hi there";
        if (frame.code == 5) bad_command = Text(frame.words) == "code 99";
    }
    EXPECT_TRUE(test_data && message && bad_command);
    EXPECT_EQ(Ask("received"), "29\n17 16884 0\n99\nend\n");

    ::close(dsp);

    sim_->Process().Signal(SIGTERM);
    EXPECT_EQ(sim_->Process().Wait(), 0);
    EXPECT_EQ(::access((root_ / "/dev/dsp4410").c_str(), F_OK), -1);
    EXPECT_EQ(::access((root_ / "/run/vela-sim.ctl").c_str(), F_OK), -1);
}

// What each fault does to the records is pinned by the fault scenarios; a
// burst alone looks there as if nothing happened, so here it must leave as
// one packet of whole frames on the tick grid.
TEST_F(VelaSim, BurstFaultSendsDueDataFramesInOnePacket) {
    Start();
    int dsp = Connect(root_ / "/dev/dsp4410", SOCK_SEQPACKET);
    EXPECT_EQ(Ask("fault burst 3"), "ok\n");
    std::vector<Frame> frames;
    for (int packets = 0; packets < 400 && frames.size() <= 1; ++packets)
        frames = DecodeFrames(ReadPacket(dsp));
    std::vector<std::uint32_t> ticks;
    for (const Frame& frame : frames)
        if (frame.code == 7) ticks.push_back(Field(frame, 0));
    ASSERT_EQ(ticks.size(), 3u);
    EXPECT_EQ(ticks[2] - ticks[1], 25u);
    EXPECT_EQ(ticks[1] - ticks[0], 25u);
    ::close(dsp);
}

TEST_F(VelaSim, BoxReportsOnTheDriversClockAndKeepsWhatTheDaemonSends) {
    // The test plays the daemon's port.
    int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 1), 0);
    ASSERT_EQ(::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length), 0);
    Start({"--manual", "--port", std::to_string(ntohs(address.sin_port))});

    for (const char* command : {"box set aux5 0.1", "box set USB 2", "box set CAPACITY 7.5",
                                "box rate 2", "box model Base Unit 7", "run 250"})
        EXPECT_EQ(Ask(command), "ok\n") << command;
    // Connected once greeted.
    auto connecting = AskLater("box connect");
    int daemon = ::accept(listener, nullptr, nullptr);
    ASSERT_GE(daemon, 0);
    const std::string greeting = "DATAEVENT\tMODEL\tVELA\nDATADACSH\tSECONDS\n";
    ASSERT_EQ(::write(daemon, greeting.data(), greeting.size()),
              static_cast<ssize_t>(greeting.size()));
    EXPECT_EQ(connecting.get(), "ok\n");
    EXPECT_EQ(Ask("box received DATADACS"), "DATADACSH\tSECONDS\nend\n");

    // The first report with the next run, then two a second, stamped with
    // the simulated time.
    EXPECT_EQ(Ask("run 1000"), "ok\n");
    const std::string report = " 2 7.5 0 0.1 0 0 0 Base Unit 7\n";
    EXPECT_EQ(ReadUpTo(daemon, "1767225601 250000000" + report),
              "Base 1767225600 250000000" + report + "Base 1767225600 750000000" + report +
                  "Base 1767225601 250000000" + report);

    // Let go once the daemon has closed its end.
    auto disconnecting = AskLater("box disconnect");
    EXPECT_EQ(ReadUpTo(daemon, "\n"), "");
    ::close(daemon);
    EXPECT_EQ(disconnecting.get(), "ok\n");
    ::close(listener);
}

TEST(ZoneFiles, BuiltInZonesFollowDaylightSavingWhenTheHostHasNone) {
    TempRoot root(false);
    InstallZones(root / "/zones", root / "/localtime", root / "/no-host-zones");
    const struct {
        const char* zone;
        std::time_t when;
        long offset;
    } cases[] = {{"UTC", 1720000000, 0},
                 {"Europe/Berlin", 1720000000, 7200},  // July 2024: summer time
                 {"Europe/Berlin", 1705000000, 3600},  // January 2024
                 {"America/New_York", 1720000000, -14400}};
    for (const auto& c : cases) {
        ::setenv("TZ", (":" + root / "/zones/" + c.zone).c_str(), 1);
        ::tzset();
        std::tm local{};
        ::localtime_r(&c.when, &local);
        EXPECT_EQ(local.tm_gmtoff, c.offset) << c.zone;
    }
    EXPECT_EQ(root.ReadFile("/localtime"), root.ReadFile("/zones/UTC"));
    ::unsetenv("TZ");  // local time as the other tests expect it
    ::tzset();
}

}  // namespace
