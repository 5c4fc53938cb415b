// The checks every record passes before vela prints or logs it.

#include <gtest/gtest.h>

#include <cstdio>

#include "borealis/hub/record_line.h"
#include "tools/record_csv.h"
#include "tools/record_reader.h"

namespace {

// The line with its checksum column, as the daemon ends a record.
std::string Checked(const std::string& text) {
    char checksum[8];
    std::snprintf(checksum, sizeof checksum, "%3u", Checksum(text));
    return text + checksum;
}

// A line and what the reader makes of it: the record as CSV, "" for a line
// that is no record, or "bad: " and why the line is skipped.
struct Case {
    std::string line;
    std::string taken;
};

TEST(RecordReader, TakesRecordsThatMatchTheirChecksumAndHeaderOnly) {
    const std::string record = "DATACLOCK\t1767225601\t500\t2026-01-01\t00:00:01\t";
    std::string flipped = Checked(record);
    flipped[12] = '8';
    const Case cases[] = {
        {Checked(record), "DATACLOCK,1767225601,500,2026-01-01,00:00:01"},  // before its header
        {"DATACLOCKH\tSECONDS\tNANOSECONDS\tDATE\tTIME\tCHK", ""},
        {Checked(record), "DATACLOCK,1767225601,500,2026-01-01,00:00:01"},
        {flipped, "bad: wrong checksum"},
        {record.substr(0, record.size() - 1), "bad: wrong checksum"},
        {record + "93", "bad: wrong checksum"},
        {Checked("DATACLOCK\t1767225601\t500\t2026-01-01\t"),
         "bad: DATACLOCK record of 3 values, its header names 4"},
        {Checked("DATAS\t1000\t-5\t7\t"), "DATAS,1000,-5,7"},  // waveforms have no header
        {"DATAEVENT\tCONFIGCHANGED", ""},
        {"DATAMSG\tMessage from DSP: hello", ""},
        {"<norvance><vela><ack>true</ack></vela></norvance>", ""},
        {"", ""},
        {"DATEVENT\tCONFIGCHANGED", "bad: not a line of the analyzer"},
    };
    RecordReader reader;
    for (const Case& c : cases) {
        std::string taken;
        try {
            if (const auto record = reader.Take(c.line)) taken = CsvLine(*record, true);
        } catch (const BadRecord& error) {
            taken = std::string("bad: ") + error.what();
        }
        EXPECT_EQ(taken, c.taken) << c.line;
    }
}

TEST(RecordReader, NamesTheDiagBitsAsTheAnalyzerDoes) {
    RecordReader reader;
    EXPECT_EQ(reader.DiagFlags(0x9001),
              (std::vector<std::string>{"BOXCONNECTED", "BADTEMP", "NOTREADY"}));
    reader.Take("DATADIAGH\tFIRST\tSECOND");
    EXPECT_EQ(reader.DiagFlags(0x9003), (std::vector<std::string>{"FIRST", "SECOND"}));
}

}  // namespace
