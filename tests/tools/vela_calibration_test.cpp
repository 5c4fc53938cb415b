// The calibration commands of vela against the simulated analyzer and the
// daemon: each prints the zero and the span before and after.

#include <gtest/gtest.h>

#include "tests/tools/vela_test_support.h"

namespace {

// A control command for the simulator ("sim ...") or a vela command line,
// and what vela gives.
struct Step {
    std::vector<std::string> args;
    VelaResult expected;
};

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
