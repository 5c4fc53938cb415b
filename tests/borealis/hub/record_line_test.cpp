#include "borealis/hub/record_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "borealis/dsp/dsp_device.h"
#include "borealis/hub/record_headers.h"
#include "borealis/upkeep/washme.h"

namespace {

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

TEST(RecordHeaders, DiagHeaderNamesEveryBitInItsColumn) {
    const std::string header = kDiagHeader;
    const std::pair<const char*, std::uint32_t> bits[] = {
        {"BOXCONNECTED", HubDiag::BOXCONNECTED},
        {"CALIBRATING", HubDiag::CALIBRATING},
        {"MOTORFAILURE", WashMe::Diag::MOTORFAILURE},
        {"BOTTOMHEATERON", WashMe::Diag::BOTTOMHEATERON},
        {"TOPHEATERON", WashMe::Diag::TOPHEATERON},
        {"PUMPON", WashMe::Diag::PUMPON},
        {"MOTORSPINNING", WashMe::Diag::MOTORSPINNING},
        {"BADAUXTC3", DSPDiag::BADAUXTC3},
        {"BADAUXTC2", DSPDiag::BADAUXTC2},
        {"BADAUXTC1", DSPDiag::BADAUXTC1},
        {"BLOCKTEMPUNREG", DSPDiag::BLOCKTEMPUNREG},
        {"LASERTEMPUNREG", DSPDiag::LASERTEMPUNREG},
        {"BADTEMP", DSPDiag::BADTEMP},
        {"REFUNLOCKED", DSPDiag::REFUNLOCKED},
        {"NOSIGNAL", DSPDiag::NOSIGNAL},
        {"NOTREADY", DSPDiag::NOTREADY}};
    for (const auto& b : bits) {
        // Column i (after the type word) is bit i: count the tabs before the name.
        const std::size_t at = header.find(std::string("\t") + b.first);
        ASSERT_NE(std::string::npos, at) << b.first;
        EXPECT_EQ(1u << std::count(header.begin(), header.begin() + at, '\t'), b.second) << b.first;
    }
}

}  // namespace
