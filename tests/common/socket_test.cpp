#include "common/socket.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/support/error_text.h"

TEST(SocketAddress, ParsesTextByItsShape) {
    struct Case {
        const char* text;
        int family;
        socklen_t length;
    } cases[] = {
        {"192.168.1.20", AF_INET, 16},
        {"fe80::1", AF_INET6, 28},
        {"/tmp/x", AF_UNIX, 8},
    };
    for (const Case& c : cases) {
        SocketAddress address(c.text);
        EXPECT_EQ(address.GetFamily(), c.family) << c.text;
        EXPECT_EQ(address.GetLength(), c.length) << c.text;
        EXPECT_EQ(address.GetPort(), 0) << c.text;
        EXPECT_EQ(address.ToString(), c.text);
    }
    for (const char* bad : {"192.168.1.", "fe80:::1::2", "localhost"})
        EXPECT_EQ(ErrorText([&] { SocketAddress address(bad); }),
                  std::string("SocketAddress: illegal address ") + bad);
    EXPECT_THROW(SocketAddress("1.2.3"), SocketError);
}

TEST(SocketAddress, BroadcastSetsTheHostBits) {
    struct Case {
        const char *address, *netmask, *broadcast;
    } cases[] = {
        {"192.168.1.20", "255.255.255.0", "192.168.1.255"},
        {"172.16.5.4", "255.255.255.255", "172.16.5.4"},
    };
    for (const Case& c : cases) {
        SocketAddress address(c.address);
        address.SetPort(99);
        SocketAddress broadcast =
            SocketAddress::BroadcastAddress(address, SocketAddress(c.netmask));
        EXPECT_EQ(broadcast.ToString(), c.broadcast);
        EXPECT_EQ(broadcast.GetPort(), 0);
    }
}

TEST(SocketAddress, ComparesFamilyThenAddressBytes) {
    SocketAddress a("10.0.0.1"), b("10.0.0.2"), v6("::1"), a_port = a, scoped = v6;
    a_port.SetPort(4410);
    scoped.SetScopeId(2);
    EXPECT_TRUE(b < v6);  // AF_INET sorts before AF_INET6
    EXPECT_FALSE(v6 < b);
    EXPECT_EQ(a, SocketAddress("10.0.0.1"));
    EXPECT_NE(a, a_port);
    // Every one a key of its own: the port and the scope count.
    std::set<SocketAddress> keys{b, a, v6, a_port, scoped};
    EXPECT_EQ(keys.size(), 5u);
    EXPECT_EQ(keys.count(SocketAddress("10.0.0.2")), 1u);
}

TEST(Socket, AcceptWithNothingPendingReportsEAGAIN) {
    Socket listener(AF_INET, SOCK_STREAM, 0);
    listener.Bind(SocketAddress("127.0.0.1"));
    listener.Listen(5);
    EXPECT_EQ(ErrorText([&] { listener.Accept(); }),
              "Socket: accept error: Resource temporarily unavailable");
}
