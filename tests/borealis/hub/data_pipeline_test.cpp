#include "borealis/hub/data_pipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "borealis/config/config_cfg.h"

namespace {

// A record whose 17 values are all `value`.
DSPDataRecord Record(float value, std::uint32_t diag = 0) {
    DSPDataRecord record;
    record.diag = diag;
    std::fill(std::begin(record.values), std::end(record.values), value);
    return record;
}

TEST(DataPipeline, AveragesTheNewestRecordsAndOrsTheirDiag) {
    DataPipeline pipeline;
    pipeline.SetRate(10);
    ASSERT_EQ(4u, pipeline.AverageCount());
    const float means[] = {1, 1.5f, 2, 2.5f, 3.5f};  // over 1, 2, 3, 4 and then 4 records
    const std::uint32_t diags[] = {0x01, 0x03, 0x07, 0x0f, 0x1e};
    DSPDataRecord record;
    for (int i = 0; i < 5; ++i) {
        record = Record(static_cast<float>(i + 1), 1u << i);
        pipeline.ScaleAndAverage(record, 100, 2);
        EXPECT_EQ(means[i], record.values[DSPDataRecord::CH4D]) << i;
        EXPECT_EQ(diags[i], record.diag) << i;
    }
    EXPECT_EQ(107, record.values[DSPDataRecord::PRESSURE]);  // 2 x 3.5 + 100
    const DSPDataRecord& newest = pipeline.Recent().front();
    EXPECT_EQ(5, newest.values[DSPDataRecord::CH4D]);
    EXPECT_EQ(110, newest.values[DSPDataRecord::PRESSURE]);
    EXPECT_EQ(0x10u, newest.diag);
}

TEST(DataPipeline, KeepsTheFortyNewestRecords) {
    DataPipeline pipeline;
    for (int i = 0; i < 45; ++i) {
        DSPDataRecord record = Record(static_cast<float>(i));
        pipeline.ScaleAndAverage(record, 0, 1);
    }
    ASSERT_EQ(40u, pipeline.Recent().size());
    EXPECT_EQ(44, pipeline.Recent().front().values[0]);
    EXPECT_EQ(5, pipeline.Recent().back().values[0]);
}

TEST(DataPipeline, DecimatesWithinASecondAndPassesANewSecond) {
    const struct {
        int rate;
        unsigned average_count;
    } rates[] = {{-1, 0}, {0, 0}, {1, 40}, {3, 13}, {8, 5}, {20, 2}, {40, 1}, {100, 1}};
    for (const auto& r : rates) {
        DataPipeline pipeline;
        pipeline.SetRate(r.rate);
        EXPECT_EQ(r.average_count, pipeline.AverageCount()) << r.rate;
    }
    DataPipeline pipeline;
    pipeline.SetRate(8);
    std::string passed;  // N: a line that opens a new second, P: another line, -: dropped
    for (std::int32_t second : {100, 100, 100, 100, 100, 100, 100, 101, 101}) {
        passed += !pipeline.Decimate(second) ? '-' : pipeline.EnterSecond(second) ? 'N' : 'P';
    }
    EXPECT_EQ("N----P-N-", passed);
}

TEST(DataPipeline, RateZeroSendsOnlyRequestedLines) {
    DataPipeline pipeline;
    EXPECT_TRUE(pipeline.DataLineDue());
    pipeline.SetRate(0);
    EXPECT_TRUE(pipeline.Decimate(0));
    EXPECT_FALSE(pipeline.DataLineDue());
    pipeline.RequestNextData();
    EXPECT_TRUE(pipeline.DataLineDue());
    EXPECT_FALSE(pipeline.DataLineDue());
}

TEST(ConvertAux, ConvertsByInputType) {
    // A 10 kOhm thermistor (at 25 degC) against a 10 kOhm reference.
    const float b1 = 1.129148e-3f, b2 = 2.34125e-4f, b3 = 8.76741e-8f;
    const struct {
        int type;
        float a0, a1, a2, a3, v, expected;
    } cases[] = {
        {0, 1, 2, 3, 4, 2, 49},          {1, 10000, b1, b2, b3, 2.5f, 25},
        {1, 10000, b1, b2, b3, 5, -999.9f}, {1, 10000, b1, b2, b3, 6, -999.9f},
        {2, 1000, -100, 0.5f, 0, 2.5f, 400}, {3, 1, 2, 3, 4, 1.25f, 1.25f},
    };
    for (const auto& c : cases) {
        EXPECT_NEAR(c.expected, ConvertAux(c.type, c.a0, c.a1, c.a2, c.a3, c.v), 0.01f) << c.type << " " << c.v;
    }
    ConfigCfg cfg;
    for (int n = 1; n <= 8; ++n) {
        cfg.aux(n).a0.set(static_cast<float>(n));
    }
    DSPDataRecord record = Record(3);
    ConvertAuxInputs(record, cfg);
    for (int n = 1; n <= 8; ++n) {
        EXPECT_EQ(n, record.values[DSPDataRecord::AUX1 + n - 1]);
    }
    EXPECT_EQ(3, record.values[DSPDataRecord::DROPRATE]);
    EXPECT_EQ(3, record.values[DSPDataRecord::AUXTC1]);
}

TEST(ComputeCh4, AppliesZeroSpanAndTheGasLaw) {
    DSPDataRecord record;
    record.values[DSPDataRecord::CH4D] = 1.5f;
    record.values[DSPDataRecord::TEMP] = 25;
    record.values[DSPDataRecord::PRESSURE] = 101;
    ComputeCh4(record, 0.5f, 2);
    EXPECT_EQ(2, record.values[DSPDataRecord::CH4D]);
    EXPECT_FLOAT_EQ(2 * 0.9986 * 8.314 * 298.15 / 101, record.values[DSPDataRecord::CH4]);
}

void Choose(ConfigurableMultipleChoice& choice, const std::string& option) {
    const auto& options = choice.options();
    choice.set(static_cast<int>(std::find(options.begin(), options.end(), option) - options.begin()));
}

TEST(AnalogOutput, ScalesTheSourceFromLowToHighOntoFiveVolts) {
    const struct {
        float value, low, high, expected;
    } cases[] = {
        {500, 0, 1000, 2.5f}, {2000, 0, 1000, 5}, {-1, 0, 1000, 0}, {500, 7, 7, 0}, {500, 1000, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.expected, AnalogOutput(c.value, c.low, c.high)) << c.value << " " << c.low << " " << c.high;
    }
    ConfigCfg cfg;  // dac1 follows ch4d; every scale is empty until set
    cfg.dac(1).high.set(1000);
    Choose(cfg.dac(2).src, "set");
    cfg.dac(2).set.set(2);
    cfg.dac(2).high.set(5);
    Choose(cfg.dac(3).src, "aux8");
    cfg.dac(3).high.set(10);
    DSPDataRecord record;
    record.values[DSPDataRecord::CH4D] = 500;
    record.values[DSPDataRecord::AUX8] = 4;
    EXPECT_EQ((std::array<float, 6>{2.5f, 2, 2, 0, 0, 0}), AnalogOutputs(record, cfg));
}

}  // namespace
