#include "common/timestamp.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>

namespace {

struct TextAndValue {
    const char* text;
    double value;
};

// Each text is exactly how the value is written, and reads back as the value.
const TextAndValue kBothWays[] = {
    {"1989-01-01 00:00:00", 0},
    {"1989-01-01 00:00:00.001", 0.001},
    {"1989-01-01 00:00:09.999", 9.999},
    {"1989-01-01 00:00:10", 10},
    {"1989-03-01 00:00:00", 5097600},
    {"1989-12-31 23:59:59.999", 31535999.999},
    {"1992-02-29 00:00:00", 99705600},
    {"1992-03-01 00:00:00", 99792000},
    {"1992-12-31 23:59:58.5", 126230398.5},  // the last day of a leap year
    {"2001-03-01 00:00:00", 383788800},
    {"2050-06-15 12:00:00", 1939291200},  // beyond a 32-bit time_t
    {"2099-12-31 23:59:59.999", 3502828799.999},
};

// Partial times of day read as zero for what is missing; a time must follow
// one blank.
const TextAndValue kReadOnly[] = {
    {"1989-12-31 23:59", 31535940},
    {"1989-12-31 23", 31532400},
    {"1989-12-31", 31449600},
    {"1989-12-31T23:59:59", 31449600},
};

void ExpectReads(const TextAndValue& row) {
    std::istringstream in(row.text);
    Timestamp stamp(-1.0);
    in >> stamp;
    EXPECT_FALSE(in.fail()) << row.text;
    EXPECT_DOUBLE_EQ(stamp.get(), row.value) << row.text;
}

}  // namespace

TEST(Timestamp, WritesAndReadsItsText) {
    for (const TextAndValue& row : kBothWays) {
        std::ostringstream out;
        out << Timestamp(row.value);
        EXPECT_EQ(out.str(), row.text);
        ExpectReads(row);
    }
    for (const TextAndValue& row : kReadOnly) ExpectReads(row);
}

TEST(Timestamp, BadDateLeavesValueUnchangedAndFailsStream) {
    for (const char* text :
         {"", "x", "1989", "1989/01/01 00:00:00", "1989-01", "1989-01/01", "1989-xx-01"}) {
        std::istringstream in(text);
        Timestamp stamp(1234.5);
        in >> stamp;
        EXPECT_TRUE(in.fail()) << text;
        EXPECT_EQ(stamp.get(), 1234.5) << text;
    }
}

TEST(Timestamp, FieldsCarryAndTwoDigitYearsAndRangeLimit) {
    EXPECT_EQ(Timestamp(0, 1, 1, 0, 0, 0).get(), 347068800);     // 2000
    EXPECT_EQ(Timestamp(90, 1, 1, 0, 0, 0).get(), 31536000);     // 1990
    EXPECT_EQ(Timestamp(1989, 13, 1, 0, 0, 0).get(), 31536000);  // month 13
    EXPECT_EQ(Timestamp(1989, 1, 32, 0, 0, 60).get(), 2678460);  // day and second carry
    EXPECT_EQ(Timestamp(1988, 12, 31, 0, 0, 0).get(), 0);
    EXPECT_EQ(Timestamp(2100, 1, 1, 0, 0, 0).get(), 0);
    EXPECT_EQ(Timestamp(1989, 0, 1, 0, 0, 0).get(), 0);  // December 1988
    EXPECT_EQ(Timestamp(1989, INT_MIN, INT_MIN, INT_MAX, INT_MAX, 0).get(), 0);
}
