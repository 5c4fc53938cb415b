#include "borealis/upkeep/top_heater_controller.h"

#include <gtest/gtest.h>

namespace {

TEST(TopHeaterController, PowerFollowsTheErrorAndItsRate) {
    struct {
        float error, rate;
        int maximum, power;
    } const cases[] = {
        {-2.0f, 0.0f, 100, 100},       // much too cold
        {-1.0f, 0.0f, 60, 60},         // limited to the maximum
        {-0.75f, -0.05f, 100, 100},    // too cold and cooling
        {-0.75f, 0.0f, 100, 87},       // too cold and steady: between 100 and 75
        {-0.75f, 0.05f, 100, 75},      // too cold and warming
        {-0.5f, 0.0078125f, 100, 65},  // steady and warming share 75 and 50
        {0.0f, -0.05f, 100, 50},       // near and cooling
        {0.0f, 0.0f, 100, 10},         // near and steady
        {0.75f, -0.05f, 100, 0},       // too warm
    };
    for (const auto& c : cases) {
        TopHeaterController controller;
        controller.SetMaximum(c.maximum);
        EXPECT_EQ(controller.PowerFor(c.error, c.rate), c.power) << c.error << ", " << c.rate;
    }
}

TEST(TopHeaterController, UpdatesAfterTenSecondsAndTenSamples) {
    TopHeaterController controller;
    // Set point 1 makes the samples of -1 much too cold (full power), -10 far too warm (off).
    auto update = [&](int t, float set_point, int samples) {
        controller.SetSetPoint(set_point);
        for (int i = 0; i < samples; ++i) controller.Sample(t, -1.0f, false);
        controller.Update(t);
        return controller.Output();
    };
    EXPECT_EQ(update(10, 1.0f, 9), 0);  // 10 s, 9 samples
    EXPECT_EQ(update(10, 1.0f, 1), 100);
    EXPECT_EQ(update(19, -10.0f, 10), 100);  // 9 s, 10 samples
    EXPECT_EQ(update(86395, -10.0f, 0), 0);
    EXPECT_EQ(update(5, 1.0f, 10), 100);  // 10 s across midnight
}

TEST(TopHeaterController, BadSampleHoldsFivePercentAndRestartsTheAverage) {
    TopHeaterController controller;
    controller.SetSetPoint(1.0f);
    for (int t = 0; t < 9; ++t) controller.Sample(t, 20.0f, false);  // forgotten
    controller.Sample(9, 0.0f, true);
    EXPECT_EQ(controller.Output(), 5);
    for (int t = 10; t < 20; ++t) controller.Sample(t, -1.0f, false);
    controller.Update(19);
    EXPECT_EQ(controller.Output(), 5);  // the update after a bad sample is skipped
    controller.Update(20);
    EXPECT_EQ(controller.Output(), 100);
}

}  // namespace
