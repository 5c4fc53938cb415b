#include "common/poll_processor.h"

#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

#include "tests/support/process.h"

namespace {

void Poll(std::int32_t timeout_ms) { PollProcessor::Instance().Poll(timeout_ms); }

TEST(MillisecondClock, CountsSmallStepsAndOneSecondForJumps) {
    MillisecondClock clock;
    const std::uint32_t t0 = 1700000000;
    EXPECT_EQ(clock.Read(t0, 250000), 1250);          // first reading lands near 1000 ms
    EXPECT_EQ(clock.Read(t0 + 10, 250000), 11250);    // +10 s counts in full
    EXPECT_EQ(clock.Read(t0 + 3610, 250000), 12250);  // +3600 s advances one second
    EXPECT_EQ(clock.Read(t0 + 100, 999999), 13999);   // backwards advances one second

    // Timers keep working when the readings wrap after 24.8 days.
    const std::int32_t late = INT32_MAX - 100, wrapped = INT32_MIN + 1899;
    EXPECT_EQ(MillisecondClock::Add(late, 2000), wrapped);
    EXPECT_EQ(MillisecondClock::Difference(wrapped, late), 2000);
    EXPECT_EQ(MillisecondClock::Difference(late, wrapped), -2000);
}

struct CountingTimer : PollTimer {
    int fired = 0;
    int rearm_ms = -1;
    void HandleTimer() override {
        ++fired;
        if (rearm_ms >= 0) Start(rearm_ms);
    }
};

TEST(PollTimer, FiresOnceWhenDueAndNotWhenDisarmed) {
    CountingTimer timer;
    timer.Register();
    timer.Start(500);
    auto begin = std::chrono::steady_clock::now();
    ASSERT_TRUE(WaitUntil([&] {
        Poll(2000);
        return timer.fired > 0;
    }));
    auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(timer.fired, 1);
    EXPECT_FALSE(timer.IsArmed());
    EXPECT_GE(waited, std::chrono::milliseconds(450));
    EXPECT_LT(waited, std::chrono::milliseconds(1900));

    timer.Start(0);
    timer.Start(-1);
    Poll(0);
    EXPECT_EQ(timer.fired, 1);

    timer.rearm_ms = 0;  // re-armed inside its callback: fires in the next pass
    timer.Start(0);
    Poll(0);
    Poll(0);
    EXPECT_EQ(timer.fired, 3);

    timer.Unregister();
    timer.Start(0);  // an unregistered timer cannot be started
    EXPECT_FALSE(timer.IsArmed());
}

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

}  // namespace
