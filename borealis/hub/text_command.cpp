#include "borealis/hub/text_command.h"

#include <sstream>
#include <vector>

namespace {

struct Keyword {
    char first;
    const char* word;
    TextCommand::Kind kind;
};

// Per first character, the keywords in the order they are tried.
const std::vector<Keyword>& Keywords() {
    static const std::vector<Keyword> keywords = {
        {'B', "Base", TextCommand::BASE},
        {'C', "CommitCalibration", TextCommand::COMMIT_CALIBRATION},
        {'L', "LockLaserTemp", TextCommand::LOCK_LASER_TEMP},
        {'P', "PumpOn", TextCommand::PUMP_ON},
        {'P', "PumpOff", TextCommand::PUMP_OFF},
        {'R', "ReleaseLaserTemp", TextCommand::RELEASE_LASER_TEMP},
        {'R', "RollbackCalibration", TextCommand::ROLLBACK_CALIBRATION},
        {'R', "RegBlockTemp", TextCommand::REG_BLOCK_TEMP},
        {'S', "SpanCH4", TextCommand::SPAN_CH4},
        {'T', "TurnDataClockOn", TextCommand::DATA_CLOCK_ON},
        {'T', "TurnDataClockOff", TextCommand::DATA_CLOCK_OFF},
        {'T', "TurnDataClockSyncOn", TextCommand::DATA_CLOCK_SYNC_ON},
        {'T', "TurnDataClockSyncOff", TextCommand::DATA_CLOCK_SYNC_OFF},
        {'T', "TurnWaveformsOn", TextCommand::WAVEFORMS_ON},
        {'T', "TurnWaveformsOff", TextCommand::WAVEFORMS_OFF},
        {'U', "UnregBlockTemp", TextCommand::UNREG_BLOCK_TEMP},
        {'Z', "ZeroCH4", TextCommand::ZERO_CH4},
    };
    return keywords;
}

TextCommand::Kind Match(const std::string& word) {
    for (const Keyword& keyword : Keywords())
        if (keyword.first == word[0] && word.find(keyword.word) != std::string::npos)
            return keyword.kind;
    return TextCommand::NONE;
}

bool NeedsNumber(TextCommand::Kind kind) {
    return kind == TextCommand::LOCK_LASER_TEMP || kind == TextCommand::REG_BLOCK_TEMP;
}

}  // namespace

TextCommand ParseTextCommand(const std::string& line) {
    TextCommand command;
    std::istringstream in(line);
    std::string word;
    if (!(in >> word)) return command;
    if ((word[0] == 'q' || word[0] == 'Q') && word.size() == 1) {
        command.kind = TextCommand::CLOSE;
        return command;
    }
    if (word[0] == 'S') {
        // The span gas concentration is read before the keyword is looked for.
        if (!(in >> command.number) || command.number <= 0) return TextCommand();
        command.kind = Match(word);
        return command;
    }
    command.kind = Match(word);
    if (command.kind == TextCommand::BASE) {
        std::getline(in, command.rest, '\0');
    } else if (NeedsNumber(command.kind) && !(in >> command.number)) {
        return TextCommand();
    }
    return command;
}
