// vela watch against the simulated analyzer and the daemon, without
// highlighting (NO_COLOR), so that set DIAG flags carry a "*".

#include <gtest/gtest.h>
#include <signal.h>

#include <regex>

#include "borealis/system/interface_status.h"
#include "tests/tools/vela_test_support.h"

namespace {

// The last frame drawn, without the terminal's control sequences.
std::string LastFrame(const std::string& output) {
    const auto start = output.rfind("\x1b[H");
    const std::string frame = start == std::string::npos ? "" : output.substr(start + 3);
    return std::regex_replace(frame, std::regex("\x1b\\[[0-9;?]*[A-Za-z]"), "");
}

TEST(VelaWatch, ShowsTheLatestDataRecordAndEndsCleanlyOnCtrlC) {
    AnalyzerUnderTest analyzer;
    for (const char* command :
         {"set CH4D 0.4", "set TEMP 25", "set PRESSURE 101", "set FLAGS 0x82"})
        ASSERT_EQ(analyzer.sim.Ask(command), "ok\n");
    auto vela = StartVela(analyzer.port, {"watch"});
    const std::string where = "localhost port " + std::to_string(analyzer.port);
    ASSERT_TRUE(WaitUntil([&] {
        return LastFrame(vela->Output()).find(where + ": connected") != std::string::npos;
    })) << vela->Output();
    // Seconds 2 to 5 of the analyzer's time: the third is the first whole
    // second counted.
    ASSERT_EQ(analyzer.sim.Ask("run 5000"), "ok\n");
    const std::string values =
        "  CH4           9.803 ppm\n"
        "  CH4 density   0.4000 mmol/m3\n"
        "  Temperature   25.00 C\n"
        "  Pressure      101.00 kPa\n"
        "  Signal (RSSI) 60\n"
        "  Records       40 a second, last 2026-01-01 00:00:05 UTC\n"
        "\n"
        "  DIAG 0x9000\n"
        "   BOXCONNECTED    BADAUXTC3       BADAUXTC2       BADAUXTC1     \n"
        "   MOTORFAILURE    CALIBRATING     BOTTOMHEATERON  TOPHEATERON   \n"
        "   PUMPON          MOTORSPINNING   BLOCKTEMPUNREG  LASERTEMPUNREG\n"
        "  *BADTEMP         REFUNLOCKED     NOSIGNAL       *NOTREADY      \n"
        "\n"
        "Ctrl-C ends the view.\n";
    EXPECT_TRUE(WaitUntil([&] {
        return LastFrame(vela->Output()).find(values) != std::string::npos;
    })) << LastFrame(vela->Output());
    vela->Signal(SIGINT);
    EXPECT_EQ(vela->Wait(), 0);
    const std::string output = vela->Output();
    // The greeting names the host the daemon runs on.
    EXPECT_EQ(LastFrame(output), "VELA " + GetHostName() +
                                     "  SN ch4-XXXX  version 1.0.14  box none\n" + where +
                                     ": connected\n\n" + values + "\n");
    EXPECT_EQ(output.substr(output.size() - 7), "\x1b[?25h\n");
}

}  // namespace
