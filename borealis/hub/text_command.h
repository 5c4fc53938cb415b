#ifndef BOREALIS_HUB_TEXT_COMMAND_H
#define BOREALIS_HUB_TEXT_COMMAND_H

#include <string>

// One text command line from a client, recognised: the first word's first
// character selects a group of keywords, and the first keyword of the group
// that occurs anywhere inside the word wins (so "PumpOnNow" means PumpOn).
// A line that means nothing, or lacks a number it needs, is NONE.
struct TextCommand {
    enum Kind {
        NONE,
        BASE,  // an interface box's report; `rest` holds what follows the word
        COMMIT_CALIBRATION,
        LOCK_LASER_TEMP,  // `number`: the set point
        PUMP_ON,
        PUMP_OFF,
        CLOSE,  // "q" or "Q" alone
        RELEASE_LASER_TEMP,
        ROLLBACK_CALIBRATION,
        REG_BLOCK_TEMP,  // `number`: the set point
        SPAN_CH4,        // `number`: the span gas in ppm, above 0
        DATA_CLOCK_ON,
        DATA_CLOCK_OFF,
        DATA_CLOCK_SYNC_ON,
        DATA_CLOCK_SYNC_OFF,
        WAVEFORMS_ON,
        WAVEFORMS_OFF,
        UNREG_BLOCK_TEMP,
        ZERO_CH4,
    };

    Kind kind = NONE;
    float number = 0;
    std::string rest;
};

// Recognises one line (its "\n" included or not).
TextCommand ParseTextCommand(const std::string& line);

#endif
