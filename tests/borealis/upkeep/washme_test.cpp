#include "borealis/upkeep/washme.h"

#include <sys/socket.h>

#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "borealis/platform/linux_platform.h"
#include "borealis/platform/sim_platform.h"
#include "common/socket.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/error_text.h"
#include "tests/support/process.h"
#include "tests/support/temp_root.h"

namespace {

using Packets = std::vector<std::string>;

// The device's far end under a simulated root. Serve() takes the daemon's
// connection to a thread that keeps every command packet and answers the
// status reads with `answers` in turn (an empty one: no answer), until the
// daemon closes its end.
class DevicePeer {
public:
    explicit DevicePeer(const std::string& path) {
        listening_.Bind(SocketAddress(path));
        listening_.Listen(1);
    }
    ~DevicePeer() {
        if (thread_.joinable()) thread_.join();
    }
    void Serve(const Packets& answers) {
        connection_.emplace(listening_.Accept());
        thread_ = std::thread([this, answers] { Run(answers); });
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
    void Run(const Packets& answers) {
        auto answer = answers.begin();
        char buffer[256];
        for (ssize_t size; (size = ::recv(connection_->GetFd(), buffer, sizeof buffer, 0)) > 0;) {
            if (std::string(buffer, size) != "?") {
                std::lock_guard<std::mutex> lock(mutex_);
                packets_.emplace_back(buffer, size);
            } else if (answer != answers.end()) {
                const std::string& text = *answer++;
                if (!text.empty()) ::send(connection_->GetFd(), text.data(), text.size(), 0);
            }
        }
    }

    Socket listening_{AF_UNIX, SOCK_SEQPACKET, 0};
    std::optional<Socket> connection_;
    std::mutex mutex_;
    Packets packets_;
    std::thread thread_;
};

class WashMeTest : public testing::Test {
protected:
    WashMeTest() { peer.Serve({"123\n", "-1\n", "-32000\n", ""}); }

    TempRoot root;
    DevicePeer peer{root / "/dev/mirror4410"};
    SimPlatform platform{root.path(), 4410};
    WashMe washme{platform, "/dev/mirror4410"};
};

// What the device is sent, by hand, by the schedules and at start-up, is in
// the upkeep scenarios; they cannot make the motor report its top bit while
// idle, nor stay silent.
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
    EXPECT_EQ(output.Text(),
              "WashMe: Unable to write to device /dev/full: No space left on device\n");
}

TEST(MirrorHeaterDevice, OpensTheDeviceOrSaysWhichCannotBeOpened) {
    TempRoot root;
    SimPlatform simulated(root.path(), 4410);
    const std::string path = root / "/dev/mirror4410";
    EXPECT_EQ(ErrorText([&] { WashMe washme(simulated, "/dev/mirror4410"); }),
              "Unable to open device: " + path);
    EXPECT_EQ(ErrorText([&] { LinuxPlatform().OpenMirror(path); }),
              "Unable to open device: " + path);

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
