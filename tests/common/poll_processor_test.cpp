#include "common/poll_processor.h"

#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

void Poll(std::int32_t timeout_ms) { PollProcessor::Instance().Poll(timeout_ms); }

// One end of a socket pair, readable and writable at once; records the
// handlers called.
struct PipeItem : PollItem {
    int fds[2];
    int fd;
    std::string calls;
    bool unregister_on_read = false;
    explicit PipeItem(short events) : PollItem(events) {
        if (::socketpair(AF_UNIX, SOCK_STREAM, 0, fds) != 0 || ::write(fds[1], "x", 1) != 1)
            throw std::runtime_error("socketpair");
        fd = fds[0];
    }
    ~PipeItem() override {
        ::close(fds[0]);
        ::close(fds[1]);
    }
    int GetFd() override { return fd; }
    void HandleRead() override {
        calls += "R";
        if (unregister_on_read) Unregister();
    }
    void HandleWrite() override { calls += "W"; }
};

TEST(PollItem, PolledOnlyWhileRegisteredWithEventsAndADescriptor) {
    PipeItem unregistering(POLLIN | POLLOUT), silent(0), negative(POLLIN);
    unregistering.unregister_on_read = true;
    negative.fd = -1;
    Poll(2000);
    Poll(0);
    EXPECT_EQ(unregistering.calls, "R");  // no write event once unregistered
    EXPECT_EQ(silent.calls, "");
    EXPECT_EQ(negative.calls, "");

    silent.SetEvents(POLLIN);  // the table is rebuilt with the new events
    Poll(2000);
    EXPECT_EQ(silent.calls, "R");
}

// The accept step deletes closed clients in the middle of a dispatch; a deleted
// item that was ready too is never called (the sanitizers see any call).
TEST(PollItem, ItemDeletedByAnEarlierHandlerIsNotCalled) {
    struct Deleting : PipeItem {
        PipeItem* victim = new PipeItem(POLLIN);  // ready too, dispatched after this one
        Deleting() : PipeItem(POLLIN) {}
        void HandleRead() override {
            calls += "R";
            delete victim;
        }
    } deleting;
    Poll(2000);
    EXPECT_EQ(deleting.calls, "R");
}

}  // namespace
