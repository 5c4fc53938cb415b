#include "borealis/hub/text_command.h"

#include <gtest/gtest.h>

namespace {

TEST(TextCommand, RecognisesEachKeywordByItsFirstCharacterAndItsArguments) {
    using T = TextCommand;
    const struct {
        const char* line;
        T::Kind kind;
        float number;
    } rows[] = {
        {"CommitCalibration\n", T::COMMIT_CALIBRATION, 0},
        {"LockLaserTemp 30.5\n", T::LOCK_LASER_TEMP, 30.5f},
        {"LockLaserTemp\n", T::NONE, 0},  // a required number is missing
        {"LockLaserTemp warm\n", T::NONE, 0},
        {"PumpOnNow\n", T::PUMP_ON, 0},  // the keyword may sit anywhere in the word
        {"PumpOff\n", T::PUMP_OFF, 0},
        {"xPumpOn\n", T::NONE, 0},  // its first character selects no group
        {"q\n", T::CLOSE, 0},
        {"Q\n", T::CLOSE, 0},
        {"quit\n", T::NONE, 0},
        {"ReleaseLaserTemp\n", T::RELEASE_LASER_TEMP, 0},
        {"RollbackCalibration\n", T::ROLLBACK_CALIBRATION, 0},
        {"RegBlockTemp 21\n", T::REG_BLOCK_TEMP, 21},
        {"SpanCH4 400\n", T::SPAN_CH4, 400},
        {"SpanCH4 0\n", T::NONE, 0},
        {"SpanCH4 -3\n", T::NONE, 0},
        {"SpanCH4\n", T::NONE, 0},
        {"TurnDataClockOn\n", T::DATA_CLOCK_ON, 0},
        {"TurnDataClockOff\n", T::DATA_CLOCK_OFF, 0},
        {"TurnDataClockSyncOn\n", T::DATA_CLOCK_SYNC_ON, 0},
        {"TurnDataClockSyncOff\n", T::DATA_CLOCK_SYNC_OFF, 0},
        {"TurnWaveformsOn\n", T::WAVEFORMS_ON, 0},
        {"TurnWaveformsOff\n", T::WAVEFORMS_OFF, 0},
        {"  UnregBlockTemp\n", T::UNREG_BLOCK_TEMP, 0},
        {"ZeroCH4\n", T::ZERO_CH4, 0},
        {"Zero\n", T::NONE, 0},
        {" \t \n", T::NONE, 0},  // "hello" and "\n" are in the bad_requests scenario
    };
    for (const auto& row : rows) {
        const TextCommand command = ParseTextCommand(row.line);
        EXPECT_EQ(command.kind, row.kind) << row.line;
        EXPECT_EQ(command.number, row.number) << row.line;
    }
    EXPECT_EQ(ParseTextCommand("Base 1 2 3 4 5 6 7 8 9 Box one\n").rest,
              " 1 2 3 4 5 6 7 8 9 Box one\n");
}

}  // namespace
