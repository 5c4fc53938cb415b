#ifndef TESTS_BOREALIS_DSP_RECORDING_LISTENER_H
#define TESTS_BOREALIS_DSP_RECORDING_LISTENER_H

// A DSPDevice::Listener that writes down every callback as one line of text.

#include <sstream>
#include <string>
#include <vector>

#include "borealis/dsp/dsp_device.h"

class RecordingListener : public DSPDevice::Listener {
public:
    std::vector<std::string> events;

    void GotUnknownMessage(std::uint32_t, std::uint32_t, std::uint16_t cmd,
                           const std::uint16_t* words, std::size_t length) override {
        Add("unknown " + std::to_string(cmd) + Words(words, length));
    }
    void GotBadCommand(std::uint32_t, std::uint32_t, const std::string& t) override {
        Add("bad " + t);
    }
    void GotDSPMessage(std::uint32_t, std::uint32_t, const std::string& t) override {
        Add("dsp " + t);
    }
    void GotFatalMessage(std::uint32_t, std::uint32_t, const std::string& t) override {
        Add("fatal " + t);
    }
    void GotPong(std::uint32_t, std::uint32_t) override { Add("pong"); }
    void GotCode24(std::uint32_t, std::uint32_t) override { Add("code24"); }
    void GotClockSync(std::uint32_t, std::uint32_t, std::uint32_t ticks) override {
        Add("sync " + std::to_string(ticks));
    }
    // The scenarios show the records' values; the tests here need their DIAG.
    void GotData(std::uint32_t, std::uint32_t, const DSPDataRecord& r) override {
        std::ostringstream line;
        line << "data diag 0x" << std::hex << r.diag;
        Add(line.str());
    }
    void GotStatus(std::uint32_t, std::uint32_t, const DSPStatusRecord&) override { Add("status"); }
    void GotWaveformS(std::uint32_t, std::uint32_t, const DSPWaveform& w) override { Wave("S", w); }
    void GotWaveformR(std::uint32_t, std::uint32_t, const DSPWaveform& w) override { Wave("R", w); }
    void GotWaveformSDC(std::uint32_t, std::uint32_t, const DSPWaveform& w) override {
        Wave("SDC", w);
    }
    void GotWaveformRDC(std::uint32_t, std::uint32_t, const DSPWaveform& w) override {
        Wave("RDC", w);
    }
    void GotTestData(std::uint32_t, std::uint32_t, const DSPTestRecord& r) override {
        Add("test" + Words(r.words.data(), r.words.size()));
    }

private:
    void Add(const std::string& event) { events.push_back(event); }
    void Wave(const std::string& kind, const DSPWaveform& w) {
        Add("wave" + kind + " " + std::to_string(w.msec) + " n " + std::to_string(w.count) +
            " first " + std::to_string(static_cast<std::int16_t>(w.samples[0])) + " last " +
            std::to_string(static_cast<std::int16_t>(w.samples[w.count - 1])));
    }
    static std::string Words(const std::uint16_t* words, std::size_t length) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i) text += " " + std::to_string(words[i]);
        return text;
    }
};

#endif
