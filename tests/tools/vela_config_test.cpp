// vela get and set, the exit statuses scripts rely on, and the calibration
// commands, against the simulated analyzer and the daemon.

#include <gtest/gtest.h>

#include "tests/tools/vela_test_support.h"

namespace {

// A control command for the simulator ("sim ...") or a vela command line,
// and what vela gives.
struct Step {
    std::vector<std::string> args;
    VelaResult expected;
};

TEST(VelaConfig, GetsAndSetsElementsAndTellsWhatWentWrong) {
    AnalyzerUnderTest analyzer;
    const std::string refused =
        "vela: no answer within 0.5 s: the analyzer refused the request (its own output tells "
        "why)\n";
    const Step steps[] = {
        {{"get", "output/rate"}, {0, "40\n"}},
        {{"get", "vela/cfg/heater/top"},
         {0,
          "<top>\n  <heaterpower>100</heaterpower>\n  <control>auto</control>\n  "
          "<ontime>00:00</ontime>\n"
          "  <offtime>00:00</offtime>\n  <deltat>0</deltat>\n</top>\n"}},
        {{"set", "output/rate", "10"}, {0, "10\n"}},
        {{"get", "output/rate"}, {0, "10\n"}},
        // Kept within its range; a read-only value is left as it was.
        {{"set", "cfg/linelock/laserblock/temp", "60"}, {0, "50\n"}},
        {{"set", "ver", "2.0"}, {0, "1.0.14\n"}},
        {{"set", "factory/serialnumber", "ch4 <0042> & co"}, {0, "ch4 <0042> & co\n"}},
        {{"set", "output/rate", "3", "--timeout", "0.5"}, {1, refused}},
        {{"get", "cfg/nothing"}, {1, "vela: the analyzer has no element vela/cfg/nothing\n"}},
        {{"get", "cfg/no thing"}, {2, "vela: not a path of elements below vela: cfg/no thing\n"}},
        {{"set", "output/rate"},
         {2, "vela: set: an argument is missing\nusage: vela set PATH VALUE\n"}},
        {{"get", "output/rate", "--csv"}, {2, "vela: get takes no --csv\nusage: vela get PATH\n"}},
    };
    for (const Step& step : steps) EXPECT_EQ(RunVela(analyzer.port, step.args), step.expected);
    EXPECT_NE(analyzer.daemon.Process().Output().find(
                  "GotRequest: Error with request: "
                  "<norvance><vela><output><rate>3</rate></output></vela></norvance>"),
              std::string::npos);
}

TEST(VelaConfig, ExitsWithThreeWhenTheAnalyzerCannotBeReached) {
    const unsigned short port = UniqueTestPort();  // nothing listens there
    const VelaResult result = RunVela(port, {"get", "output/rate"});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, "vela: cannot connect to localhost port " + std::to_string(port) +
                                 ": Socket: unable to connect to 127.0.0.1: Connection refused\n");
}

// Each calibration command prints the zero and the span before and after.
TEST(VelaCalibration, ReportsEachStepAndTheAnalyzersRefusal) {
    AnalyzerUnderTest analyzer;
    const Step steps[] = {
        {{"sim", "set CH4D 0.4"}, {}},
        {{"sim", "set TEMP 25"}, {}},
        {{"sim", "set PRESSURE 101"}, {}},
        {{"zero"}, {1, "vela: the analyzer says: CH4 zero not taken: no data received yet\n"}},
        {{"sim", "run 3000"}, {}},
        {{"zero"}, {0, "ch4zero 0 -> 0.4\nch4span 1\n"}},
        {{"sim", "set CH4D 0.5"}, {}},
        {{"sim", "run 1000"}, {}},
        {{"span", "2"}, {0, "ch4zero 0.4\nch4span 1 -> 0.816045\n"}},
        {{"span", "-2"},
         {2, "vela: span: PPM is a concentration above 0: -2\nusage: vela span PPM\n"}},
        {{"commit"}, {0, "ch4zero 0.4\nch4span 0.816045\n"}},
        {{"sim", "set CH4D 0.45"}, {}},
        {{"sim", "run 1000"}, {}},
        {{"zero"}, {0, "ch4zero 0.4 -> 0.45\nch4span 0.816045\n"}},
        {{"rollback"}, {0, "ch4zero 0.45 -> 0.4\nch4span 0.816045\n"}},
    };
    for (const Step& step : steps) {
        if (step.args[0] == "sim")
            ASSERT_EQ(analyzer.sim.Ask(step.args[1]), "ok\n");
        else
            EXPECT_EQ(RunVela(analyzer.port, step.args), step.expected) << step.args[0];
    }
}

}  // namespace
