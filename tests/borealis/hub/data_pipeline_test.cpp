#include "borealis/hub/data_pipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "borealis/config/config_cfg.h"

namespace {

// A record whose 17 values are all `value`.
DSPDataRecord Record(float value, std::uint32_t diag = 0) {
    DSPDataRecord record;
    record.diag = diag;
    std::fill(std::begin(record.values), std::end(record.values), value);
    return record;
}

TEST(DataPipeline, AveragesTheNewestRecordsAndKeepsForty) {
    DataPipeline pipeline;
    pipeline.SetRate(10);  // four records a line
    const float means[] = {1, 1.5f, 2, 2.5f, 3.5f};
    const std::uint32_t diags[] = {0x01, 0x03, 0x07, 0x0f, 0x1e};
    for (int i = 0; i < 45; ++i) {
        DSPDataRecord record = Record(static_cast<float>(i + 1), 1u << (i % 5));
        pipeline.ScaleAndAverage(record, 100, 2);
        if (i < 5) {
            EXPECT_EQ(means[i] * 2 + 100, record.values[DSPDataRecord::PRESSURE]) << i;
            EXPECT_EQ(diags[i], record.diag) << i;
        }
    }
    ASSERT_EQ(40u, pipeline.Recent().size());
    EXPECT_EQ(190,
              pipeline.Recent().front().values[DSPDataRecord::PRESSURE]);  // scaled, not averaged
    EXPECT_EQ(6, pipeline.Recent().back().values[DSPDataRecord::CH4D]);
}

TEST(ConvertAux, ConvertsByInputType) {
    const float b1 = 1.129148e-3f, b2 = 2.34125e-4f, b3 = 8.76741e-8f;  // 10 kOhm at 25 degC
    EXPECT_EQ(49, ConvertAux(0, 1, 2, 3, 4, 2));
    EXPECT_NEAR(25, ConvertAux(1, 10000, b1, b2, b3, 2.5f), 0.01f);
    EXPECT_FLOAT_EQ(-999.9f, ConvertAux(1, 10000, b1, b2, b3, 5));
    EXPECT_EQ(400, ConvertAux(2, 1000, -100, 0.5f, 0, 2.5f));
    EXPECT_EQ(1.25f, ConvertAux(3, 1, 2, 3, 4, 1.25f));
    ConfigCfg cfg;  // polynomials, all 0 but aux8's a1 of 2
    cfg.aux(8).a1.set(2);
    DSPDataRecord record = Record(3);
    ConvertAuxInputs(record, cfg);
    EXPECT_EQ((std::vector<float>{3, 0, 0, 0, 0, 0, 0, 0, 6, 3}),
              std::vector<float>(&record.values[DSPDataRecord::DROPRATE],
                                 &record.values[DSPDataRecord::AUXTC2]));
}

// CH4 from CH4D, zero and span is in every data record of the scenarios;
// the sources ch4d, set, pressure and aux5 are in box_samples.
TEST(AnalogOutput, ScalesTheSourceFromLowToHighOntoFiveVolts) {
    ConfigCfg cfg;  // the outputs follow ch4d, temp, pressure, rssi, droprate, ch4; scales empty
    cfg.dac(1).high.set(1000);
    cfg.dac(2).src.set(0);  // "set"
    cfg.dac(2).set.set(2);
    cfg.dac(2).high.set(5);
    cfg.dac(3).src.set(14);  // "aux8"
    cfg.dac(3).high.set(10);
    cfg.dac(6).high.set(1000);
    DSPDataRecord record = Record(2000);
    record.values[DSPDataRecord::CH4D] = 500;
    record.values[DSPDataRecord::AUX8] = 4;
    EXPECT_EQ((std::array<float, 6>{2.5f, 2, 2, 0, 0, 5}), AnalogOutputs(record, cfg));
}

}  // namespace
