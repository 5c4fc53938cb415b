#include <gtest/gtest.h>

#include "configurable/config_time.h"
#include "tests/configurable/test_tree.h"

namespace {

struct TimeLeaves {
    ConfigurableComposite L{"L"};
    ConfigurableTimestamp when{"when", Timestamp(0.0)};
    ConfigurableTime_HourMinutes at{"at", Timestamp(3600.0)};

    TimeLeaves() {
        L.add_child(&when);
        L.add_child(&at);
        L.set_changed(false);
    }
};

TEST(ConfigurableTime, HourMinutesReadsAndWritesHHMM) {
    TimeLeaves t;
    EXPECT_EQ(Process(t.L, "<L><at>13:45&query_item;</at></L>"), "13:45");
    EXPECT_EQ(t.at.value().get(), 49500.0);
    EXPECT_EQ(Process(t.L, "<L><at>13-45&query_item;</at></L>"),
              "<Error Param=\"at\">unable to read time (should be HH:MM)\n</Error>13:45");
    EXPECT_EQ(Process(t.L, "<L><at>:45</at><at>8:5&query_item;</at></L>"),
              "<Error Param=\"at\">unable to read time (should be HH:MM)\n</Error>08:05");
    EXPECT_EQ(Process(t.L, "<L><at> 25 : 00&query_item;</at></L>"), "01:00");
    EXPECT_EQ(t.at.value().get(), 90000.0);
    // Beyond 32 bits the analyzer's long cannot hold the hours.
    EXPECT_EQ(Process(t.L, "<L><at>2147483648:00&query_item;</at></L>"),
              "<Error Param=\"at\">unable to read time (should be HH:MM)\n</Error>");
}

TEST(ConfigurableTime, TimestampReadsPartialTimes) {
    TimeLeaves t;
    EXPECT_EQ(Process(t.L, "<L><when>2012-06-01 13:45&query_item;</when></L>"),
              "2012-06-01 13:45:00");
    EXPECT_EQ(Process(t.L, "<L><when>junk</when><when>&query_item;</when></L>"),
              "<Error Param=\"when\">unable to read Timestamp\n</Error>2012-06-01 13:45:00");
    EXPECT_EQ(Process(t.L, "&query_doctype_item;"),
              "<L><when>{YYYY-MM-DD HH:MM:SS.SS}</when><at>{HH:MM}</at></L>");
}

TEST(ConfigurableTime, SetMarksOnlyRealChanges) {
    TimeLeaves t;
    t.at.set(Timestamp(3600.0));
    EXPECT_FALSE(t.L.has_changed());
    t.at.set(Timestamp(7200.0));
    EXPECT_TRUE(t.L.has_changed());
    t.L.set_changed(false);
    t.L.set_default();
    EXPECT_EQ(t.at.value().get(), 3600.0);
    EXPECT_TRUE(t.at.has_changed());
    EXPECT_FALSE(t.when.has_changed());
}

}  // namespace
