#include "borealis/config/doc4410.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <sstream>
#include <string>

#include "tests/support/error_text.h"

namespace {

// Logs every call with its arguments, calls separated by "; ".
class RecordingListener : public Doc4410::Listener {
public:
    std::string calls;

    void TempRangeChanged(int range) override { Log("TempRangeChanged", range); }
    void OutputRateChanged(int rate) override { Log("OutputRateChanged", rate); }
    void ZeroRequested() override { Log("ZeroRequested"); }
    void SpanRequested(float concentration) override { Log("SpanRequested", concentration); }
    void CalCommitRequested() override { Log("CalCommitRequested"); }
    void CalRollbackRequested() override { Log("CalRollbackRequested"); }
    void CalAbortRequested() override { Log("CalAbortRequested"); }
    void CalChanged() override { Log("CalChanged"); }
    void PollRequested() override { Log("PollRequested"); }
    void PollTestRequested() override { Log("PollTestRequested"); }
    void LineLockRequested() override { Log("LineLockRequested"); }
    void LogUsbStartRequested() override { Log("LogUsbStartRequested"); }
    void LogUsbStopRequested() override { Log("LogUsbStopRequested"); }
    void TopHeaterChanged(int p, int c, float t, int on, int off) override {
        Log("TopHeaterChanged", p, c, t, on, off);
    }
    void BottomHeaterChanged(int p, int c, int l, int on, int off) override {
        Log("BottomHeaterChanged", p, c, l, on, off);
    }
    void SpinMirrorChanged(int c, int l, int on, int off, int d, int r) override {
        Log("SpinMirrorChanged", c, l, on, off, d, r);
    }
    void LineLockChanged(int c, float t, std::uint16_t d, int bc, float bt,
                         std::uint16_t bd) override {
        Log("LineLockChanged", c, t, d, bc, bt, bd);
    }
    void ClockTimeChanged(std::int64_t seconds) override { Log("ClockTimeChanged", seconds); }
    void TimeZoneChanged(const std::string& zone) override { Log("TimeZoneChanged", zone); }
    void PtpModeChanged(int ptp) override { Log("PtpModeChanged", ptp); }
    void NetworkChanged(const std::string& host, bool dhcp, const std::string& address,
                        const std::string& mask, const std::string& gateway) override {
        Log("NetworkChanged", host, dhcp, address, mask, gateway);
    }
    void AuxChanged(int n, int type, float a0, float a1, float a2, float a3) override {
        Log("AuxChanged", n, type, a0, a1, a2, a3);
    }
    void FactoryChanged() override { Log("FactoryChanged"); }
    void FactoryCommitRequested() override { Log("FactoryCommitRequested"); }
    void FactoryRollbackRequested() override { Log("FactoryRollbackRequested"); }
    void RebootRequested() override { Log("RebootRequested"); }
    void SaveRequested() override { Log("SaveRequested"); }

private:
    template <typename... Args>
    void Log(const char* name, const Args&... args) {
        std::ostringstream call;
        call << std::boolalpha << (calls.empty() ? "" : "; ") << name << "(";
        [[maybe_unused]] const char* separator = "";
        ((call << separator << args, separator = ", "), ...);
        calls += call.str() + ")";
    }
};

// Local time follows `zone` while this lives.
struct ScopedZone {
    explicit ScopedZone(const char* zone) { setenv("TZ", zone, 1), tzset(); }
    ~ScopedZone() { unsetenv("TZ"), tzset(); }
};

const char* const kCet = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(Doc4410, DispatchCallsTheListenerForWhatChangedInOrder) {
    ScopedZone utc("UTC0");
    struct Row {
        const char* velaContent;
        const char* calls;
        const char* error;
    };
    // One document through all rows, cleared after each as the hub does. A
    // zone or network change alone is in the system scenarios.
    const Row rows[] = {
        {"<output><rate>40</rate></output><cfg><temprange>high</temprange></cfg>", "", ""},
        {"<cmd><ch4zero>true</ch4zero></cmd>", "ZeroRequested()", ""},
        {"<cmd><ch4zero>true</ch4zero></cmd>", "ZeroRequested()", ""},
        {"<cmd><reboot>true</reboot><logusbstop>true</logusbstop><logusbstart>true</logusbstart>"
         "<calabort>true</calabort><calrollback>true</calrollback><calcommit>true</"
         "calcommit><ch4span>true</ch4span>"
         "<ch4zero>true</ch4zero><polltest>true</polltest><poll>true</poll><linelock>true</"
         "linelock></cmd>",
         "LineLockRequested(); PollRequested(); PollTestRequested(); ZeroRequested(); "
         "SpanRequested(2); "
         "CalCommitRequested(); CalRollbackRequested(); CalAbortRequested(); "
         "LogUsbStartRequested(); "
         "LogUsbStopRequested(); RebootRequested()",
         ""},
        {"<cmd><poll>true</poll></cmd><output><rate>5</rate></output>",
         "OutputRateChanged(5); SaveRequested(); PollRequested()", ""},
        {"<cfg><dac3><src>ch4</src></dac3></cfg>", "SaveRequested()", ""},
        {"<cfg><clock><ptp>slaveonly</ptp><time>12:5:7</time><date>2024-02-10</date></clock></cfg>",
         "ClockTimeChanged(1707566707); PtpModeChanged(1)", ""},
        {"<cfg><linelock><laserblock><daccount>65535</daccount></laserblock></linelock></cfg>",
         "LineLockChanged(0, 25, 0, 1, 22, 65535)", ""},
        {"<box><usb><zip>true</zip></usb></box>", "SaveRequested()", ""},
        {"<cal><ch4zero>0.5</ch4zero></cal><cfg><temprange>low</temprange></cfg>",
         "CalChanged(); TempRangeChanged(0); SaveRequested()", ""},
        {"<cfg><heater><top><ontime>01:30</ontime></top><bottom><control>on</control></bottom></"
         "heater>"
         "<spinmirror><duration>60</duration></spinmirror></cfg>",
         "BottomHeaterChanged(100, 1, 40, 0, 0); TopHeaterChanged(100, 0, 0, 5400, 0); "
         "SpinMirrorChanged(0, 40, 0, 0, 60, 1800); SaveRequested()",
         ""},
        {"<cfg><aux3><type>steinhart</type><a2>0.5</a2></aux3></cfg>",
         "AuxChanged(3, 1, 0, 0, 0.5, 0); SaveRequested()", ""},
        // Values read before an error stay, but nothing is dispatched.
        {"<cfg><temprange>high</temprange></cfg><output><rate>3</rate></output>", "",
         "XML error in item \"rate\": invalid option: 3\n"},
        // A failing operation stops the ones after it.
        {"<cfg><temprange>low</temprange><clock><date>2024/02/10</date><zone>UTC</zone></clock></"
         "cfg>",
         "TempRangeChanged(0)", "Invalid date format (should be YYYY-MM-DD): 2024/02/10"},
        {"<factory><cmd><commit>true</commit><rollback>true</rollback></cmd></factory>",
         "FactoryCommitRequested(); FactoryRollbackRequested(); FactoryChanged()", ""},
    };
    Doc4410 doc;
    doc.set_throw_errors(true);
    RecordingListener listener;
    doc.SetListener(&listener);
    doc.set_changed(false);
    for (const Row& row : rows) {
        listener.calls.clear();
        std::istringstream in(std::string("<norvance><vela>") + row.velaContent +
                              "</vela></norvance>");
        std::ostringstream out;
        EXPECT_EQ(ErrorText([&] { doc.ReadAndDispatch(in, out); }), row.error) << row.velaContent;
        EXPECT_EQ(listener.calls, row.calls) << row.velaContent;
        doc.set_changed(false);
    }
}

TEST(Doc4410, VisibleChangeLeavesOutSessionAndDeviceElements) {
    Doc4410 doc;
    Config4410& vela = doc.vela;
    const std::pair<Configurable*, bool> cases[] = {
        {&vela.ack, false},           {&vela.error, false},
        {&vela.cmd.poll, false},      {&vela.cpld.motor.control, false},
        {&vela.output, true},         {&vela.box.usb, true},
        {&vela.cfg.sdmaddress, true}, {&vela.cal, true},
        {&vela.factory, true},        {&vela.ver, true},
        {&vela.name, true},           {&vela.ipaddress, true},
    };
    doc.set_changed(false);
    EXPECT_FALSE(doc.HasVisibleChange());
    for (const auto& c : cases) {
        c.first->set_changed(true);
        EXPECT_EQ(doc.HasVisibleChange(), c.second) << c.first->name();
        doc.set_changed(false);
    }
}

TEST(ConfigCfgClock, TimeReadsLocalDateAndTimeAndSetFromTimeWritesThemBack) {
    struct Case {
        const char* zone;
        const char* date;
        const char* time;
        std::string result;   // seconds or the error text
        const char* written;  // by SetFromTime(seconds)
    };
    const Case cases[] = {
        {"UTC0", "2024-02-30", "00:00:00", "1709251200", "2024-03-01 00:00:00"},
        {kCet, "2024-02-10", "13:05:07", "1707566707", "2024-02-10 13:05:07"},
        {kCet, "2024-07-01", "12:00:00", "1719828000", "2024-07-01 12:00:00"},  // summer time
        {kCet, "2040-02-29", "12:00:00", "2214126000", "2040-02-29 12:00:00"},  // after 2038
        {"UTC0", "2024-02", "12:05:07", "Invalid date format (should be YYYY-MM-DD): 2024-02", ""},
        {"UTC0", "2024-02-10", "12-05-07", "Invalid time format (should be HH:MM:SS): 12-05-07",
         ""},
        {"UTC0", "2024-02-10", "12:05", "Invalid time format (should be HH:MM:SS): 12:05", ""},
    };
    for (const Case& c : cases) {
        ScopedZone zone(c.zone);
        ConfigCfgClock clock;
        clock.date.set(c.date);
        clock.time.set(c.time);
        std::int64_t seconds = 0;
        std::string error = ErrorText([&] { seconds = clock.Time(); });
        EXPECT_EQ(error.empty() ? std::to_string(seconds) : error, c.result)
            << c.date << " " << c.time;
        if (!error.empty()) continue;
        clock.SetFromTime(seconds);
        EXPECT_EQ(clock.date.value() + " " + clock.time.value(), c.written);
    }
}

}  // namespace
