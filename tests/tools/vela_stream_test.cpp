// vela stream and vela log against the simulated analyzer and the daemon.
// The simulator's data clock gives the first data record at 3025 ms of its
// time (2026-01-01 00:00:02.025 UTC), then one every 25 ms.

#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/vela_test_support.h"

namespace {

// The lines vela wrote on standard output (its own "vela: " lines left out).
std::vector<std::string> Printed(const std::string& output) {
    std::vector<std::string> lines;
    std::istringstream in(output);
    for (std::string line; std::getline(in, line);)
        if (line.rfind("vela: ", 0) != 0) lines.push_back(line);
    return lines;
}

std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, ',');) fields.push_back(field);
    return fields;
}

// Starts vela with `args`, plays `ms` of the analyzer's time once vela says
// that it has begun, and waits for vela to end.
VelaResult Play(AnalyzerUnderTest& analyzer, const std::vector<std::string>& args, int ms) {
    auto vela = StartVela(analyzer.port, args);
    WaitUntil([&] { return vela->Output().find(" from VELA ") != std::string::npos; });
    EXPECT_EQ(analyzer.sim.Ask("run " + std::to_string(ms)), "ok\n");
    const int status = vela->Wait();
    return {status, vela->Output()};
}

void SetGas(AnalyzerUnderTest& analyzer) {
    for (const char* command :
         {"set CH4D 0.4", "set TEMP 25", "set PRESSURE 101", "set FLAGS 0x82"})
        ASSERT_EQ(analyzer.sim.Ask(command), "ok\n");
}

// Every record of the first three seconds, each type's header line before
// its first record; the data records carry the values the simulator played.
TEST(VelaStream, PrintsEveryRecordAsCsvAfterItsTypesHeader) {
    AnalyzerUnderTest analyzer;
    SetGas(analyzer);
    const VelaResult result =
        Play(analyzer, {"stream", "--status", "--clock", "--count", "44"}, 3000);
    ASSERT_EQ(result.status, 0) << result;
    std::vector<std::string> headers, types;
    int data = 0;
    for (const std::string& line : Printed(result.output)) {
        const std::vector<std::string> fields = Fields(line);
        if (fields[0].back() == 'H') {
            headers.push_back(fields[0] + " " + std::to_string(fields.size() - 1));
            continue;
        }
        if (types.empty() || types.back() != fields[0]) types.push_back(fields[0]);
        if (fields[0] != "DATA") continue;
        // MSEC, SECONDS, NANOSECONDS, DIAG, CH4D, CH4, TEMP, PRESSURE
        const int msec = 3025 + 25 * data++;
        EXPECT_EQ(
            std::vector<std::string>(fields.begin() + 1, fields.begin() + 9),
            (std::vector<std::string>{
                std::to_string(msec), std::to_string(1767225600 + (msec - 1000) / 1000),
                std::to_string((msec % 1000) * 1000000), "36864", "0.4", "9.80336", "25", "101"}));
    }
    EXPECT_EQ(data, 40);
    EXPECT_EQ(headers, (std::vector<std::string>{"DATASTATH 24", "DATACLOCKH 4", "DATAH 21"}));
    EXPECT_EQ(types, (std::vector<std::string>{"DATASTAT", "DATACLOCK", "DATA", "DATACLOCK", "DATA",
                                               "DATASTAT"}));
}

TEST(VelaStream, NamesTheColumnsAndTheSetDiagFlagsInJson) {
    AnalyzerUnderTest analyzer;
    SetGas(analyzer);
    const VelaResult result = Play(analyzer, {"stream", "--json", "--count", "1"}, 3025);
    ASSERT_EQ(result.status, 0) << result;
    EXPECT_EQ(Printed(result.output),
              std::vector<std::string>{
                  "{\"type\":\"DATA\",\"MSEC\":3025,\"SECONDS\":1767225602,\"NANOSECONDS\":"
                  "25000000,\"DIAG\":36864,"
                  "\"DIAGFLAGS\":[\"BADTEMP\",\"NOTREADY\"],\"CH4D\":0.4,\"CH4\":9.80336,\"TEMP\":"
                  "25,\"PRESSURE\":101,"
                  "\"RSSI\":60,\"DROPRATE\":0,\"AUX1\":0,\"AUX2\":0,\"AUX3\":0,\"AUX4\":0,\"AUX5\":"
                  "0,\"AUX6\":0,"
                  "\"AUX7\":0,\"AUX8\":0,\"AUXTC1\":20,\"AUXTC2\":20,\"AUXTC3\":20}"});
}

// A second run of the logger appends to the day's file without a second
// header, after dropping the partial line a crash left.
TEST(VelaLog, AppendsToTheDaysFileAcrossARestart) {
    AnalyzerUnderTest analyzer;
    const std::string folder = analyzer.root / "/log/vela";
    const std::string file = "/log/vela/2026-01-01_DATA.csv";
    ASSERT_EQ(Play(analyzer, {"log", folder, "--count", "40"}, 3000).status, 0);
    const std::string first_run = analyzer.root.ReadFile(file);
    analyzer.root.WriteFile(file, first_run + "5025,17672");
    const VelaResult second = Play(analyzer, {"log", folder, "--count", "40"}, 1000);
    ASSERT_EQ(second.status, 0) << second;
    EXPECT_NE(second.output.find("vela: " + folder +
                                 "/2026-01-01_DATA.csv: dropped a partial last line of 10 bytes\n"),
              std::string::npos)
        << second.output;
    std::vector<std::string> lines = Printed(analyzer.root.ReadFile(file));
    ASSERT_EQ(lines.size(), 81u);
    EXPECT_EQ(
        lines[0],
        "MSEC,SECONDS,NANOSECONDS,DIAG,CH4D,CH4,TEMP,PRESSURE,RSSI,DROPRATE,AUX1,AUX2,AUX3,AUX4,"
        "AUX5,AUX6,AUX7,AUX8,AUXTC1,AUXTC2,AUXTC3");
    for (std::size_t i = 1; i < lines.size(); ++i)
        EXPECT_EQ(Fields(lines[i])[0], std::to_string(3000 + 25 * i)) << "line " << i;
}

}  // namespace
