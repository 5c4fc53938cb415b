#include "borealis/config/config_files.h"

#include <gtest/gtest.h>

#include "borealis/config/calibration.h"
#include "borealis/config/doc4410.h"
#include "borealis/platform/sim_platform.h"
#include "tests/support/ask.h"
#include "tests/support/temp_root.h"

namespace {

class ConfigFilesTest : public testing::Test {
protected:
    ConfigFilesTest() { doc.set_throw_errors(true); }

    TempRoot root;
    SimPlatform platform{root.path(), 4410};
    Doc4410 doc;
    ConfigFiles files{doc, platform};
};

// The settings and factory files are shown whole by the scenarios.
TEST_F(ConfigFilesTest, CalibrationFileHoldsTheCalibrationOnly) {
    doc.vela.cal.history.append(Timestamp(2024, 5, 1, 12, 0, 0), "CH4 Zero", 0.25f, 1);
    files.SaveCalConf();
    EXPECT_EQ(root.ReadFile("/etc/cal.conf").rfind("\n<norvance>\n\t<vela>\n\t\t<cal>", 0), 0u);
}

TEST_F(ConfigFilesTest, LoadsRestoreWhatWasSavedAndResetWhatIsMissing) {
    Ask(doc,
        "<norvance><vela><output><rate>5</rate></output><factory><pzero>1.5</pzero></factory>"
        "</vela></norvance>");
    doc.vela.cal.history.append(Timestamp(2024, 5, 1, 12, 0, 0), "CH4 Zero", 0.25f, 1);
    doc.vela.cal.history.append(Timestamp(2024, 5, 1, 12, 5, 0), "CH4 Span: 2 ppm", 0.25f, 1.5f);
    files.SaveVelaConf();
    files.SaveCalConf();
    files.SaveFactoryConf();

    Doc4410 loaded;
    loaded.set_throw_errors(true);
    ConfigFiles loader(loaded, platform);
    loader.LoadFactoryConf();
    loader.LoadCalConf();
    int filled = 0;
    loader.LoadVelaConf([&] { ++filled; });
    EXPECT_EQ(filled, 1);
    const char query[] =
        "<norvance><vela><output><rate>&query_item;</rate></output>"
        "<factory><pzero>&query_item;</pzero></factory>"
        "<cal><history>&query_item;</history></cal></vela></norvance>";
    EXPECT_EQ(Ask(loaded, query), Ask(doc, query));

    ::unlink((root / "/etc/cal.conf").c_str());
    ::unlink((root / "/etc/vela.conf").c_str());
    loader.LoadCalConf();
    loader.LoadVelaConf([&] { ++filled; });
    EXPECT_EQ(filled, 1) << "no system values without the file";
    EXPECT_EQ(Ask(loaded,
                  "<norvance><vela><output><rate>&query_item;</rate></output><cal>"
                  "<history>&query_item;</history><ch4span>&query_item;</ch4span></cal>"
                  "</vela></norvance>"),
              "40 1");
}

TEST_F(ConfigFilesTest, ABrokenFileIsThrownOutOfTheLoad) {
    root.WriteFile("/etc/cal.conf",
                   "<norvance><vela><cal><ch4zero>x</ch4zero></cal></vela></norvance>");
    EXPECT_THROW(files.LoadCalConf(), Configurable::Error);
}

// The history each step writes, and a step refused without data, are in the
// calibration scenarios, whose records are all alike: here the mean.
TEST(CalibrationArithmetic, MeansExpectedDensityAndSpan) {
    std::deque<DSPDataRecord> recent(4);
    const float raw[] = {0.2f, 0.3f, 0.25f, 0.25f};
    for (int i = 0; i < 4; ++i) {
        recent[i].values[DSPDataRecord::CH4D] = raw[i];
        recent[i].values[DSPDataRecord::TEMP] = 25;
        recent[i].values[DSPDataRecord::PRESSURE] = 101;
    }

    TempRoot root;
    SimPlatform platform(root.path(), 4410);
    Doc4410 doc;
    ConfigFiles files(doc, platform);
    Calibration calibration(doc, files);
    EXPECT_FLOAT_EQ(calibration.Zero(recent), 0.25f);
    // 2 ppm at 25 degC and 101 kPa is 202 / (8.314 x 298.15) = 0.081491
    // expected, over the mean 0.25 less the working zero 0.05, over the
    // correction factor 0.9986.
    const float span = calibration.Span(2, recent, 0.05f);
    EXPECT_NEAR(span, 0.081491 / 0.2 / 0.9986, 1e-5);
}

}  // namespace
