#ifndef BOREALIS_CONFIG_DOC4410_H
#define BOREALIS_CONFIG_DOC4410_H

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

#include "borealis/config/config_4410.h"
#include "configurable/configurable.h"

// The instrument's whole configuration and state as one document,
// <norvance><vela>...</vela></norvance>. Construction builds the tree with
// its defaults; the files are loaded into it afterwards. The owner clears the
// change marks once it has built the document.
class Doc4410 : public ConfigurableComposite {
public:
    // Told what a read into the document changed, one operation per group of
    // changed settings with the new values, so that the change reaches the
    // analyzer, the platform and the operating system. Choice arguments are
    // option indexes; times of day are whole seconds since midnight.
    class Listener {
    public:
        virtual ~Listener() = default;

        // cfg/temprange changed.
        virtual void TempRangeChanged(int /*temprange*/) {}
        // output/rate changed.
        virtual void OutputRateChanged(int /*records_per_second*/) {}
        // cmd/ch4zero was set.
        virtual void ZeroRequested() {}
        // cmd/ch4span was set; the span gas concentration of cal.
        virtual void SpanRequested(float /*concentration*/) {}
        // cmd/calcommit was set.
        virtual void CalCommitRequested() {}
        // cmd/calrollback was set.
        virtual void CalRollbackRequested() {}
        // cmd/calabort was set.
        virtual void CalAbortRequested() {}
        // Something under cal changed.
        virtual void CalChanged() {}
        // cmd/poll was set.
        virtual void PollRequested() {}
        // cmd/polltest was set.
        virtual void PollTestRequested() {}
        // cmd/linelock was set.
        virtual void LineLockRequested() {}
        // cmd/logusbstart was set.
        virtual void LogUsbStartRequested() {}
        // cmd/logusbstop was set.
        virtual void LogUsbStopRequested() {}
        // cfg/heater/top changed.
        virtual void TopHeaterChanged(int /*heaterpower*/, int /*control*/, float /*deltat*/,
                                      int /*ontime*/, int /*offtime*/) {}
        // cfg/heater/bottom changed.
        virtual void BottomHeaterChanged(int /*heaterpower*/, int /*control*/,
                                         int /*signalstrengthlevel*/, int /*ontime*/,
                                         int /*offtime*/) {}
        // cfg/spinmirror changed; duration and repeatinterval in seconds.
        virtual void SpinMirrorChanged(int /*control*/, int /*signalstrengthlevel*/, int /*ontime*/,
                                       int /*offtime*/, int /*duration*/, int /*repeatinterval*/) {}
        // cfg/linelock changed.
        virtual void LineLockChanged(int /*cooler_control*/, float /*cooler_temp*/,
                                     std::uint16_t /*cooler_daccount*/, int /*block_control*/,
                                     float /*block_temp*/, std::uint16_t /*block_daccount*/) {}
        // cfg/clock/date or time changed; the new time in seconds since the epoch.
        virtual void ClockTimeChanged(std::int64_t /*seconds*/) {}
        // cfg/clock/zone changed; the zone name.
        virtual void TimeZoneChanged(const std::string& /*zone*/) {}
        // cfg/clock/ptp changed.
        virtual void PtpModeChanged(int /*ptp*/) {}
        // cfg/network changed; dhcp is true for "auto", addresses in dotted text.
        virtual void NetworkChanged(const std::string& /*host_name*/, bool /*dhcp*/,
                                    const std::string& /*address*/, const std::string& /*netmask*/,
                                    const std::string& /*gateway*/) {}
        // cfg/auxN changed, number 1..8.
        virtual void AuxChanged(int /*number*/, int /*type*/, float /*a0*/, float /*a1*/,
                                float /*a2*/, float /*a3*/) {}
        // Something under factory changed (after its commands, if any).
        virtual void FactoryChanged() {}
        // factory/cmd/commit was set.
        virtual void FactoryCommitRequested() {}
        // factory/cmd/rollback was set.
        virtual void FactoryRollbackRequested() {}
        // cmd/reboot was set.
        virtual void RebootRequested() {}
        // A setting kept in the user's configuration file changed.
        virtual void SaveRequested() {}
    };

    Doc4410();

    void SetListener(Listener* listener) { theListener = listener; }
    Listener* GetListener() const { return theListener; }

    // Reads one XML document from `in` (query answers to `out`) after
    // resetting every command to false, then tells the listener what changed.
    // A read error propagates before any listener call; an exception from a
    // listener operation propagates and skips the operations after it.
    std::istream& ReadAndDispatch(std::istream& in, std::ostream& out);

    // Whether vela changed in a way clients are told about: a change limited
    // to ack, cmd, cpld or error does not count.
    bool HasVisibleChange() const;

    Config4410 vela;

private:
    void ResetCommands();
    void Dispatch(Listener& listener) const;
    // The cfg operations; returns whether a saved setting changed.
    bool DispatchCfg(Listener& listener) const;
    void DispatchFactory(Listener& listener) const;
    void DispatchCommands(Listener& listener) const;

    Listener* theListener = nullptr;
};

#endif
