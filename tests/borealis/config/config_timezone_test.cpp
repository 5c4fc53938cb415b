#include "borealis/config/config_timezone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ask.h"

namespace {

using Zones = std::vector<std::string>;

// The zone table is shared by the class: every test leaves it as it found it.
class ConfigTimezoneTest : public testing::Test {
protected:
    ConfigTimezoneTest() {
        ConfigTimezone first("zone");
        saved_ = ConfigTimezone::Zones();
    }
    ~ConfigTimezoneTest() override { ConfigTimezone::SetZones(saved_); }

    Zones saved_;
};

TEST_F(ConfigTimezoneTest, StartsWithUTCOnlyAndSetsZonesByName) {
    ConfigTimezone utc;
    EXPECT_EQ(ConfigTimezone::Zones(), Zones{"UTC"});
    EXPECT_EQ(utc.value_text(), "UTC");

    ConfigTimezone::SetZones({"Europe/Amsterdam", "Europe/Berlin", "UTC"});
    ConfigTimezone zone;
    EXPECT_EQ(zone.value_text(), "Europe/Amsterdam");
    zone.set("Europe/Berlin");
    EXPECT_EQ(zone.value(), 1);
    zone.set("Mars/Base");
    EXPECT_EQ(zone.value_text(), "Europe/Berlin");
    ConfigTimezone::SetZones({});
    EXPECT_EQ(ConfigTimezone::Zones().size(), 3u) << "an empty table is ignored";
}

TEST_F(ConfigTimezoneTest, ReadsAZoneTableSeparatedByBars) {
    ConfigurableComposite clock("clock");
    ConfigTimezone zone;
    clock.add_child(&zone);

    EXPECT_EQ(Ask(clock, "<clock><zone>{Asia/Tokyo||UTC}</zone></clock>"), "");
    EXPECT_EQ(ConfigTimezone::Zones(), (Zones{"Asia/Tokyo", "UTC"}));
    EXPECT_EQ(Ask(clock, "<clock><zone>UTC&query_item;&query_doctype_item;</zone></clock>"),
              "UTC {Asia/Tokyo|UTC}");
    EXPECT_EQ(Ask(clock, "<clock><zone>Europe/Berlin</zone></clock>"),
              "<Error Param=\"zone\">invalid option: Europe/Berlin\n</Error>");
}

}  // namespace
