// The hub's text commands: a client line that is not XML.
#include <iostream>
#include <sstream>

#include "borealis/hub/borealis.h"
#include "borealis/hub/socket_context.h"
#include "borealis/hub/text_command.h"

namespace {

enum CoolerControl { COOLER_AUTO = 0, COOLER_MANUAL = 1 };
enum BlockControl { BLOCK_ON = 1 };

void SetOutput(SocketClient* client, std::uint32_t bit, bool on) {
    if (BorealisSocketContext* context = ContextOf(client))
        context->outputs = on ? context->outputs | bit : context->outputs & ~bit;
}

}  // namespace

void Borealis::HandleCommand(SocketClient* client, const std::string& line) {
    std::ostringstream answer;
    ExecuteCommand(client, ParseTextCommand(line), answer);
    if (!answer.str().empty()) fanout_.SendToClient(client, answer.str(), SendLimit::ANSWER);
}

void Borealis::ExecuteCommand(SocketClient* client, const TextCommand& command,
                              std::ostream& answer) {
    ConfigLineLock& linelock = doc_.vela.cfg.linelock;
    switch (command.kind) {
    case TextCommand::NONE: break;
    case TextCommand::BASE: HandleBoxReport(client, command.rest, answer); break;
    case TextCommand::COMMIT_CALIBRATION: calibration_.Commit(); break;
    case TextCommand::LOCK_LASER_TEMP:
        linelock.lasercooler.control.set(COOLER_MANUAL);
        linelock.lasercooler.temp.set(command.number);
        dsp_.LockLaserTemp(command.number);  // the processor gets the value as typed
        SaveRequested();
        break;
    case TextCommand::PUMP_ON: mirror_.PumpOn(); break;
    case TextCommand::PUMP_OFF: mirror_.PumpOff(); break;
    case TextCommand::CLOSE: client->Close(); break;
    case TextCommand::RELEASE_LASER_TEMP:
        linelock.lasercooler.control.set(COOLER_AUTO);
        dsp_.ReleaseLaserTemp();
        SaveRequested();
        break;
    case TextCommand::ROLLBACK_CALIBRATION: CalRollbackRequested(); break;
    case TextCommand::REG_BLOCK_TEMP:
        dsp_.RegBlockTemp(command.number);
        linelock.laserblock.control.set(BLOCK_ON);
        linelock.laserblock.temp.set(command.number);
        SaveRequested();
        break;
    case TextCommand::SPAN_CH4: SpanRequested(command.number); break;
    case TextCommand::DATA_CLOCK_ON:
        SetOutput(client, OutputBit::DATACLOCK, true);
        records_.SendClockHeader(answer);
        break;
    case TextCommand::DATA_CLOCK_OFF: SetOutput(client, OutputBit::DATACLOCK, false); break;
    case TextCommand::DATA_CLOCK_SYNC_ON:
        SetOutput(client, OutputBit::DATACLOCKSYNC, true);
        records_.SendClockSyncHeader(answer);
        break;
    case TextCommand::DATA_CLOCK_SYNC_OFF:
        SetOutput(client, OutputBit::DATACLOCKSYNC, false);
        break;
    case TextCommand::WAVEFORMS_ON: SetOutput(client, OutputBit::WAVEFORMS, true); break;
    case TextCommand::WAVEFORMS_OFF: SetOutput(client, OutputBit::WAVEFORMS, false); break;
    case TextCommand::UNREG_BLOCK_TEMP: dsp_.UnregBlockTemp(); break;
    case TextCommand::ZERO_CH4: ZeroRequested(); break;
    }
}

// The first valid report makes its client the box; from then on only that
// client's reports count, until its connection goes.
void Borealis::HandleBoxReport(SocketClient* client, const std::string& fields,
                               std::ostream& answer) {
    std::istringstream in(fields);
    BoxReport report;
    if (!ParseBoxReport(in, report)) return;
    if (!box_.Connected()) {
        box_.Connect(client, report);
        records_.SendDacsHeader(answer);
        fanout_.SendToAll(box_.EventLine(), SendLimit::ANSWER);
    }
    if (client == box_.client) box_.Store(report);
}
