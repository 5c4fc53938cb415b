#include "borealis/system/interface_status.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>

#include "borealis/platform/linux_platform.h"
#include "borealis/platform/sim_platform.h"
#include "tests/support/temp_root.h"

namespace {

TEST(NetworkInterfaceInfo, MissingInterfaceIsNotPresent) {
    NetworkInterfaceInfo info(LinuxPlatform(), "nosuchif0");
    EXPECT_FALSE(info.present);
    EXPECT_EQ(info.index, 0u);
    EXPECT_EQ(info.address.ToString(), "0.0.0.0");
}

// br0 is played by the loopback interface; the loopback interface is made a
// port of br0 the way the kernel shows it: brport/bridge links to the
// bridge's folder. br1 is another bridge that lo does not belong to.
TEST(NetworkInterfaceInfo, ReadsInterfaceAndBridgeStateUnderTheRoot) {
    TempRoot root;
    const SimPlatform platform(root.path(), 4410, "lo");
    root.WriteFile("/sys/class/net/br1/bridge/bridge_id", "8000.000000000001\n");
    root.WriteFile("/sys/class/net/br0/bridge/bridge_id", "8000.001a2b3c4d5e\n");
    MakeDirectories(root / "/sys/class/net/lo/brport");
    ASSERT_EQ(::symlink("../../br0", (root / "/sys/class/net/lo/brport/bridge").c_str()), 0);

    NetworkInterfaceInfo bridge(platform, "br0");
    EXPECT_TRUE(bridge.present);
    EXPECT_EQ(bridge.address.ToString(), "127.0.0.1");
    EXPECT_TRUE(bridge.is_bridge);
    EXPECT_FALSE(bridge.is_bridge_port);
    EXPECT_EQ(bridge.bridge, "");

    NetworkInterfaceInfo port(platform, "lo");
    EXPECT_TRUE(port.present);
    EXPECT_GT(port.index, 0u);
    EXPECT_TRUE(port.running);
    EXPECT_TRUE(port.has_address);
    EXPECT_EQ(port.address.ToString(), "127.0.0.1");
    EXPECT_EQ(port.hardware_address, "00:00:00:00:00:00");
    EXPECT_FALSE(port.is_bridge);
    EXPECT_TRUE(port.is_bridge_port);
    EXPECT_EQ(port.bridge, "br0");
}

TEST(GetHostName, CutsUnterminatedNameTo127Characters) {
    char buffer[128];
    std::memset(buffer, 'a', sizeof buffer);
    EXPECT_EQ(HostNameFromBuffer(buffer, sizeof buffer), std::string(127, 'a'));
    EXPECT_FALSE(GetHostName().empty());
}

}  // namespace
