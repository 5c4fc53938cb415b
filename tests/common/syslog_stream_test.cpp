#include "common/syslog_stream.h"

#include <syslog.h>

#include <gtest/gtest.h>

#include <ostream>
#include <utility>
#include <vector>

#include "tests/support/error_text.h"

namespace {

struct CapturedSysLog : SysLog {
    std::vector<std::pair<int, std::string>> lines;
    CapturedSysLog() {
        SetWriter(
            [this](int priority, const std::string& text) { lines.emplace_back(priority, text); });
    }
};

TEST(SysLog, IdentityIsSetOnceAndNeverChanged) {
    CapturedSysLog log;
    EXPECT_EQ(ErrorText([&] { log.Write("x\n", 5); }), "SysLog: Undefined identity");
    EXPECT_EQ(ErrorText([&] { log.SetIdentity(""); }), "SysLog: Undefined identity");
    EXPECT_EQ(ErrorText([&] { log.SetIdentity("UNKNOWN"); }),
              "SysLog: 'UNKNOWN' is not a valid identity");
    EXPECT_EQ(ErrorText([&] { log.SetIdentity("borealis"); }), "");
    EXPECT_EQ(ErrorText([&] { log.SetIdentity("borealis"); }), "");
    EXPECT_EQ(ErrorText([&] { log.SetIdentity("other"); }), "SysLog: Identity cannot be changed");
    EXPECT_EQ(log.Identity(), "borealis");
}

TEST(SyslogBuf, SendsEachCompletedLineWhole) {
    CapturedSysLog log;
    syslogbuf buffer("borealis", 3, &log);
    std::ostream out(&buffer);
    out << "abc" << std::flush;
    EXPECT_TRUE(log.lines.empty());  // flushing sends nothing without a newline
    out << "\n";
    out << "two\nlines\n";
    out.write("a\0b\n", 4);
    const std::vector<std::pair<int, std::string>> want = {
        {LOG_WARNING, "abc\n"},  // the level given at construction
        {LOG_INFO, "two\n"},     // later lines fall back to informational
        {LOG_INFO, "lines\n"},
        {LOG_INFO, std::string("a\0b\n", 4)},
    };
    EXPECT_EQ(log.lines, want);
}

}  // namespace
