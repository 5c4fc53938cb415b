#include "borealis/hub/record_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "borealis/dsp/dsp_device.h"
#include "borealis/hub/record_headers.h"

namespace {

TEST(RecordLine, PrintsFieldsAndRightAlignedChecksum) {
    const float inf = std::numeric_limits<float>::infinity();
    const struct {
        std::string line;
        const char* expected;
    } cases[] = {
        {RecordLine("DATA").Int(1).Finish(), "DATA\t1\t 93\n"},
        {RecordLine("DATA").Int(1899).Finish(), "DATA\t1899\t  7\n"},
        {RecordLine("DATA").Int(1199).Finish(), "DATA\t1199\t  0\n"},
        {RecordLine("DATA").Int(4294967295).Int(-2147483648LL).Float(2.5f).Finish(),
         "DATA\t4294967295\t-2147483648\t2.5\t 40\n"},
        {RecordLine("T").Text("abc").Finish(), "T\tabc\t140\n"},
        {RecordLine("F").Float(0.1234f).Finish(), "F\t0.1234\t128\n"},
        {RecordLine("F").Float(1e-07f).Finish(), "F\t1e-07\t130\n"},
        {RecordLine("F").Float(123456789.0f).Finish(), "F\t1.23457e+08\t180\n"},
        {RecordLine("F").Float(100000.0f).Finish(), "F\t100000\t121\n"},
        {RecordLine("F").Float(1e6f).Finish(), "F\t1e+06\t127\n"},
        {RecordLine("F").Float(-0.0f).Finish(), "F\t-0\t181\n"},
        {RecordLine("F").Float(std::nanf("")).Finish(), "F\tnan\t149\n"},
        {RecordLine("F").Float(-std::nanf("")).Finish(), "F\tnan\t149\n"},
        {RecordLine("F").Float(inf).Finish(), "F\tinf\t149\n"},
        {RecordLine("F").Float(-inf).Finish(), "F\t-inf\t194\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.expected, c.line);
    }
}

// Splits a header line into its column names, without the type word.
std::vector<std::string> ColumnNames(const char* header) {
    std::istringstream in(header);
    std::vector<std::string> names;
    std::string name;
    std::getline(in, name, '\t');
    while (std::getline(in, name, '\t')) {
        if (name.back() == '\n') {
            name.pop_back();
        }
        names.push_back(name);
    }
    return names;
}

TEST(RecordHeaders, DiagBitsFollowTheDiagHeaderColumns) {
    const struct {
        const char* name;
        std::uint32_t bit;
    } bits[] = {
        {"BOXCONNECTED", HubDiag::BOXCONNECTED},     {"BADAUXTC3", DSPDiag::BADAUXTC3},
        {"BADAUXTC2", DSPDiag::BADAUXTC2},           {"BADAUXTC1", DSPDiag::BADAUXTC1},
        {"MOTORFAILURE", HubDiag::MOTORFAILURE},     {"CALIBRATING", HubDiag::CALIBRATING},
        {"BOTTOMHEATERON", HubDiag::BOTTOMHEATERON}, {"TOPHEATERON", HubDiag::TOPHEATERON},
        {"PUMPON", HubDiag::PUMPON},                 {"MOTORSPINNING", HubDiag::MOTORSPINNING},
        {"BLOCKTEMPUNREG", DSPDiag::BLOCKTEMPUNREG}, {"LASERTEMPUNREG", DSPDiag::LASERTEMPUNREG},
        {"BADTEMP", DSPDiag::BADTEMP},               {"REFUNLOCKED", DSPDiag::REFUNLOCKED},
        {"NOSIGNAL", DSPDiag::NOSIGNAL},             {"NOTREADY", DSPDiag::NOTREADY},
    };
    const std::vector<std::string> names = ColumnNames(kDiagHeader);
    ASSERT_EQ(16u, names.size());
    for (const auto& b : bits) {
        const auto at = std::find(names.begin(), names.end(), b.name) - names.begin();
        EXPECT_EQ(1u << at, b.bit) << b.name;
    }
}

}  // namespace
