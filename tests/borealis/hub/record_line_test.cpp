#include "borealis/hub/record_line.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// The DIAG header's columns and the bits they name are in every scenario's
// greeting and in the records_diag and upkeep scenarios.
TEST(RecordLine, PrintsFieldsAndRightAlignedChecksum) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::nanf("");
    EXPECT_EQ("DATA\t1\t 93\n", RecordLine("DATA").Int(1).Finish());
    EXPECT_EQ("DATA\t1899\t  7\n", RecordLine("DATA").Int(1899).Finish());
    EXPECT_EQ("DATA\t4294967295\t-2147483648\tabc\t0.1234\t1e-07\t1.23457e+08\t1e+06\t178\n",
              RecordLine("DATA")
                  .Int(4294967295)
                  .Int(-2147483648LL)
                  .Text("abc")
                  .Float(0.1234f)
                  .Float(1e-07f)
                  .Float(123456789.0f)
                  .Float(1e6f)
                  .Finish());
    EXPECT_EQ("F\t-0\tnan\tnan\tinf\t-inf\t250\n",
              RecordLine("F").Float(-0.0f).Float(nan).Float(-nan).Float(inf).Float(-inf).Finish());
}

}  // namespace
