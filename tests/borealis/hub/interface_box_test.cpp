#include "borealis/hub/interface_box.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

TEST(InterfaceBox, ReportsGiveNineNumbersThenModelAndDescription) {
    const struct {
        const char* fields;
        bool valid;
        const char* model;
        const char* description;
    } rows[] = {
        {" 100 5 1 7.5 3.25 0.1 0.2 0.3 0.4\n", true, "4460", "Unknown"},
        {" 100 5 1 7.5 3.25 0.1 0.2 0.3 0.4 Base\n", true, "Base", ""},
        {" 100 5 1 7.5 3.25 0.1 0.2 0.3 0.4 Box7  second floor\n", true, "Box7", "  second floor"},
        {" 100 5 1 7.5 3.25 0.1 0.2 0.3\n", false, "", ""},
        {" 100 5 x 7.5 3.25 0.1 0.2 0.3 0.4\n", false, "", ""},
    };
    for (const auto& row : rows) {
        std::istringstream in(row.fields);
        BoxReport report;
        ASSERT_EQ(ParseBoxReport(in, report), row.valid) << row.fields;
        if (!row.valid) continue;
        EXPECT_EQ(report.model, row.model) << row.fields;
        EXPECT_EQ(report.description, row.description) << row.fields;
        EXPECT_EQ(report.seconds, 100);
        EXPECT_EQ(report.nanoseconds, 5);
        EXPECT_EQ(report.usb, 1);
        EXPECT_EQ(report.aux, (std::array<float, 4>{0.1f, 0.2f, 0.3f, 0.4f}));
    }
}

}  // namespace
