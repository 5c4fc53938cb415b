#include "borealis/system/network_settings.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "borealis/platform/sim_platform.h"
#include "tests/support/temp_root.h"

namespace {

const std::string kLoopback = "auto lo\niface lo inet loopback\n\n";

InterfaceConfig Config(bool dhcp, const char* address, const char* netmask, const char* gateway) {
    return {dhcp, SocketAddress(std::string(address)), SocketAddress(std::string(netmask)),
            SocketAddress(std::string(gateway))};
}

std::string Describe(const InterfaceConfig& config) {
    return (config.dhcp ? "dhcp " : "static ") + config.address.ToString() + "/" +
           config.netmask.ToString() + " via " + config.gateway.ToString();
}

TEST(InterfacesFile, ReadsTheStanzaOfTheInterfaceCommentsIncluded) {
    const std::string defaults = "/255.255.255.0 via 192.168.1.1";
    const std::pair<std::string, std::string> cases[] = {
        // A whole stanza, static or under DHCP with its values as comments, is
        // read back in the system_network scenario.
        // The stanza ends at an empty line or at the next stanza; a word
        // that is no address changes nothing.
        {"iface br0 inet static\n\taddress ten\n\n\tgateway 10.9.9.9\n",
         "static 192.168.1.95" + defaults},
        {"iface br0 inet static\n\tnetmask 255.0.0.0\niface lo inet loopback\n\tgateway 1.1.1.1\n",
         "static 192.168.1.95/255.0.0.0 via 192.168.1.1"},
        {"", "dhcp 192.168.1.95" + defaults},  // a missing file
    };
    for (const auto& c : cases)
        EXPECT_EQ(Describe(ReadInterfaceConfig(c.first, "br0")), c.second) << c.first;
}

TEST(InterfacesFile, MovesTheStanzaOfTheInterfaceToTheEnd) {
    const std::string static_stanza =
        "auto br0\niface br0 inet static\n\taddress 192.168.1.95\n\tnetmask 255.255.255.0\n"
        "\tbroadcast 192.168.1.255\n\tgateway 192.168.1.1\n\n";
    const InterfaceConfig fixed = Config(false, "192.168.1.95", "255.255.255.0", "192.168.1.1");
    const struct {
        std::string text;
        InterfaceConfig config;
        std::string expected;
    } cases[] = {
        {kLoopback + "auto br0\niface br0 inet dhcp\n#\taddress 10.0.0.5\n\n\n"
                     "auto eth1\niface eth1 inet manual",
         fixed, kLoopback + "auto eth1\niface eth1 inet manual\n" + static_stanza},
        {"iface br0 inet static\n\taddress 10.1.1.1\niface br0.5 inet manual\n", fixed,
         "iface br0.5 inet manual\n" + static_stanza},
    };
    for (const auto& c : cases)
        EXPECT_EQ(WriteInterfaceConfig(c.text, "br0", c.config), c.expected) << c.text;
}

// The files are changed behind the object's back, so that what it writes
// shows.
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
