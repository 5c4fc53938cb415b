#include "borealis/upkeep/washme.h"

#include <algorithm>
#include <exception>
#include <iostream>

#include "borealis/platform/platform.h"

namespace {

// Choice indexes of the control settings.
const int kAuto = 0;
const int kOn = 1;
const int kOff = 2;

// Heater slots of the settings' "auto" and "on": decided every 5 minutes.
const int kHeaterSlot = 300;
// The top heater's schedule always runs in its window; the controller sets the power.
const int kAlwaysRun = 100;
const int kWholeDay = 86400;

const int kMaxPercent = 100;
const int kMaxMirrorPosition = 1023;
const int kMaxControlCode = 5;

// The motor's value is the low 15 bits of its report; a set top bit confirms
// that a wash got going.
const std::uint16_t kMotorValueMask = 0x7fff;

}  // namespace

WashMe::WashMe(Platform& platform, const std::string& path) : device_(platform.OpenMirror(path)) {
    Send("c0 m0 p0 t0 b0");
}

void WashMe::WashNow() {
    SendControl(sequencer_.Start());
    wash_schedule_.Disable();
}

void WashMe::StopWash() {
    SendControl(sequencer_.Stop());
    wash_schedule_.Disable();
}

void WashMe::PumpOn() {
    SendSingle('p', 1, 1, p_);
    pump_schedule_.Disable();
}

void WashMe::PumpOff() {
    SendSingle('p', 0, 1, p_);
    pump_schedule_.Disable();
}

void WashMe::BottomHeaterOn() {
    SendSingle('b', bottom_power_, kMaxPercent, b_);
    bottom_schedule_.Disable();
}

void WashMe::BottomHeaterOff() {
    SendSingle('b', 0, kMaxPercent, b_);
    bottom_schedule_.Disable();
}

void WashMe::TopHeaterOn() {
    SendSingle('t', top_controller_.Maximum(), kMaxPercent, t_);
    top_schedule_.Disable();
}

void WashMe::TopHeaterOff() {
    SendSingle('t', 0, kMaxPercent, t_);
    top_schedule_.Disable();
}

void WashMe::SetMirrorPosition(int value) { SendSingle('m', value, kMaxMirrorPosition, m_); }

void WashMe::ScheduleWash(int level, int on, int off, int duration, int repeat) {
    const WashSlots slots = WashSlotsFor(duration, repeat);
    wash_schedule_.Set(level, on, off, slots.wash_slot, slots.period);
    if (slots.pump_slot > 0)
        pump_schedule_.Set(level, on, off, slots.pump_slot, slots.period);
    else
        pump_schedule_.Disable();
}

void WashMe::ScheduleBottomHeater(int level, int on, int off, int slot) {
    bottom_schedule_.Set(level, on, off, slot, slot);
}

void WashMe::ScheduleTopHeater(int level, int on, int off, int slot) {
    top_schedule_.Set(level, on, off, slot, slot);
}

void WashMe::Tick(int t, int level, float sample, bool bad_sample) {
    top_controller_.Sample(t, sample, bad_sample);
    if (t == last_tick_) return;
    last_tick_ = t;
    top_controller_.Update(t);

    // A disabled schedule leaves its actuator as it was last switched.
    int top = t_;
    if (top_schedule_.Enabled())
        top = top_schedule_.RunSchedule(t, level) ? top_controller_.Output() : 0;
    int bottom = b_;
    if (bottom_schedule_.Enabled())
        bottom = bottom_schedule_.RunSchedule(t, level) ? bottom_power_ : 0;
    int pump = p_;
    if (pump_schedule_.Enabled()) pump = pump_schedule_.RunSchedule(t, level) ? 1 : 0;
    const int code = wash_schedule_.Enabled()
                         ? sequencer_.Step(wash_schedule_.RunSchedule(t, level))
                         : sequencer_.Step();
    SendAll(code, top, bottom, pump);
}

int WashMe::ReadStatus(bool& failed) {
    std::int16_t status = 0;
    failed = !device_->ReadStatus(status);
    if (failed) return 0;
    if (status < 0 && c_ == SpinSequencer::kSpin) washing_ = false;
    return static_cast<std::uint16_t>(status) & kMotorValueMask;
}

void WashMe::SpinMirrorChanged(int control, int signalstrengthlevel, int ontime, int offtime,
                               int duration, int repeatinterval) {
    switch (control) {
    case kAuto: ScheduleWash(signalstrengthlevel, ontime, offtime, duration, repeatinterval); break;
    case kOn:
        WashNow();
        PumpOff();
        break;
    case kOff:
        StopWash();
        PumpOff();
        break;
    }
}

void WashMe::TopHeaterChanged(int heaterpower, int control, float deltat, int ontime, int offtime) {
    if (control == kOff) {
        TopHeaterOff();
        return;
    }
    top_controller_.SetMaximum(heaterpower);
    top_controller_.SetSetPoint(deltat);
    if (control == kOn) top_schedule_.Set(kAlwaysRun, 0, kWholeDay, kHeaterSlot, kHeaterSlot);
    if (control == kAuto) ScheduleTopHeater(kAlwaysRun, ontime, offtime, kHeaterSlot);
}

void WashMe::BottomHeaterChanged(int heaterpower, int control, int signalstrengthlevel, int ontime,
                                 int offtime) {
    bottom_power_ = heaterpower;
    switch (control) {
    case kAuto: ScheduleBottomHeater(signalstrengthlevel, ontime, offtime, kHeaterSlot); break;
    case kOn: BottomHeaterOn(); break;
    case kOff: BottomHeaterOff(); break;
    }
}

std::uint32_t WashMe::DiagBits() const {
    std::uint32_t bits = 0;
    if (c_ == SpinSequencer::kSpin) bits |= Diag::MOTORSPINNING;
    if (p_ != 0) bits |= Diag::PUMPON;
    if (TopHeaterWatts() > 0) bits |= Diag::TOPHEATERON;
    if (BottomHeaterWatts() > 0) bits |= Diag::BOTTOMHEATERON;
    if (washing_) bits |= Diag::MOTORFAILURE;
    return bits;
}

void WashMe::SendControl(int code) {
    int sent = c_;
    if (SendSingle('c', code, kMaxControlCode, sent)) ControlSent(sent);
}

bool WashMe::SendSingle(char command, int value, int max, int& last) {
    value = std::clamp(value, 0, max);
    if (value == last || !Send(command + std::to_string(value))) return false;
    last = value;
    return true;
}

void WashMe::SendAll(int code, int top, int bottom, int pump) {
    code = std::clamp(code, 0, kMaxControlCode);
    top = std::clamp(top, 0, kMaxPercent);
    bottom = std::clamp(bottom, 0, kMaxPercent);
    pump = std::clamp(pump, 0, 1);
    if (code == c_ && top == t_ && bottom == b_ && pump == p_) return;
    if (!Send("c" + std::to_string(code) + " t" + std::to_string(top) + " b" +
              std::to_string(bottom) + " p" + std::to_string(pump)))
        return;
    ControlSent(code);
    t_ = top;
    b_ = bottom;
    p_ = pump;
}

void WashMe::ControlSent(int code) {
    if (code == SpinSequencer::kSpin && c_ != SpinSequencer::kSpin) washing_ = true;
    c_ = code;
}

bool WashMe::Send(const std::string& command) {
    try {
        device_->WriteLine(command + "\n");
    } catch (const std::exception& error) {
        if (!write_failing_) std::cout << "WashMe: " << error.what() << std::endl;
        write_failing_ = true;
        return false;
    }
    write_failing_ = false;
    return true;
}
