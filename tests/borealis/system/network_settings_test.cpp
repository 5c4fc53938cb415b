#include "borealis/system/network_settings.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "borealis/platform/sim_platform.h"
#include "tests/support/temp_root.h"

namespace {

const std::string kLoopback = "auto lo\niface lo inet loopback\n\n";

std::string Describe(const InterfaceConfig& config) {
    return (config.dhcp ? "dhcp " : "static ") + config.address.ToString() + "/" +
           config.netmask.ToString() + " via " + config.gateway.ToString();
}

// How br0's stanza is read and moved is in the system_network scenarios.
// Here the files are changed behind the object's back, so that what it
// writes shows.
TEST(NetworkSettings, WritesTheFileOfWhatChangedOnly) {
    TempRoot root;
    root.WriteFile("/etc/hostname", "ch4-0042\n");
    root.WriteFile("/etc/network/interfaces", kLoopback + "auto br0\niface br0 inet dhcp\n");
    SimPlatform platform(root.path(), 4410);
    NetworkSettings network(platform);
    EXPECT_EQ(network.host_name(), "ch4-0042");
    root.WriteFile("/etc/hostname", "kept\n");
    root.WriteFile("/etc/network/interfaces", kLoopback);

    const InterfaceConfig read = network.config();
    network.Update("ch4-0042", true, read.address, read.netmask, read.gateway);
    EXPECT_EQ(root.ReadFile("/etc/hostname"), "kept\n");
    EXPECT_EQ(root.ReadFile("/etc/network/interfaces"), kLoopback);

    const SocketAddress address(std::string("10.0.0.5"));
    network.Update("ch4-0042", false, address, read.netmask, read.gateway);
    EXPECT_EQ(root.ReadFile("/etc/hostname"), "kept\n");
    EXPECT_EQ(root.ReadFile("/etc/network/interfaces"),
              kLoopback + WriteInterfaceConfig("", "br0", network.config()));
    EXPECT_NE(::access((root / "/etc/network/interfaces.new").c_str(), F_OK), 0);

    network.Update("ch4-0043", false, address, read.netmask, read.gateway);
    network.SetDhcp();
    EXPECT_EQ(root.ReadFile("/etc/hostname"), "ch4-0043\n");
    EXPECT_EQ(Describe(network.config()), "dhcp 10.0.0.5/255.255.255.0 via 192.168.1.1");
    EXPECT_EQ(root.ReadFile("/etc/network/interfaces"),
              kLoopback + WriteInterfaceConfig("", "br0", network.config()));
}

}  // namespace
