#include "borealis/system/time_settings.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <ctime>

#include "borealis/platform/sim_platform.h"
#include "borealis/system/ptp_settings.h"
#include "tests/support/error_text.h"
#include "tests/support/temp_root.h"

namespace {

const std::string kZones = "/usr/share/zoneinfo/posix";

std::string BigEndian(int value) {
    const auto bits = static_cast<unsigned>(value);
    return {static_cast<char>(bits >> 24), static_cast<char>(bits >> 16),
            static_cast<char>(bits >> 8), static_cast<char>(bits)};
}

// A compiled zone of one fixed offset from UTC, without transitions.
std::string FixedZone(int offset_seconds) {
    std::string zone = "TZif" + std::string(16, '\0');
    for (int count : {0, 0, 0, 0, 1, 4}) zone += BigEndian(count);  // one type, 4 name bytes
    return zone + BigEndian(offset_seconds) + std::string(2, '\0') + std::string("ZZZ", 4);
}

// The tests change the process's local time; it is given back.
class TimeSettingsTest : public ::testing::Test {
protected:
    ~TimeSettingsTest() override {
        saved_tz_.empty() ? ::unsetenv("TZ") : ::setenv("TZ", saved_tz_.c_str(), 1);
        ::tzset();
    }

    const std::string saved_tz_ = std::getenv("TZ") ? std::getenv("TZ") : "";
    TempRoot root_;
    SimPlatform platform_{root_.path(), 4410};
};

int LocalHourAtEpoch() {
    const std::time_t epoch = 0;
    return std::localtime(&epoch)->tm_hour;
}

// The zone recorded, known or not, is in the system_zone_recorded scenario.
TEST_F(TimeSettingsTest, ListsZonesFolderByFolder) {
    for (const char* name : {"/UTC", "/Europe/Berlin", "/Europe/Amsterdam", "/.hidden"})
        root_.WriteFile(kZones + name, "");
    EXPECT_EQ(TimeSettings(platform_).zones(),
              (std::vector<std::string>{"Europe/Amsterdam", "Europe/Berlin", "UTC"}));
    EXPECT_EQ(ErrorText([&] { ScanZones(root_ / "/nowhere"); }),
              "Unable to open timezone directory: " + root_.path() +
                  "/nowhere: No such file or directory");
}

TEST_F(TimeSettingsTest, SetZoneInstallsTheZoneAndLocalTimeFollowsIt) {
    const std::pair<const char*, int> zones[] = {
        {"/UTC", 0}, {"/Europe/Berlin", 1}, {"/Asia/Tokyo", 9}};
    for (const auto& zone : zones)
        root_.WriteFile(kZones + zone.first, FixedZone(zone.second * 3600));
    root_.WriteFile("/etc/localtime", FixedZone(0));
    platform_.FollowLocalTimeFile();
    TimeSettings time(platform_);

    // The zone's files and the local time after one change are in the
    // system_zone scenario; a second change can come within the same
    // second, where the file's time stamp need not change.
    time.SetZone("/Europe/Berlin");
    EXPECT_EQ(LocalHourAtEpoch(), 1);
    time.SetZone("Asia/Tokyo");
    EXPECT_EQ(LocalHourAtEpoch(), 9);

    EXPECT_EQ(ErrorText([&] { time.SetZone("Mars/Base"); }), "Invalid timezone \"Mars/Base\"");
    EXPECT_EQ(time.current_zone(), "Asia/Tokyo");
    EXPECT_EQ(root_.ReadFile("/etc/timezone"), "Asia/Tokyo\n");
}

// Past January 2038 on the analyzer's 32-bit board: both clocks set right.
TEST_F(TimeSettingsTest, SetsBothClocksPast2038) {
    root_.WriteFile(kZones + "/UTC", "");
    TimeSettings time(platform_);
    root_.WriteFile("/etc/sysconfig/ptpd", "PTPD_OPTS=-p\n");
    time.ClockTimeChanged(2224713600, PtpSettings(platform_));
    EXPECT_EQ(root_.ReadFile("/var/log/platform-actions.log"),
              "settime 2224713600 0\nrtc 2040-07-01 00:00:00\n");
}

}  // namespace
