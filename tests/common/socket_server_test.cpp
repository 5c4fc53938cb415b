#include "common/socket_server.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

// Runs the poll loop until `done` holds; false when the deadline passed.
bool PollUntil(const std::function<bool()>& done,
               std::chrono::seconds limit = std::chrono::seconds(30)) {
    auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        PollProcessor::Instance().Poll(10);
    }
    return true;
}

int OpenDescriptorCount() {
    int count = 0;
    DIR* dir = ::opendir("/proc/self/fd");
    while (::readdir(dir)) ++count;
    ::closedir(dir);
    return count;
}

// Records every notification as a line, and answers requests through
// `on_request` when one is set.
class RecordingListener : public SocketServerListener {
public:
    explicit RecordingListener(std::vector<std::string>& log, const std::string& name = "")
        : log_(log), name_(name) {}
    void ClientAdded(SocketClient*) override { Note("added"); ++added; }
    void ClientRemoved(SocketClient*) override { Note("removed"); ++removed; }
    void ClientConnected(SocketClient*) override { Note("connected"); }
    void GotRequest(SocketClient* client, const std::string& message) override {
        Note("request " + message);
        if (on_request) on_request(client, message);
    }
    std::function<void(SocketClient*, const std::string&)> on_request;
    int added = 0;
    int removed = 0;

private:
    void Note(const std::string& what) { log_.push_back(name_ + what); }
    std::vector<std::string>& log_;
    std::string name_;
};

// The remote end of a connection, driven by the test between poll iterations.
class Peer {
public:
    explicit Peer(unsigned short port, int receive_buffer = 0) : socket_(AF_INET, SOCK_STREAM, 0) {
        if (receive_buffer)
            ::setsockopt(socket_.GetFd(), SOL_SOCKET, SO_RCVBUF, &receive_buffer,
                         sizeof receive_buffer);
        SocketAddress address("127.0.0.1");
        address.SetPort(port);
        socket_.Connect(address, 5);
        socket_.SetNonBlocking();
    }
    void Write(const std::string& text) { ASSERT_EQ(socket_.Write(text), text.size()); }
    void ShutdownSending() { socket_.Shutdown(SHUT_WR); }
    // Closes with a reset instead of an orderly end.
    void Reset() {
        linger abort{1, 0};
        ::setsockopt(socket_.GetFd(), SOL_SOCKET, SO_LINGER, &abort, sizeof abort);
        socket_.Close();
    }
    // Appends up to `limit` available bytes to `received`; notes end of input.
    void Read(std::size_t limit = 1 << 20) {
        std::string chunk(std::min<std::size_t>(limit, 65536), '\0');
        ssize_t n = ::recv(socket_.GetFd(), &chunk[0], chunk.size(), 0);
        if (n > 0) received.append(chunk, 0, static_cast<std::size_t>(n));
        if (n == 0) ended = true;
    }
    std::string received;
    bool ended = false;

private:
    Socket socket_;
};

class SocketServerTest : public testing::Test {
protected:
    void SetUp() override {
        // A peer that resets must fail a write, not end the test process.
        ::signal(SIGPIPE, SIG_IGN);
        server.AddListener(&listener);
        server.Listen(0);
        SocketAddress bound;
        server.GetSocket().GetSockName(&bound);
        port = bound.GetPort();
    }
    // Connects a peer and waits until the server has accepted it.
    std::unique_ptr<Peer> Connect(int receive_buffer = 0) {
        int before = listener.added;
        std::unique_ptr<Peer> peer(new Peer(port, receive_buffer));
        EXPECT_TRUE(PollUntil([&] { return listener.added > before; }));
        return peer;
    }
    SocketClient* LastClient() { return server.GetClients().back(); }

    std::vector<std::string> log;
    RecordingListener listener{log};
    SocketServer server{"\n", AF_INET6};
    unsigned short port = 0;
};

std::string Pattern(std::size_t size) {
    std::string data(size, '\0');
    for (std::size_t i = 0; i < size; ++i) data[i] = static_cast<char>('a' + (i * 7) % 26);
    return data;
}

}  // namespace

TEST_F(SocketServerTest, NotifiesEveryListenerInOrder) {
    RecordingListener second(log, "2 ");
    server.AddListener(&second);
    auto peer = Connect();
    peer->Write("hello\nwor");
    ASSERT_TRUE(PollUntil([&] { return log.size() >= 6; }));
    peer->Write("ld\n");
    ASSERT_TRUE(PollUntil([&] { return log.size() >= 8; }));
    server.RemoveListener(&second);
    peer.reset();
    ASSERT_TRUE(PollUntil([&] { return listener.removed == 1; }));
    const std::vector<std::string> expected = {
        "added",         "2 added",         "connected",     "2 connected",
        "request hello\n", "2 request hello\n", "request world\n", "2 request world\n",
        "removed",
    };
    EXPECT_EQ(log, expected);
}

TEST_F(SocketServerTest, HalfClosedPeerStillReceivesTheWholeAnswer) {
    const std::string answer = Pattern(300000);
    listener.on_request = [&](SocketClient* client, const std::string&) { client->Send(answer); };
    auto peer = Connect();
    peer->Write("request\n");
    peer->ShutdownSending();
    ASSERT_TRUE(PollUntil([&] {
        peer->Read();
        return peer->ended;
    }));
    EXPECT_EQ(peer->received, answer);
    EXPECT_EQ(listener.removed, 1);
    EXPECT_FALSE(LastClient()->IsOpen());
}

TEST_F(SocketServerTest, SlowReaderGetsEveryByteInOrder) {
    auto peer = Connect(4096);
    SocketClient* client = LastClient();
    // Small buffers on both sides, so that no single write can take it all.
    int send_buffer = 4096;
    ::setsockopt(client->GetFd(), SOL_SOCKET, SO_SNDBUF, &send_buffer, sizeof send_buffer);
    const std::string data = Pattern(100000);
    client->Send(data);
    std::set<std::size_t> pending_seen;
    ASSERT_TRUE(PollUntil([&] {
        pending_seen.insert(client->GetPendingOutput());
        peer->Read(1000);
        return peer->received.size() == data.size();
    }));
    EXPECT_EQ(peer->received, data);
    EXPECT_EQ(client->GetPendingOutput(), 0u);
    EXPECT_EQ(client->GetEvents(), POLLIN);  // no writability wanted once flushed
    EXPECT_GE(pending_seen.size(), 3u) << "written in one go";
}

TEST_F(SocketServerTest, ThrowingListenerClosesOnlyItsClient) {
    listener.on_request = [](SocketClient* client, const std::string& message) {
        if (message == "boom\n") throw std::runtime_error("bad request");
        client->Send(message);
    };
    auto victim = Connect();
    auto bystander = Connect();
    testing::internal::CaptureStdout();
    victim->Write("boom\n");
    bool victim_closed = PollUntil([&] {
        victim->Read();
        return victim->ended;
    });
    std::string output = testing::internal::GetCapturedStdout();
    ASSERT_TRUE(victim_closed);
    EXPECT_EQ(output, "SocketClient::HandleRead(): Got exception bad request\n");

    bystander->Write("ping\n");
    ASSERT_TRUE(PollUntil([&] {
        bystander->Read();
        return bystander->received == "ping\n";
    }));
    EXPECT_EQ(listener.removed, 1);
}

TEST_F(SocketServerTest, ResetPeerIsClosedWithItsError) {
    auto peer = Connect();
    testing::internal::CaptureStdout();
    peer->Reset();
    bool closed = PollUntil([&] { return listener.removed == 1; });
    std::string output = testing::internal::GetCapturedStdout();
    ASSERT_TRUE(closed);
    EXPECT_EQ(output,
              "SocketClient::HandleRead(): Got exception StreamFileBase: error in Read: "
              "Connection reset by peer\n");
}

TEST_F(SocketServerTest, ListenOnATakenPortFails) {
    SocketServer second("\n", AF_INET6);
    try {
        second.Listen(port);
        ADD_FAILURE() << "listening twice";
    } catch (const ErrnoError& e) {
        EXPECT_STREQ(e.what(), "Socket: unable to bind to ::: Address already in use");
    }
    EXPECT_EQ(second.GetPort(), -1);
}

TEST_F(SocketServerTest, ClientThatNeverReadsDoesNotStopOthers) {
    const std::string big = Pattern(1 << 20);
    listener.on_request = [&](SocketClient* client, const std::string& message) {
        client->Send(message == "big\n" ? big : message);
    };
    auto hog = Connect();
    SocketClient* hog_client = LastClient();
    for (int i = 0; i < 4; ++i) hog->Write("big\n");
    auto other = Connect();
    for (int i = 0; i < 20; ++i) {
        std::string line = "ping " + std::to_string(i) + "\n";
        other->received.clear();
        other->Write(line);
        ASSERT_TRUE(PollUntil([&] {
            other->Read();
            return other->received == line;
        }));
    }
    EXPECT_GT(hog_client->GetPendingOutput(), 0u);
    EXPECT_TRUE(hog_client->IsOpen());
}

TEST_F(SocketServerTest, ThousandClientsLeaveNoDescriptorsBehind) {
    const int before = OpenDescriptorCount();
    const int batch = 50;
    for (int round = 0; round < 1000 / batch; ++round) {
        std::vector<std::unique_ptr<Peer>> peers;
        for (int i = 0; i < batch; ++i) peers.push_back(std::unique_ptr<Peer>(new Peer(port)));
        int wanted = (round + 1) * batch;
        ASSERT_TRUE(PollUntil([&] { return listener.added == wanted; }));
        peers.clear();
        ASSERT_TRUE(PollUntil([&] { return listener.removed == wanted; }));
        // Closed clients of earlier rounds were purged as new ones came in.
        EXPECT_LE(server.GetClients().size(), static_cast<std::size_t>(2 * batch));
    }
    EXPECT_EQ(OpenDescriptorCount(), before);
}

TEST_F(SocketServerTest, ConnectsOutToAnotherServer) {
    std::vector<std::string> remote_log;
    RecordingListener remote_listener(remote_log);
    SocketServer remote("\n", AF_INET6);
    remote.AddListener(&remote_listener);
    remote.Listen(0);
    SocketAddress address("127.0.0.1");
    SocketAddress bound;
    remote.GetSocket().GetSockName(&bound);
    address.SetPort(bound.GetPort());

    SocketClient* outgoing = server.Connect(address, 5);
    EXPECT_TRUE(outgoing->IsOutgoing());
    EXPECT_EQ(log, std::vector<std::string>{"added"});
    outgoing->Send("hi\n");
    ASSERT_TRUE(PollUntil([&] { return remote_log.size() >= 3; }));
    EXPECT_EQ(remote_log,
              (std::vector<std::string>{"added", "connected", "request hi\n"}));
    outgoing->Close();
    outgoing->Send("dropped\n");
    EXPECT_EQ(outgoing->GetPendingOutput(), 0u);
    EXPECT_EQ(log.back(), "removed");
}

// A listener that tells the other clients when one leaves, as the hub does.
class FarewellListener : public SocketServerListener {
public:
    void ClientAdded(SocketClient*) override { ++added; }
    void ClientRemoved(SocketClient* leaving) override {
        for (SocketClient* other : leaving->GetServer()->GetClients())
            if (other != leaving && other->IsOpen()) {
                other->Send("left\n");
                ++farewells;
            }
    }
    int added = 0;
    int farewells = 0;
};

TEST(SocketServer, DestructorClosesEveryClientBeforeDeletingAny) {
    ::signal(SIGPIPE, SIG_IGN);
    FarewellListener listener;
    std::vector<std::unique_ptr<Peer>> peers;
    {
        SocketServer server("\n", AF_INET6);
        server.AddListener(&listener);
        server.Listen(0);
        SocketAddress bound;
        server.GetSocket().GetSockName(&bound);
        for (int i = 0; i < 2; ++i) peers.emplace_back(new Peer(bound.GetPort()));
        ASSERT_TRUE(PollUntil([&] { return listener.added == 2; }));
    }
    // Only the first to leave still had an open client to tell.
    EXPECT_EQ(listener.farewells, 1);
}
