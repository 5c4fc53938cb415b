#include "common/socket.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <list>
#include <set>
#include <string>

#include "tests/support/error_text.h"
#include "tests/support/temp_root.h"

namespace {

SocketAddress Loopback(unsigned short port) {
    SocketAddress address("127.0.0.1");
    address.SetPort(port);
    return address;
}

}  // namespace

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
        {"fe80::1", "ffff::", "::"},
        {"/tmp/x", "/tmp/y", ""},
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
    SocketAddress short_path("/a"), long_path("/ab");
    a_port.SetPort(4410);
    scoped.SetScopeId(2);
    EXPECT_TRUE(b < v6);  // AF_INET sorts before AF_INET6
    EXPECT_FALSE(v6 < b);
    EXPECT_EQ(a, SocketAddress("10.0.0.1"));
    EXPECT_NE(a, a_port);
    // Every one a key of its own, paths of different lengths included.
    std::set<SocketAddress> keys{b, a, v6, a_port, scoped, short_path, long_path};
    EXPECT_EQ(keys.size(), 7u);
    EXPECT_EQ(keys.count(SocketAddress("10.0.0.2")), 1u);
}

TEST(SocketAddress, ResolvesHostNames) {
    SocketAddress local("localhost", AF_INET);
    EXPECT_EQ(local.ToString(), "127.0.0.1");
    EXPECT_EQ(local.GetPort(), 0);
    // A numeric IPv4 host asked for as IPv6 fails without any lookup.
    const std::string failure = ErrorText([] { SocketAddress("127.0.0.1", AF_INET6); });
    EXPECT_EQ(failure.rfind("SocketAddress: 127.0.0.1 not found: ", 0), 0u) << failure;
}

TEST(Socket, CopyOwnsAnIndependentDescriptor) {
    Socket socket(AF_INET, SOCK_STREAM, 0);
    Socket copy(socket);
    EXPECT_NE(copy.GetFd(), socket.GetFd());
    copy.Close();
    EXPECT_NE(::fcntl(socket.GetFd(), F_GETFD), -1);
}

TEST(Socket, AcceptWithNothingPendingReportsEAGAIN) {
    Socket listener(AF_INET, SOCK_STREAM, 0);
    listener.Bind(Loopback(0));
    listener.Listen(5);
    EXPECT_EQ(ErrorText([&] { listener.Accept(); }),
              "Socket: accept error: Resource temporarily unavailable");
}

TEST(Socket, ConnectFailsWithItsOwnErrorUnlessTheLimitRanOut) {
    Socket refused(AF_INET, SOCK_STREAM, 0);
    for (unsigned limit : {5u, 0u})
        EXPECT_EQ(ErrorText([&] { refused.Connect(Loopback(UniqueTestPort()), limit); }),
                  "Socket: unable to connect to 127.0.0.1: Connection refused");

    // A Unix-domain listener that never accepts: once its backlog is full a
    // blocking connect waits until the alarm interrupts it.
    TempRoot root(false);
    SocketAddress address(root.path() + "/full");
    Socket listener(AF_UNIX, SOCK_STREAM, 0);
    listener.Bind(address);
    listener.Listen(0);
    std::list<Socket> queued;
    for (;;) {
        queued.emplace_back(AF_UNIX, SOCK_STREAM, 0);
        queued.back().SetNonBlocking();
        if (::connect(queued.back().GetFd(), address.GetSockAddr(), address.GetLength()) != 0)
            break;
        ASSERT_LT(queued.size(), 100u);
    }
    Socket late(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(ErrorText([&] { late.Connect(address, 1); }),
              "Socket: unable to connect to " + address.ToString() +
                  ": Interrupted system call: timed out");
    EXPECT_EQ(::alarm(0), 0u);
}

TEST(Socket, BindClearsTheFileCreationMaskOnlyForTheCall) {
    TempRoot root(false);
    mode_t saved = ::umask(077);
    Socket bound(AF_UNIX, SOCK_STREAM, 0);
    bound.Bind(SocketAddress(root.path() + "/open"));
    struct stat info;
    ASSERT_EQ(::stat((root.path() + "/open").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0777u);

    Socket failing(AF_UNIX, SOCK_STREAM, 0);
    std::string missing = root.path() + "/missing/s";
    EXPECT_EQ(ErrorText([&] { failing.Bind(SocketAddress(missing)); }),
              "Socket: unable to bind to " + missing + ": No such file or directory");
    EXPECT_EQ(::umask(saved), 077u);
}
