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
        // Each command as clients send it, and box reports, are in the scenarios.
        {"LockLaserTemp 30.5\n", T::LOCK_LASER_TEMP, 30.5f},
        {"LockLaserTemp\n", T::NONE, 0},  // a required number is missing
        {"LockLaserTemp warm\n", T::NONE, 0},
        {"xPumpOn\n", T::NONE, 0},  // its first character selects no group
        {"q\n", T::CLOSE, 0},
        {"Q\n", T::CLOSE, 0},
        {"quit\n", T::NONE, 0},
        {"SpanCH4 0\n", T::NONE, 0},
        {"SpanCH4 -3\n", T::NONE, 0},
        {"SpanCH4\n", T::NONE, 0},
        {"  UnregBlockTemp\n", T::UNREG_BLOCK_TEMP, 0},
        {"Zero\n", T::NONE, 0},
        {" \t \n", T::NONE, 0},  // "hello" and "\n" are in the bad_requests scenario
    };
    for (const auto& row : rows) {
        const TextCommand command = ParseTextCommand(row.line);
        EXPECT_EQ(command.kind, row.kind) << row.line;
        EXPECT_EQ(command.number, row.number) << row.line;
    }
}

}  // namespace
