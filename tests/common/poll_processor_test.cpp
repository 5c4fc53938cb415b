#include "common/poll_processor.h"

#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

namespace {

TEST(PollProcessor, NormalisesTimeouts) {
    struct Case { long sec, usec, want_sec, want_usec; };
    const Case cases[] = {
        {0, 0, 0, 0},         {0, 1, 0, 1},           {1, 0, 1, 0},
        {0, 999999, 0, 999999}, {0, 1000000, 1, 0},   {1, 1000000, 2, 0},
        {0, 1000001, 1, 1},   {0, 1000002, 1, 2},     {100, 1000001, 101, 1},
        {100, 1000002, 101, 2}, {100, 10000001, 110, 1}, {100, 10000002, 110, 2},
        {101, 999999, 101, 999999},
    };
    for (const Case& c : cases) {
        struct timeval tv;
        tv.tv_sec = c.sec;
        tv.tv_usec = c.usec;
        NormaliseTimeout(tv);
        EXPECT_EQ(tv.tv_sec, c.want_sec) << c.sec << "," << c.usec;
        EXPECT_EQ(tv.tv_usec, c.want_usec) << c.sec << "," << c.usec;
    }
}

TEST(MillisecondClock, CountsSmallStepsAndOneSecondForJumps) {
    MillisecondClock clock;
    const std::uint32_t t0 = 1700000000;
    EXPECT_EQ(clock.Read(t0, 250000), 1250);        // first reading lands near 1000 ms
    EXPECT_EQ(clock.Read(t0 + 5, 250000), 6250);    // +5 s counts in full
    EXPECT_EQ(clock.Read(t0 + 15, 250000), 16250);  // +10 s still counts in full
    EXPECT_EQ(clock.Read(t0 + 3615, 250000), 17250);  // +3600 s advances one second
    EXPECT_EQ(clock.Read(t0 + 100, 0), 18000);      // backwards advances one second
    EXPECT_EQ(clock.Read(t0 + 101, 999999), 19999);

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
    while (timer.fired == 0) PollProcessor::Instance().Poll(2000);
    auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(timer.fired, 1);
    EXPECT_FALSE(timer.IsArmed());
    EXPECT_GE(waited, std::chrono::milliseconds(450));
    EXPECT_LT(waited, std::chrono::milliseconds(1900));

    timer.Start(0);
    timer.Start(-1);
    PollProcessor::Instance().Poll(0);
    EXPECT_EQ(timer.fired, 1);

    timer.Start(0);
    PollProcessor::Instance().Poll(0);
    EXPECT_EQ(timer.fired, 2);

    timer.Unregister();
    timer.Start(0);  // an unregistered timer cannot be started
    EXPECT_FALSE(timer.IsArmed());
}

TEST(PollTimer, RearmedInsideCallbackFiresInNextPass) {
    CountingTimer timer;
    timer.Register();
    timer.rearm_ms = 0;
    timer.Start(0);
    PollProcessor::Instance().Poll(2000);
    EXPECT_EQ(timer.fired, 1);
    PollProcessor::Instance().Poll(2000);
    EXPECT_EQ(timer.fired, 2);
}

// One end of a socket pair is polled; records the handlers called.
struct PipeItem : PollItem {
    int fds[2];
    std::string calls;
    bool unregister_on_read = false;
    explicit PipeItem(short events) : PollItem(events) {
        if (::socketpair(AF_UNIX, SOCK_STREAM, 0, fds) != 0) throw std::runtime_error("socketpair");
    }
    ~PipeItem() override {
        ::close(fds[0]);
        ::close(fds[1]);
    }
    int fd_override = -2;
    int GetFd() override { return fd_override == -2 ? fds[0] : fd_override; }
    void HandleRead() override {
        calls += "R";
        char c;
        if (::read(fds[0], &c, 1) != 1) calls += "!";
        if (unregister_on_read) Unregister();
    }
    void HandleWrite() override { calls += "W"; }
};

TEST(PollItem, HandlerThatUnregistersGetsNoFurtherEvents) {
    PipeItem item(POLLIN | POLLOUT);  // readable and writable at once
    item.unregister_on_read = true;
    ASSERT_EQ(::write(item.fds[1], "x", 1), 1);
    PollProcessor::Instance().Poll(2000);
    EXPECT_EQ(item.calls, "R");
    ASSERT_EQ(::write(item.fds[1], "y", 1), 1);
    PollProcessor::Instance().Poll(0);
    EXPECT_EQ(item.calls, "R");
}

TEST(PollItem, NotPolledWithoutEventsOrDescriptor) {
    PipeItem silent(0);
    PipeItem negative(POLLIN);
    negative.fd_override = -1;
    ASSERT_EQ(::write(silent.fds[1], "x", 1), 1);
    ASSERT_EQ(::write(negative.fds[1], "x", 1), 1);
    PollProcessor::Instance().Poll(0);
    PollProcessor::Instance().Poll(0);
    EXPECT_EQ(silent.calls, "");
    EXPECT_EQ(negative.calls, "");

    silent.SetEvents(POLLIN);  // the table is rebuilt with the new events
    PollProcessor::Instance().Poll(2000);
    EXPECT_EQ(silent.calls, "R");
}

struct CountingIdle : PollIdleHandler {
    int calls = 0;
    int wanted = 0;  // how many calls ask to be called again
    bool HandleIdle() override { return ++calls <= wanted; }
};

TEST(PollIdleHandler, CalledOnQuietPassesUntilDone) {
    CountingIdle idle;
    idle.wanted = 2;
    idle.Register();
    auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 3; ++i) PollProcessor::Instance().Poll(2000);
    EXPECT_EQ(idle.calls, 3);
    // Three quiet passes with time-out 0: none of them slept.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1500));

    // Done now: the next pass sleeps until a timer wakes it, after which
    // the handler gets its turn again.
    CountingTimer timer;
    timer.Register();
    timer.Start(100);
    while (timer.fired == 0) PollProcessor::Instance().Poll(2000);
    EXPECT_EQ(timer.fired, 1);
    EXPECT_EQ(idle.calls, 4);
}

}  // namespace
