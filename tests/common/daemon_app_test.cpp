#include "common/daemon_app.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "tests/support/error_text.h"
#include "tests/support/temp_root.h"

TEST(Signals, RecordedOnceAndClearedByTest) {
    sigset_t& set = received_signals();
    catch_signal(set, SIGUSR2);
    EXPECT_FALSE(test_and_clear_signal(set, SIGUSR2));
    ::raise(SIGUSR2);
    ::raise(SIGUSR2);
    EXPECT_TRUE(test_and_clear_signal(set, SIGUSR2));
    EXPECT_FALSE(test_and_clear_signal(set, SIGUSR2));

    ::raise(SIGUSR2);
    ignore_signal(set, SIGUSR2);  // forgets what was recorded
    EXPECT_FALSE(test_and_clear_signal(set, SIGUSR2));
    ::raise(SIGUSR2);  // ignored: not recorded, not fatal
    EXPECT_FALSE(test_and_clear_signal(set, SIGUSR2));
    default_signal(set, SIGUSR2);

    EXPECT_EQ(ErrorText([] { catch_signal(received_signals(), SIGKILL); }),
              "Unable to install signal handler: Invalid argument");
}

TEST(DaemonApp, SendSignalNeedsAPidFileNamingOneProcess) {
    TempRoot root(false);
    const std::string path = root / "borealis.pid";
    // 0 and -1 would signal a whole process group or every process. Signal 0
    // delivers nothing, so a regression here cannot hurt other processes. A
    // missing file is in the borealis process tests.
    for (const char* content : {"not a number\n", "", "0\n", "-1\n"}) {
        root.WriteFile("borealis.pid", content);
        EXPECT_EQ(ErrorText([&] { DaemonApp(path).send_signal(0); }),
                  "Unable to read PID file: " + path)
            << content;
    }
}
