#include "borealis/config/doc4410.h"

namespace {

// Times of day and durations are held as seconds from the epoch of Timestamp.
int Seconds(const ConfigurableTime_HourMinutes& time) {
    return static_cast<int>(time.value().get());
}

}  // namespace

Doc4410::Doc4410() : ConfigurableComposite("norvance"), vela("vela") { add_child(&vela); }

std::istream& Doc4410::ReadAndDispatch(std::istream& in, std::ostream& out) {
    // A command is true after the read only when this input sets it.
    ResetCommands();
    process(in, out);
    if (theListener) Dispatch(*theListener);
    return in;
}

void Doc4410::ResetCommands() {
    vela.cmd.set_default();
    vela.factory.cmd.set_default();
}

bool Doc4410::HasVisibleChange() const {
    if (!vela.has_changed()) return false;
    const Configurable* visible[] = {&vela.output, &vela.box,          &vela.cfg,
                                     &vela.cal,    &vela.factory,      &vela.ver,
                                     &vela.name,   &vela.serialnumber, &vela.ipaddress};
    for (const Configurable* element : visible) {
        if (element->has_changed()) return true;
    }
    return false;
}

void Doc4410::Dispatch(Listener& listener) const {
    bool saveNeeded = vela.box.has_changed();
    if (vela.cal.has_changed()) listener.CalChanged();
    if (vela.output.rate.has_changed()) {
        listener.OutputRateChanged(vela.output.rate.number());
        saveNeeded = true;
    }
    if (vela.cfg.has_changed() && DispatchCfg(listener)) saveNeeded = true;
    if (vela.factory.has_changed()) DispatchFactory(listener);
    if (saveNeeded) listener.SaveRequested();
    if (vela.cmd.has_changed()) DispatchCommands(listener);
}

bool Doc4410::DispatchCfg(Listener& listener) const {
    const ConfigCfg& cfg = vela.cfg;
    bool saveNeeded = false;
    if (cfg.temprange.has_changed()) {
        listener.TempRangeChanged(cfg.temprange.value());
        saveNeeded = true;
    }
    if (cfg.heater.has_changed()) {
        const ConfigBottomHeater& bottom = cfg.heater.bottom;
        const ConfigTopHeater& top = cfg.heater.top;
        if (bottom.has_changed()) {
            listener.BottomHeaterChanged(bottom.heaterpower.value(), bottom.control.value(),
                                         bottom.signalstrengthlevel.value(), Seconds(bottom.ontime),
                                         Seconds(bottom.offtime));
        }
        if (top.has_changed()) {
            listener.TopHeaterChanged(top.heaterpower.value(), top.control.value(),
                                      top.deltat.value(), Seconds(top.ontime),
                                      Seconds(top.offtime));
        }
        saveNeeded = true;
    }
    if (cfg.spinmirror.has_changed()) {
        const ConfigSpinMirror& mirror = cfg.spinmirror;
        listener.SpinMirrorChanged(mirror.control.value(), mirror.signalstrengthlevel.value(),
                                   Seconds(mirror.ontime), Seconds(mirror.offtime),
                                   mirror.duration.value(), Seconds(mirror.repeatinterval));
        saveNeeded = true;
    }
    if (cfg.linelock.has_changed()) {
        const ConfigLaserCooler& cooler = cfg.linelock.lasercooler;
        const ConfigLaserBlock& block = cfg.linelock.laserblock;
        listener.LineLockChanged(cooler.control.value(), cooler.temp.value(),
                                 static_cast<std::uint16_t>(cooler.daccount.value()),
                                 block.control.value(), block.temp.value(),
                                 static_cast<std::uint16_t>(block.daccount.value()));
    }
    if (cfg.clock.has_changed()) {
        const ConfigCfgClock& clock = cfg.clock;
        if (clock.time.has_changed() || clock.date.has_changed())
            listener.ClockTimeChanged(clock.Time());
        if (clock.zone.has_changed()) listener.TimeZoneChanged(clock.zone.value_text());
        if (clock.ptp.has_changed()) listener.PtpModeChanged(clock.ptp.value());
    }
    if (cfg.network.has_changed()) {
        const ConfigCfgNetwork& network = cfg.network;
        listener.NetworkChanged(
            network.name.value(), network.configuration.value() == 0 /* "auto" */,
            network.ipaddress.value().ToString(), network.netmask.value().ToString(),
            network.gateway.value().ToString());
    }
    for (int number = 1; number <= ConfigCfg::kAuxCount; ++number) {
        const ConfigCfgAux& aux = cfg.aux(number);
        if (!aux.has_changed()) continue;
        listener.AuxChanged(number, aux.type.value(), aux.a0.value(), aux.a1.value(),
                            aux.a2.value(), aux.a3.value());
        saveNeeded = true;
    }
    // The analog outputs are computed from the document on every record:
    // they only need saving.
    for (int number = 1; number <= ConfigCfg::kDacCount; ++number) {
        if (cfg.dac(number).has_changed()) saveNeeded = true;
    }
    return saveNeeded;
}

void Doc4410::DispatchFactory(Listener& listener) const {
    const ConfigFactoryCmd& cmd = vela.factory.cmd;
    if (cmd.has_changed()) {
        if (cmd.commit.value()) listener.FactoryCommitRequested();
        if (cmd.rollback.value()) listener.FactoryRollbackRequested();
    }
    listener.FactoryChanged();
}

void Doc4410::DispatchCommands(Listener& listener) const {
    const ConfigCmd& cmd = vela.cmd;
    if (cmd.linelock.value()) listener.LineLockRequested();
    if (cmd.poll.value()) listener.PollRequested();
    if (cmd.polltest.value()) listener.PollTestRequested();
    if (cmd.ch4zero.value()) listener.ZeroRequested();
    if (cmd.ch4span.value()) listener.SpanRequested(vela.cal.ch4spanconc.value());
    if (cmd.calcommit.value()) listener.CalCommitRequested();
    if (cmd.calrollback.value()) listener.CalRollbackRequested();
    if (cmd.calabort.value()) listener.CalAbortRequested();
    if (cmd.logusbstart.value()) listener.LogUsbStartRequested();
    if (cmd.logusbstop.value()) listener.LogUsbStopRequested();
    if (cmd.reboot.value()) listener.RebootRequested();
}
