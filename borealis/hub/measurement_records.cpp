#include "borealis/hub/measurement_records.h"

#include <time.h>

#include <array>
#include <climits>
#include <cstdio>
#include <iostream>

#include "borealis/config/doc4410.h"
#include "borealis/dsp/data_clock.h"
#include "borealis/hub/client_fanout.h"
#include "borealis/hub/interface_box.h"
#include "borealis/hub/record_headers.h"
#include "borealis/hub/record_line.h"
#include "borealis/hub/socket_context.h"
#include "borealis/upkeep/washme.h"

namespace {

// The signal strength as a whole number, truncated, the way the analyzer's
// processor converts: saturated beyond the int range, 0 for NaN. A garbled
// status record must not make the conversion undefined.
int TruncatedLevel(float value) {
    if (value != value) return 0;
    if (value >= 2147483648.0f) return INT_MAX;
    if (value < -2147483648.0f) return INT_MIN;
    return static_cast<int>(value);
}

// The local date and time of `seconds` as "YYYY-MM-DD" and "HH:MM:SS".
void LocalDateAndTime(std::int64_t seconds, std::string& date, std::string& time) {
    const time_t when = seconds;
    struct tm local = {};
    localtime_r(&when, &local);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", local.tm_year + 1900, local.tm_mon + 1,
                  local.tm_mday);
    date = text;
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);
    time = text;
}

// Seconds since local midnight of `seconds`.
int LocalTimeOfDay(std::int64_t seconds) {
    const time_t when = seconds;
    struct tm local = {};
    localtime_r(&when, &local);
    return local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
}

RecordLine& AddTime(RecordLine& line, const TimePair& time) {
    return line.Int(time.seconds).Int(time.nanoseconds);
}

}  // namespace

MeasurementRecords::MeasurementRecords(const Doc4410& doc, DataClock& clock, ClientFanout& fanout,
                                       InterfaceBox& box, WashMe& mirror)
    : doc_(doc), clock_(clock), fanout_(fanout), box_(box), mirror_(mirror) {}

void MeasurementRecords::SetWorkingCalibration(float zero, float span) {
    ch4_zero_ = zero;
    ch4_span_ = span;
}

std::uint32_t MeasurementRecords::HubDiagBits() const {
    return mirror_.DiagBits() | (box_.Connected() ? HubDiag::BOXCONNECTED : 0);
}

void MeasurementRecords::OnData(const DSPDataRecord& received) {
    clock_.SetTicks(received.msec);
    if (!clock_.Valid()) return;
    const TimePair time = clock_.Time(received.msec);
    DSPDataRecord record = received;

    std::array<float, 4> box_values{};
    if (box_.samples.Take(time, box_values))
        std::copy(box_values.begin(), box_values.end(), &record.values[DSPDataRecord::AUX5]);
    record.diag |= HubDiagBits();
    diag_ = record.diag;

    const ConfigFactory& factory = doc_.vela.factory;
    pipeline_.ScaleAndAverage(record, factory.pzero.value(), factory.pspan.value());
    ConvertAuxInputs(record, doc_.vela.cfg);
    ComputeCh4(record, ch4_zero_, ch4_span_);

    if (box_.Connected()) SendAnalogOutputs(record, time);
    if (clocksync_output_) SendClockSync(time);
    if (!pipeline_.Decimate(time.seconds)) return;
    const bool new_second = pipeline_.EnterSecond(time.seconds);
    if (clock_output_ && new_second) SendDataClock(received, time);
    if (pipeline_.DataLineDue()) SendData(record, time);
}

void MeasurementRecords::SendAnalogOutputs(const DSPDataRecord& record, const TimePair& time) {
    RecordLine line("DATADACS");
    AddTime(line, time);
    for (float output : AnalogOutputs(record, doc_.vela.cfg)) line.Float(output);
    fanout_.SendToClient(box_.client, line.Finish(), SendLimit::ANSWER);
}

void MeasurementRecords::SendClockSync(const TimePair& time) {
    RecordLine line("DATACLOCKSYNC");
    AddTime(line, time)
        .Int(clock_.LastDrift() / 1000)
        .Int(clock_.LastMinDrift() / 1000)
        .Int(clock_yz_);
    if (fanout_.SendToFlagged(line.Finish(), OutputBit::DATACLOCKSYNC, SendLimit::STREAM) == 0)
        clocksync_output_ = false;
}

void MeasurementRecords::SendDataClock(const DSPDataRecord& record, const TimePair& time) {
    std::string date, clock_time;
    LocalDateAndTime(time.seconds, date, clock_time);
    RecordLine line("DATACLOCK");
    line.Int(record.seconds).Int(record.nanoseconds).Text(date).Text(clock_time);
    if (fanout_.SendToFlagged(line.Finish(), OutputBit::DATACLOCK, SendLimit::STREAM) == 0)
        clock_output_ = false;
}

void MeasurementRecords::SendData(const DSPDataRecord& record, const TimePair& time) {
    RecordLine line("DATA");
    line.Int(record.msec);
    AddTime(line, time).Int(record.diag);
    for (float value : record.values) line.Float(value);
    fanout_.SendToAll(line.Finish(), SendLimit::DATA);
}

void MeasurementRecords::OnStatus(const DSPStatusRecord& status) {
    if (!clock_.Valid()) return;
    using S = DSPStatusRecord;
    const float* v = status.values;
    const TimePair time = clock_.Time(status.msec);
    RecordLine line("DATASTAT");
    line.Int(status.msec);
    AddTime(line, time).Int(diag_);
    for (S::Value value : {S::RSSI, S::REFRSSI, S::LCTSETPT, S::LCTACTUAL, S::BCTSETPT,
                           S::BCTACTUAL, S::CHASSISTEMP, S::OPTICSTEMP, S::OPTICSRH, S::AUXREFTEMP})
        line.Float(v[value]);
    bool read_failed = false;
    line.Int(mirror_.MotorSetPoint()).Int(mirror_.ReadStatus(read_failed));
    line.Int(box_.usb).Float(box_.usb_capacity).Float(box_.usb_free_space);
    line.Float(v[S::REF]).Float(v[S::GND]).Float(v[S::OPTICSTDELTA]);
    line.Float(mirror_.BottomHeaterWatts()).Float(mirror_.TopHeaterWatts());
    fanout_.SendToFlagged(line.Finish(), OutputBit::STATUS, SendLimit::STATUS);
    mirror_.Tick(LocalTimeOfDay(time.seconds), TruncatedLevel(v[S::RSSI]), v[S::OPTICSTDELTA],
                 (diag_ & DSPDiag::BADTEMP) != 0);
}

void MeasurementRecords::OnWaveform(const char* type, const DSPWaveform& waveform) {
    RecordLine line(type);
    line.Int(waveform.msec);
    for (std::size_t i = 0; i < waveform.count; ++i)
        line.Int(static_cast<std::int16_t>(waveform.samples[i]));
    fanout_.SendToFlagged(line.Finish(), OutputBit::WAVEFORMS, SendLimit::STREAM);
}

void MeasurementRecords::OnTestData(const DSPTestRecord& record) {
    fanout_.SendToAll(kTestHeader, SendLimit::ANSWER);
    RecordLine line("DATATEST");
    for (std::uint16_t word : record.words) line.Int(word);
    fanout_.SendToAll(line.Finish(), SendLimit::DATA);
}

void MeasurementRecords::OnMessage(const std::string& prefix, const std::string& text) {
    const std::string line = "DATAMSG\t" + prefix + text + "\n";
    fanout_.SendToAll(line, SendLimit::ANSWER);
    std::cout << line << std::flush;
}

void MeasurementRecords::SendDataHeaders(std::ostream& out) const {
    out << kDataHeader << kDiagHeader;
}

void MeasurementRecords::SendStatusHeader(std::ostream& out) const { out << kStatusHeader; }

void MeasurementRecords::SendDacsHeader(std::ostream& out) const { out << kDacsHeader; }

void MeasurementRecords::SendClockHeader(std::ostream& out) {
    out << kClockHeader;
    clock_output_ = true;
}

void MeasurementRecords::SendClockSyncHeader(std::ostream& out) {
    out << kClockSyncHeader;
    clocksync_output_ = true;
}
