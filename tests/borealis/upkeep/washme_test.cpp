#include "borealis/upkeep/washme.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "borealis/platform/linux_platform.h"
#include "borealis/platform/sim_platform.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/error_text.h"
#include "tests/support/process.h"
#include "tests/support/temp_root.h"

namespace {

using Packets = std::vector<std::string>;

// The device's far end under a simulated root: a thread accepts the daemon's
// connection, keeps every command packet and answers the status reads with
// `answers` in turn (an empty one: no answer). It ends when the daemon closes
// its end.
class DevicePeer {
public:
    DevicePeer(const std::string& path, const Packets& answers)
        : listener_(::socket(AF_UNIX, SOCK_SEQPACKET, 0)), answers_(answers.begin(), answers.end()) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(listener_, 1) != 0)
            ADD_FAILURE() << "cannot listen at " << path;
        thread_ = std::thread([this] { Serve(::accept(listener_, nullptr, nullptr)); });
    }
    ~DevicePeer() {
        ::shutdown(listener_, SHUT_RDWR);  // ends a wait for a daemon that never came
        thread_.join();
        ::close(listener_);
    }

    // The command packets, once `count` of them came (or the deadline passed).
    Packets Received(std::size_t count) {
        WaitUntil([&] {
            std::lock_guard<std::mutex> lock(mutex_);
            return packets_.size() >= count;
        });
        std::lock_guard<std::mutex> lock(mutex_);
        return packets_;
    }

private:
    void Serve(int connection) {
        char buffer[256];
        ssize_t size;
        while (connection >= 0 && (size = ::recv(connection, buffer, sizeof buffer, 0)) > 0) {
            if (std::string(buffer, size) != "?") {
                std::lock_guard<std::mutex> lock(mutex_);
                packets_.emplace_back(buffer, size);
            } else if (!answers_.empty()) {
                if (!answers_.front().empty())
                    ::send(connection, answers_.front().data(), answers_.front().size(), 0);
                answers_.pop_front();
            }
        }
        if (connection >= 0) ::close(connection);
    }

    int listener_;
    std::deque<std::string> answers_;  // the peer thread's own
    std::mutex mutex_;
    Packets packets_;
    std::thread thread_;
};

class WashMeTest : public testing::Test {
protected:
    const int kAuto = 0;
    TempRoot root;
    DevicePeer peer{root / "/dev/mirror4410", {"123\n", "-1\n", "-32000\n", ""}};
    SimPlatform platform{root.path(), 4410};
    WashMe washme{platform, "/dev/mirror4410"};
};

TEST_F(WashMeTest, SendsOnlyWhatChangedAndTicksOnOneLineOncePerSecond) {
    washme.SetMirrorPosition(2000);
    washme.SetMirrorPosition(1500);  // clamped to the same
    washme.PumpOn();
    washme.BottomHeaterChanged(40, kAuto, 50, 0, 0);
    // All day: the mirror spins for 30 s and the pump runs for 20 s every 30 minutes.
    washme.SpinMirrorChanged(kAuto, 50, 0, 0, 30, 1800);
    for (int t : {1800, 1800, 1801, 1820}) washme.Tick(t, 20, 0.0f, false);
    washme.PumpOn();
    EXPECT_EQ(peer.Received(6), (Packets{"c0 m0 p0 t0 b0\n", "m1023\n", "p1\n", "c3 t0 b40 p1\n",
                                         "c3 t0 b40 p0\n", "p1\n"}));
    EXPECT_EQ(washme.MotorSetPoint(), 1023);
    using Diag = WashMe::Diag;
    EXPECT_EQ(washme.DiagBits(),
              Diag::MOTORSPINNING | Diag::PUMPON | Diag::BOTTOMHEATERON | Diag::MOTORFAILURE);
    EXPECT_EQ(washme.BottomHeaterWatts(), 40 * 8.56f / 100);
}

TEST_F(WashMeTest, MotorReportClearsTheWashingMarkWhileSpinning) {
    bool failed = true;
    washme.WashNow();
    EXPECT_EQ(washme.ReadStatus(failed), 123);
    EXPECT_FALSE(failed);
    EXPECT_TRUE(washme.Washing());
    washme.StopWash();
    EXPECT_EQ(washme.ReadStatus(failed), 32767);
    EXPECT_TRUE(washme.Washing());  // the top bit counts only while spinning
    washme.WashNow();
    EXPECT_EQ(washme.ReadStatus(failed), 768);
    EXPECT_FALSE(washme.Washing());
    EXPECT_EQ(washme.ReadStatus(failed), 0);  // no answer within the time-out
    EXPECT_TRUE(failed);
    EXPECT_EQ(peer.Received(4), (Packets{"c0 m0 p0 t0 b0\n", "c3\n", "c0\n", "c3\n"}));
}

TEST(WashMe, FailedWriteIsReportedOnceAndNotRemembered) {
    LinuxPlatform platform;
    CaptureStdout output;
    WashMe washme(platform, "/dev/full");
    washme.SetMirrorPosition(5);
    EXPECT_EQ(washme.MotorSetPoint(), 0);
    EXPECT_EQ(output.Text(), "WashMe: Unable to write to device /dev/full: No space left on device\n");
}

TEST(MirrorHeaterDevice, OpensTheDeviceOrSaysWhichCannotBeOpened) {
    TempRoot root;
    SimPlatform simulated(root.path(), 4410);
    const std::string path = root / "/dev/mirror4410";
    EXPECT_EQ(ErrorText([&] { WashMe washme(simulated, "/dev/mirror4410"); }),
              "Unable to open device: " + path);
    EXPECT_EQ(ErrorText([&] { LinuxPlatform().OpenMirror(path); }), "Unable to open device: " + path);

    // A plain file in place of the analyzer's device reads back what was written.
    root.WriteFile("/dev/mirror4410", "old content");
    auto device = LinuxPlatform().OpenMirror(path);
    device->WriteLine("-123\n");
    std::int16_t status = 0;
    EXPECT_TRUE(device->ReadStatus(status));
    EXPECT_EQ(status, -123);
    EXPECT_FALSE(device->ReadStatus(status));  // nothing more to read
}

}  // namespace
