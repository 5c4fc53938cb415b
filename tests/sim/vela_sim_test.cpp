#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "borealis/dsp/dsp_words.h"
#include "sim/zone_files.h"
#include "tests/support/process.h"
#include "tests/support/temp_root.h"

namespace {

using Words = std::vector<std::uint16_t>;

struct ReceivedFrame {
    std::uint16_t code = 0;
    Words words;
};

int Connect(const std::string& path, int type) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    int fd = ::socket(AF_UNIX, type | SOCK_CLOEXEC, 0);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) ADD_FAILURE() << path;
    return fd;
}

bool Readable(int fd) {
    pollfd entry{fd, POLLIN, 0};
    return ::poll(&entry, 1, 5000) == 1;
}

// vela-sim under a root of its own, ready to be talked to.
class VelaSim : public ::testing::Test {
protected:
    void Start() {
        sim_ = std::make_unique<ChildProcess>(VELA_SIM_EXE, std::vector<std::string>{"--root", root_.path()});
        ASSERT_TRUE(WaitUntil([&] { return sim_->Output() == "vela-sim: ready " + root_.path() + "\n"; }))
            << sim_->Output();
    }

    // The answer to one control command: one line, or lines up to "end".
    std::string Ask(const std::string& command) {
        int fd = Connect(root_ / "/run/vela-sim.ctl", SOCK_STREAM);
        std::string line = command + "\n", answer;
        EXPECT_EQ(::write(fd, line.data(), line.size()), static_cast<ssize_t>(line.size()));
        const bool listing = command == "received" || command == "mirror";
        char buffer[4096];
        ssize_t got;
        while ((listing ? answer.find("end\n") : answer.find('\n')) == std::string::npos && Readable(fd) &&
               (got = ::read(fd, buffer, sizeof buffer)) > 0)
            answer.append(buffer, static_cast<std::size_t>(got));
        ::close(fd);
        return answer;
    }

    // One packet from the processor device, decoded; its arrival time must
    // be the system time of sending.
    ReceivedFrame ReadFrame(int fd) {
        std::uint8_t packet[1024];
        ssize_t got = Readable(fd) ? ::recv(fd, packet, sizeof packet, 0) : -1;
        EXPECT_GE(got, 12);
        if (got < 12) return {};
        auto little = [&](int at, int bytes) {
            std::uint32_t value = 0;
            for (int i = bytes - 1; i >= 0; --i) value = value << 8 | packet[at + i];
            return value;
        };
        EXPECT_NEAR(static_cast<double>(little(0, 4)), static_cast<double>(std::time(nullptr)), 2.0);
        EXPECT_LT(little(4, 4), 1000000000u);
        ReceivedFrame frame{static_cast<std::uint16_t>(little(8, 2)), {}};
        EXPECT_EQ(got, 12 + 2 * static_cast<ssize_t>(little(10, 2)));
        for (int at = 12; at < got; at += 2) frame.words.push_back(static_cast<std::uint16_t>(little(at, 2)));
        return frame;
    }

    TempRoot root_{false};
    std::unique_ptr<ChildProcess> sim_;
};

std::string Text(const Words& words) { return std::string(words.begin(), words.end()); }

// The 32-bit field `n` of a payload (high half first).
std::uint32_t Field(const Words& words, int n) { return JoinWords(&words.at(2 * n)); }

TEST_F(VelaSim, BuildsTheRootAroundSeededFiles) {
    root_.WriteFile("/etc/hostname", "seeded\n");
    Start();
    EXPECT_EQ(root_.ReadFile("/etc/hostname"), "seeded\n");
    EXPECT_EQ(root_.ReadFile("/sys/bus/platform/devices/io4410/rev"), "259\n");
    EXPECT_EQ(root_.ReadFile("/sys/devices/platform/io4410/clock_yz"), "32768\n");
    EXPECT_EQ(root_.ReadFile("/etc/timezone"), "UTC\n");
    EXPECT_EQ(root_.ReadFile("/etc/localtime").substr(0, 4), "TZif");
    EXPECT_EQ(root_.ReadFile("/usr/share/zoneinfo/posix/UTC"), root_.ReadFile("/etc/localtime"));
    // The init script logs under the root wherever the root is.
    ASSERT_EQ(std::system((root_ / "/etc/rc.d/init.d/ptpd restart").c_str()), 0);
    EXPECT_EQ(root_.ReadFile("/var/log/ptpd-init.log"), "restart\n");
}

TEST_F(VelaSim, StartsUpThenSendsTheScenarioOnItsTickGrid) {
    Start();
    const struct {
        const char* field;
        float value;
        int number;  // the 32-bit field that carries it
    } data[] = {{"CH4D", 0.25f, 1},     {"CH4", 6.5f, 2},      {"PRESSURE", 98.5f, 3}, {"RSSI", 9.5f, 4},
                {"TEMP", -3.25f, 5},    {"AUX1", 1.5f, 6},     {"AUX4", 4.75f, 9},     {"AUXTC1", 21.5f, 10},
                {"AUXTC3", 23.5f, 12},  {"DROPRATE", 12.0f, 13}};
    for (const auto& d : data) EXPECT_EQ(Ask("set " + std::string(d.field) + " " + std::to_string(d.value)), "ok\n");
    EXPECT_EQ(Ask("set status.LCTSETPT 27.5"), "ok\n");
    EXPECT_EQ(Ask("set status.OPTICSTDELTA 0.75"), "ok\n");
    EXPECT_EQ(Ask("set FLAGS 0x81"), "ok\n");
    EXPECT_EQ(Ask("noise 0"), "ok\n");
    EXPECT_EQ(Ask("set BOGUS 1"), "error: unknown field BOGUS\n");
    EXPECT_EQ(Ask("connected"), "no\n");

    int dsp = Connect(root_ / "/dev/dsp4410", SOCK_SEQPACKET);
    EXPECT_EQ(ReadFrame(dsp).code, 24);
    ReceivedFrame init = ReadFrame(dsp);
    EXPECT_EQ(init.code, 4);
    EXPECT_EQ(Text(init.words), "VELA DSP 2.3 ready");
    EXPECT_EQ(Ask("connected"), "yes\n");

    std::vector<std::uint32_t> data_ticks;
    bool synchronised = false, status_seen = false;
    while (!(synchronised && status_seen && data_ticks.size() >= 3)) {
        ReceivedFrame frame = ReadFrame(dsp);
        if (frame.code == 0) break;
        if (frame.code == 7) {
            ASSERT_EQ(frame.words.size(), 30u);
            data_ticks.push_back(Field(frame.words, 0));
            for (const auto& d : data) EXPECT_EQ(FloatFromBits(Field(frame.words, d.number)), d.value) << d.field;
            EXPECT_EQ(Field(frame.words, 14), 0x81u);
        } else if (frame.code == 25) {
            // Never behind a record already sent.
            ASSERT_EQ(frame.words.size(), 2u);
            if (!data_ticks.empty()) {
                EXPECT_GE(Field(frame.words, 0), data_ticks.back());
            }
            synchronised = true;
        } else if (frame.code == 6) {
            ASSERT_EQ(frame.words.size(), 28u);
            EXPECT_EQ(FloatFromBits(Field(frame.words, 1)), 27.5f);
            EXPECT_EQ(FloatFromBits(Field(frame.words, 11)), -0.75f);
            status_seen = true;
        }
    }
    ASSERT_GE(data_ticks.size(), 3u);
    for (std::size_t i = 1; i < data_ticks.size(); ++i) EXPECT_EQ(data_ticks[i] - data_ticks[i - 1], 25u);
    ::close(dsp);
}

TEST_F(VelaSim, AnswersTheDaemonAndServesItAgainAfterARestart) {
    Start();
    int dsp = Connect(root_ / "/dev/dsp4410", SOCK_SEQPACKET);
    // A test data request and a laser set point in one write.
    const std::uint8_t request[] = {0, 0, 0, 0, 0, 0, 0, 0, 29, 0, 0, 0,
                                    0, 0, 0, 0, 0, 0, 0, 0, 17, 0, 2, 0, 0xF4, 0x41, 0, 0};
    ASSERT_EQ(::send(dsp, request, sizeof request, 0), static_cast<ssize_t>(sizeof request));
    EXPECT_EQ(Ask("message Hi there"), "ok\n");
    bool test_data = false, message = false;
    while (!(test_data && message)) {
        ReceivedFrame frame = ReadFrame(dsp);
        if (frame.code == 0) break;
        if (frame.code == 30) test_data = frame.words.size() == 22;
        if (frame.code == 3) message = Text(frame.words) == "Hi there";
    }
    EXPECT_TRUE(test_data);
    EXPECT_TRUE(message);
    EXPECT_EQ(Ask("received"), "29\n17 16884 0\nend\n");

    ::close(dsp);
    EXPECT_TRUE(WaitUntil([&] { return Ask("connected") == "no\n"; }));
    EXPECT_EQ(Ask("message lost"), "error: the processor device is not open\n");
    dsp = Connect(root_ / "/dev/dsp4410", SOCK_SEQPACKET);
    EXPECT_EQ(ReadFrame(dsp).code, 24);
    ::close(dsp);

    int mirror = Connect(root_ / "/dev/mirror4410", SOCK_SEQPACKET);
    ASSERT_EQ(::send(mirror, "m512\n", 5, 0), 5);
    ASSERT_EQ(::send(mirror, "?", 1, 0), 1);
    char status[8] = {};
    ASSERT_TRUE(Readable(mirror));
    EXPECT_EQ(std::string(status, ::recv(mirror, status, sizeof status, 0)), "0\n");
    EXPECT_EQ(Ask("mirror"), "m512\nend\n");
    ::close(mirror);

    sim_->Signal(SIGTERM);
    EXPECT_EQ(sim_->Wait(), 0);
    EXPECT_EQ(::access((root_ / "/dev/dsp4410").c_str(), F_OK), -1);
    EXPECT_EQ(::access((root_ / "/run/vela-sim.ctl").c_str(), F_OK), -1);
}

TEST(ZoneFiles, BuiltInZonesFollowDaylightSavingWhenTheHostHasNone) {
    TempRoot root(false);
    InstallZones(root / "/zones", root / "/localtime", root / "/no-host-zones");
    const char* old_tz = std::getenv("TZ");
    const std::string saved = old_tz ? old_tz : "";
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
    if (old_tz) ::setenv("TZ", saved.c_str(), 1); else ::unsetenv("TZ");
    ::tzset();
}

}  // namespace
