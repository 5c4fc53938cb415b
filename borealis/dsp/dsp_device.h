#ifndef BOREALIS_DSP_DSP_DEVICE_H
#define BOREALIS_DSP_DSP_DEVICE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "common/poll_processor.h"
#include "common/stream_file.h"

class Platform;

// Diagnostic bits that the decoder sets from the signal processor's flags;
// the hub adds its own bits to the same word.
struct DSPDiag {
    static constexpr std::uint32_t NOTREADY = 0x8000;
    static constexpr std::uint32_t NOSIGNAL = 0x4000;
    static constexpr std::uint32_t REFUNLOCKED = 0x2000;
    static constexpr std::uint32_t BADTEMP = 0x1000;
    static constexpr std::uint32_t LASERTEMPUNREG = 0x0800;
    static constexpr std::uint32_t BLOCKTEMPUNREG = 0x0400;
    static constexpr std::uint32_t BADAUXTC1 = 0x0008;
    static constexpr std::uint32_t BADAUXTC2 = 0x0004;
    static constexpr std::uint32_t BADAUXTC3 = 0x0002;
};

// One measurement (message code 7).
struct DSPDataRecord {
    enum Value {
        CH4D,
        CH4,
        TEMP,
        PRESSURE,
        RSSI,
        DROPRATE,
        AUX1,
        AUX2,
        AUX3,
        AUX4,
        AUX5,
        AUX6,
        AUX7,
        AUX8,
        AUXTC1,
        AUXTC2,
        AUXTC3,
        VALUE_COUNT
    };
    std::uint32_t seconds = 0;  // arrival time of the frame
    std::uint32_t nanoseconds = 0;
    std::uint32_t msec = 0;  // the processor's millisecond tick
    std::uint32_t diag = 0;  // DSPDiag bits
    float values[VALUE_COUNT] = {};
};

// One status report (message code 6).
struct DSPStatusRecord {
    enum Value {
        LCTSETPT,
        LCTACTUAL,
        BCTSETPT,
        BCTACTUAL,
        CHASSISTEMP,
        OPTICSRH,
        RSSI,
        REFRSSI,
        OPTICSTEMP,
        OPTICSTDELTA,
        AUXREFTEMP,
        REF,
        GND,
        VALUE_COUNT
    };
    std::uint32_t seconds = 0;
    std::uint32_t nanoseconds = 0;
    std::uint32_t msec = 0;
    float values[VALUE_COUNT] = {};
};

// One waveform (message codes 11, 12, 19 and 20): 100 samples, signed when
// printed.
struct DSPWaveform {
    static constexpr std::size_t SAMPLE_COUNT = 100;
    std::uint32_t seconds = 0;
    std::uint32_t nanoseconds = 0;
    std::uint32_t msec = 0;
    std::uint16_t samples[SAMPLE_COUNT] = {};
    std::size_t count = SAMPLE_COUNT;
};

// Test data (message code 30): every payload word.
struct DSPTestRecord {
    std::uint32_t seconds = 0;
    std::uint32_t nanoseconds = 0;
    std::vector<std::uint16_t> words;
};

// The factory settings that make up the laser set-up message (code 9).
struct DSPLineLockSetup {
    float laser_start_temperature = 0;
    std::uint16_t sample_gain = 0;
    std::uint16_t reference_gain = 0;
    std::uint16_t modulation_depth = 0;
    std::uint16_t dither = 0;
};

// The line the hub prints for a message without a decoder, for example
// "Got Unknown Message: cmd=0x63 len=0x2\n".
std::string FormatUnknownMessage(std::uint16_t cmd, std::size_t length);

// The signal processor's device: queues outgoing messages, splits what each
// read returns into frames and hands every frame, decoded, to its listener.
//
// A frame is the arrival time (two little-endian 32-bit integers, zero on
// the way out), the 16-bit code, the 16-bit payload length in words, and the
// payload words, all little-endian.
class DSPDevice : public PollItem {
public:
    // Receives the processor's messages. Every callback gets the frame's
    // arrival time first; the default implementations do nothing.
    class Listener {
    public:
        Listener() = default;
        virtual ~Listener() = default;

        // Every complete frame, before it is decoded.
        virtual void GotMessage(std::uint32_t, std::uint32_t, std::uint16_t /*cmd*/,
                                const std::uint16_t* /*words*/, std::size_t /*length*/) {}
        // A frame whose code has no decoder.
        virtual void GotUnknownMessage(std::uint32_t, std::uint32_t, std::uint16_t /*cmd*/,
                                       const std::uint16_t* /*words*/, std::size_t /*length*/) {}
        virtual void GotBadCommand(std::uint32_t, std::uint32_t, const std::string&) {}      // 5
        virtual void GotData(std::uint32_t, std::uint32_t, const DSPDataRecord&) {}          // 7
        virtual void GotStatus(std::uint32_t, std::uint32_t, const DSPStatusRecord&) {}      // 6
        virtual void GotInitMessage(std::uint32_t, std::uint32_t, const std::string&) {}     // 4
        virtual void GotDSPMessage(std::uint32_t, std::uint32_t, const std::string&) {}      // 3
        virtual void GotPong(std::uint32_t, std::uint32_t) {}                                // 2
        virtual void GotFatalMessage(std::uint32_t, std::uint32_t, const std::string&) {}    // 18
        virtual void GotWaveformS(std::uint32_t, std::uint32_t, const DSPWaveform&) {}       // 11
        virtual void GotWaveformR(std::uint32_t, std::uint32_t, const DSPWaveform&) {}       // 12
        virtual void GotWaveformSDC(std::uint32_t, std::uint32_t, const DSPWaveform&) {}     // 19
        virtual void GotWaveformRDC(std::uint32_t, std::uint32_t, const DSPWaveform&) {}     // 20
        virtual void GotCode24(std::uint32_t, std::uint32_t) {}                              // 24
        virtual void GotClockSync(std::uint32_t, std::uint32_t, std::uint32_t /*ticks*/) {}  // 25
        virtual void GotTestData(std::uint32_t, std::uint32_t, const DSPTestRecord&) {}      // 30
    };

    // The analyzer's device.
    static const char* const kDefaultPath;
    // Words in the receive buffer and reserved in the transmit queue.
    static constexpr std::size_t kBufferWords = 8192;

    // Opens the device at the system path `path` through `platform` (not
    // owned, which also serves the CPLD requests) for reading and writing,
    // and registers with the poll loop for input. Throws ErrnoError
    // ("StreamFile: Unable to open " + the path used) when it cannot be opened.
    explicit DSPDevice(Platform& platform, const std::string& path = kDefaultPath);
    ~DSPDevice() override;

    // Leaves the poll loop and closes the device (before a reboot). Throws
    // ErrnoError when closing fails.
    void Close();

    // Sets the one listener (not owned; null for none); returns the previous one.
    Listener* SetListener(Listener* listener);

    // Queues one frame with code `cmd` and `count` payload words, and asks
    // the loop for output. Nothing is written until the device is writable.
    void Send(std::uint16_t cmd, const std::uint16_t* words, std::uint16_t count);
    // Words queued and not yet written.
    std::size_t QueuedWords() const { return transmit_.size(); }

    // Typed senders, by message code.
    void SendStart();                                  // 13
    void ReleaseLaserTemp();                           // 16
    void LockLaserTemp(float set_point);               // 17
    void SetLaserDrive(std::uint16_t dac_count);       // 28
    void RegBlockTemp(float set_point);                // 21
    void UnregBlockTemp();                             // 22
    void SetBlockDrive(std::uint16_t dac_count);       // 27
    void SendLineLock(const DSPLineLockSetup& setup);  // 9
    void SetDropThreshold(float threshold);            // 8
    void SetOffsets(std::int16_t ac_offset, std::uint16_t dc_offset,
                    std::uint16_t optical_offset);  // 26
    void RequestTestData();                         // 29

    // Starts the CPLD clock (with root rights). Throws ErrnoError
    // ("Unable to start CPLD clock").
    void StartCpldClock();
    // Writes the CPLD register clock_yz (with root rights). Throws ErrnoError
    // ("Unable to set CPLD clock_yz register").
    void SetClockYz(std::uint32_t value);

    // The device's descriptor, polled by the loop.
    int GetFd() override { return device_.GetFd(); }
    // Reads once and delivers every complete frame of that read; the first
    // read after opening is discarded. Errors are printed, not thrown.
    void HandleRead() override;
    // Writes the whole queue at once and keeps what was not taken; asks for
    // output again while words remain. Errors are printed, not thrown.
    void HandleWrite() override;
    const char* GetName() override { return "DSPDevice"; }

private:
    void ReadFrames();
    void WriteQueue();
    void ParseFrames(std::size_t words);
    void DeliverFrame(const std::uint16_t* frame);

    Platform& platform_;
    StreamFile device_;
    Listener* listener_ = nullptr;
    std::vector<std::uint16_t> receive_;
    bool first_read_seen_ = false;
    std::vector<std::uint16_t> transmit_;
};

#endif
