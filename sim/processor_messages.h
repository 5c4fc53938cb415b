#ifndef SIM_PROCESSOR_MESSAGES_H
#define SIM_PROCESSOR_MESSAGES_H

#include <cstdint>
#include <string>

#include "sim/frame_codec.h"
#include "sim/scenario.h"

// Codes of the messages the simulated processor sends and answers.
enum MessageCode : std::uint16_t {
    kPong = 2,
    kDspMessage = 3,
    kInitMessage = 4,
    kBadCommand = 5,
    kStatusMessage = 6,
    kDataMessage = 7,
    kWaveformS = 11,
    kWaveformR = 12,
    kWaveformSdc = 19,
    kWaveformRdc = 20,
    kStartupMessage = 24,
    kFatalMessage = 18,
    kClockSync = 25,
    kTestDataRequest = 29,
    kTestData = 30,
};

// Whether the processor knows `code` as a command from the daemon: the laser
// and block temperature controls, the laser setup, the drop threshold, the
// offsets, the start and the test data request.
bool IsProcessorCommand(std::uint16_t code);

// A text message (codes 3, 4, 5, 18): one character per word.
Frame TextFrame(std::uint16_t code, const std::string& text);
// A data record: fifteen 32-bit fields, the tick count first and the flag
// bits last.
Frame DataFrame(std::uint32_t msec, const DataValues& values, std::uint16_t flags);
// A status record: fourteen 32-bit fields, the tick count first.
Frame StatusFrame(std::uint32_t msec, const StatusValues& values);
// A clock synchronisation message carrying the tick count.
Frame ClockSyncFrame(std::uint32_t ticks);
// A waveform of 100 samples (codes 11, 12, 19, 20), stamped with `msec`.
Frame WaveformFrame(std::uint16_t code, std::uint32_t msec);
// The answer to a test data request: one raw reading per test column.
Frame TestDataFrame();

#endif
