#include "common/socket_server.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/error_text.h"
#include "tests/support/pump.h"

namespace {

long OpenDescriptorCount() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

// Records every notification as a line; answers requests and departures
// through the hooks when they are set.
struct RecordingListener : SocketServerListener {
    void ClientAdded(SocketClient*) override { log.push_back("added"); }
    void ClientRemoved(SocketClient* client) override {
        log.push_back("removed");
        if (on_removed) on_removed(client);
    }
    void ClientConnected(SocketClient*) override { log.push_back("connected"); }
    void GotRequest(SocketClient* client, const std::string& message) override {
        log.push_back("request " + message);
        if (on_request) on_request(client, message);
    }
    long Count(const std::string& what) const { return std::count(log.begin(), log.end(), what); }
    std::function<void(SocketClient*, const std::string&)> on_request;
    std::function<void(SocketClient*)> on_removed;
    std::vector<std::string> log;
};

// The remote end of a connection, driven by the test between poll iterations.
struct Peer : Socket {
    explicit Peer(unsigned short port) : Socket(AF_INET, SOCK_STREAM, 0) {
        SocketAddress address("127.0.0.1");
        address.SetPort(port);
        Connect(address, 5);
        SetNonBlocking();
    }
    // Closes with a reset instead of an orderly end.
    void Reset() {
        linger abort{1, 0};
        ::setsockopt(GetFd(), SOL_SOCKET, SO_LINGER, &abort, sizeof abort);
        Close();
    }
    // Appends what is available to `received`; notes end of input.
    void Collect() {
        std::string chunk(65536, '\0');
        ssize_t n = ::recv(GetFd(), &chunk[0], chunk.size(), 0);
        if (n > 0) received.append(chunk, 0, static_cast<std::size_t>(n));
        ended = ended || n == 0;
    }
    std::string received;
    bool ended = false;
};

class SocketServerTest : public testing::Test {
protected:
    void SetUp() override {
        // A peer that resets must fail a write, not end the test process.
        ::signal(SIGPIPE, SIG_IGN);
        server->AddListener(&listener);
        server->Listen(0);
        SocketAddress bound;
        server->GetSocket().GetSockName(&bound);
        port = bound.GetPort();
    }
    // Connects a peer and waits until the server has accepted it.
    std::unique_ptr<Peer> Connect() {
        long before = listener.Count("added");
        std::unique_ptr<Peer> peer(new Peer(port));
        EXPECT_TRUE(PumpUntil([&] { return listener.Count("added") > before; }));
        return peer;
    }

    RecordingListener listener;
    std::unique_ptr<SocketServer> server{new SocketServer("\n", AF_INET6)};
    unsigned short port = 0;
};

}  // namespace

// A listener removed before the client leaves hears nothing of it.
TEST_F(SocketServerTest, NotifiesTheListenersInOrderUntilRemoved) {
    RecordingListener second;
    server->AddListener(&second);
    auto peer = Connect();
    peer->Write("hello\nwor");
    ASSERT_TRUE(PumpUntil([&] { return listener.Count("request hello\n") == 1; }));
    peer->Write("ld\n");
    ASSERT_TRUE(PumpUntil([&] { return listener.Count("request world\n") == 1; }));
    server->RemoveListener(&second);
    peer.reset();
    ASSERT_TRUE(PumpUntil([&] { return listener.Count("removed") == 1; }));
    std::vector<std::string> expected = {"added", "connected", "request hello\n",
                                         "request world\n"};
    EXPECT_EQ(second.log, expected);
    expected.push_back("removed");
    EXPECT_EQ(listener.log, expected);
}

TEST_F(SocketServerTest, SlowReaderGetsTheWholeAnswerInOrder) {
    std::string answer;
    for (int i = 0; answer.size() < 100000; ++i) answer += std::to_string(i) + ",";
    listener.on_request = [&](SocketClient* client, const std::string&) { client->Send(answer); };
    // Half-closed: the peer stops sending after its request, and the client
    // closes once everything queued is written.
    for (bool half_closed : {false, true}) {
        auto peer = Connect();
        SocketClient* client = server->GetClients().back();
        // Small buffers on both sides, so that no single write can take it all.
        int size = 4096;
        ::setsockopt(peer->GetFd(), SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
        ::setsockopt(client->GetFd(), SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
        peer->Write("request\n");
        if (half_closed) peer->Shutdown(SHUT_WR);
        std::set<std::size_t> pending_seen;
        ASSERT_TRUE(PumpUntil([&] {
            pending_seen.insert(client->GetPendingOutput());
            peer->Collect();
            return peer->received.size() == answer.size() && peer->ended == half_closed;
        }));
        EXPECT_EQ(peer->received, answer);
        EXPECT_GE(pending_seen.size(), 3u) << "written in one go";
        EXPECT_EQ(client->IsOpen(), !half_closed);
        if (!half_closed) {
            EXPECT_EQ(client->GetEvents(), POLLIN);  // nothing left to write
        }
    }
}

TEST_F(SocketServerTest, FailingClientIsClosedWithItsErrorAlone) {
    listener.on_request = [](SocketClient* client, const std::string& message) {
        if (message == "boom\n") throw std::runtime_error("bad request");
        client->Send(message);
    };
    auto bystander = Connect();
    for (bool reset : {false, true}) {
        auto victim = Connect();
        testing::internal::CaptureStdout();
        if (reset)
            victim->Reset();
        else
            victim->Write("boom\n");
        bool closed = PumpUntil([&] { return listener.Count("removed") == (reset ? 2 : 1); });
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  reset ? "SocketClient::HandleRead(): Got exception StreamFileBase: error in "
                          "Read: Connection reset by peer\n"
                        : "SocketClient::HandleRead(): Got exception bad request\n");
        ASSERT_TRUE(closed);
    }
    bystander->Write("ping\n");
    ASSERT_TRUE(PumpUntil([&] {
        bystander->Collect();
        return bystander->received == "ping\n";
    }));
    EXPECT_EQ(listener.Count("removed"), 2);
}

TEST_F(SocketServerTest, ListenOnATakenPortFails) {
    SocketServer second("\n", AF_INET6);
    EXPECT_EQ(ErrorText([&] { second.Listen(port); }),
              "Socket: unable to bind to ::: Address already in use");
    EXPECT_EQ(second.GetPort(), -1);
}

TEST_F(SocketServerTest, ClosedClientsLeaveNoDescriptorsBehind) {
    const long before = OpenDescriptorCount();
    const int batch = 50;
    for (int round = 1; round <= 4; ++round) {
        std::vector<std::unique_ptr<Peer>> peers;
        for (int i = 0; i < batch; ++i) peers.emplace_back(new Peer(port));
        ASSERT_TRUE(PumpUntil([&] { return listener.Count("added") == round * batch; }));
        peers.clear();
        ASSERT_TRUE(PumpUntil([&] { return listener.Count("removed") == round * batch; }));
        // Closed clients of earlier rounds were purged as new ones came in.
        EXPECT_LE(server->GetClients().size(), static_cast<std::size_t>(2 * batch));
    }
    EXPECT_EQ(OpenDescriptorCount(), before);
}

TEST_F(SocketServerTest, DestructorClosesEveryClientBeforeDeletingAny) {
    // Like the hub, the listener tells the other clients when one leaves.
    int farewells = 0;
    listener.on_removed = [&](SocketClient* leaving) {
        for (SocketClient* other : leaving->GetServer()->GetClients())
            if (other != leaving && other->IsOpen()) {
                other->Send("left\n");
                ++farewells;
            }
    };
    auto first = Connect();
    auto second = Connect();
    server.reset();
    EXPECT_EQ(listener.Count("removed"), 2);
    EXPECT_EQ(farewells, 1);  // only the first to leave had an open client to tell
}
