#ifndef BOREALIS_HUB_MEASUREMENT_RECORDS_H
#define BOREALIS_HUB_MEASUREMENT_RECORDS_H

#include <cstdint>
#include <ostream>
#include <string>

#include "borealis/dsp/dsp_device.h"
#include "borealis/dsp/time_pair.h"
#include "borealis/hub/data_pipeline.h"

class ClientFanout;
class WashMe;
class DataClock;
class Doc4410;
struct InterfaceBox;

// Turns the signal processor's records into the text records clients
// receive: each line is formatted once and handed to every client that
// qualifies. Keeps the state the records need between messages: the DIAG
// word of the last data record, the data pipeline, the working zero and span,
// the last clock_yz correction, and whether anybody still wants the clock
// records.
class MeasurementRecords {
public:
    MeasurementRecords(const Doc4410& doc, DataClock& clock, ClientFanout& fanout,
                       InterfaceBox& box, WashMe& mirror);

    // A data message: data-clock, clock-sync, analog-output and data records.
    void OnData(const DSPDataRecord& record);
    // A status message, while the data clock is valid: the status record,
    // then a tick of the mirror and heater schedules.
    void OnStatus(const DSPStatusRecord& record);
    // A waveform, as a record of type `type` ("DATAS", "DATAR", ...).
    void OnWaveform(const char* type, const DSPWaveform& waveform);
    // Test data: the test header, then the test record, to every client.
    void OnTestData(const DSPTestRecord& record);
    // A text message of the processor, to every client and standard output.
    void OnMessage(const std::string& prefix, const std::string& text);

    // Header writers; the clock headers also switch their records on.
    void SendDataHeaders(std::ostream& out) const;
    void SendStatusHeader(std::ostream& out) const;
    void SendDacsHeader(std::ostream& out) const;
    void SendClockHeader(std::ostream& out);
    void SendClockSyncHeader(std::ostream& out);

    // The working zero and span used for CH4.
    void SetWorkingCalibration(float zero, float span);
    float WorkingZero() const { return ch4_zero_; }
    float WorkingSpan() const { return ch4_span_; }
    // The last correction computed for the CPLD register clock_yz.
    void SetClockYz(std::int32_t correction) { clock_yz_ = correction; }
    // The DIAG word of the last data record, before averaging.
    std::uint32_t Diag() const { return diag_; }

    DataPipeline& Pipeline() { return pipeline_; }
    const DataPipeline& Pipeline() const { return pipeline_; }

private:
    std::uint32_t HubDiagBits() const;
    void SendAnalogOutputs(const DSPDataRecord& record, const TimePair& time);
    void SendClockSync(const TimePair& time);
    void SendDataClock(const DSPDataRecord& record, const TimePair& time);
    void SendData(const DSPDataRecord& record, const TimePair& time);

    const Doc4410& doc_;
    DataClock& clock_;
    ClientFanout& fanout_;
    InterfaceBox& box_;
    WashMe& mirror_;

    std::uint32_t diag_ = 0;
    std::int32_t clock_yz_ = 0;
    bool clock_output_ = false;
    bool clocksync_output_ = false;
    float ch4_zero_ = 0.0f;
    float ch4_span_ = 1.0f;
    DataPipeline pipeline_;
};

#endif
