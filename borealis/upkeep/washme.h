#ifndef BOREALIS_UPKEEP_WASHME_H
#define BOREALIS_UPKEEP_WASHME_H

#include <cstdint>
#include <memory>
#include <string>

#include "borealis/platform/mirror_heater_device.h"
#include "borealis/upkeep/spin_sequencer.h"
#include "borealis/upkeep/top_heater_controller.h"
#include "borealis/upkeep/wash_schedule.h"

class Platform;

// The mirror, washer pump and heater device and its daily schedules. It
// remembers the last control code (c), top and bottom heater power (t, b,
// percent), pump state (p) and mirror set point (m) sent, and writes a
// command only when a value changes. Ticked once per status record.
//
// A failed write never ends the daemon: it prints one line on standard
// output ("WashMe: " and the device's message; the failures that follow it
// without a success in between are not printed again) and the value is not
// remembered as sent, so the next setter or tick with that value sends it
// again.
class WashMe {
public:
    // The DIAG bits of the data record that come from this device.
    struct Diag {
        static constexpr std::uint32_t MOTORFAILURE = 0x0010;
        static constexpr std::uint32_t BOTTOMHEATERON = 0x0040;
        static constexpr std::uint32_t TOPHEATERON = 0x0080;
        static constexpr std::uint32_t PUMPON = 0x0100;
        static constexpr std::uint32_t MOTORSPINNING = 0x0200;
    };
    // Full power of each heater in watts.
    static constexpr float kTopHeaterWatts = 8.56f;
    static constexpr float kBottomHeaterWatts = 8.56f;

    // Opens the device at the system path `path` through `platform` and
    // sends "c0 m0 p0 t0 b0". Throws std::runtime_error("Unable to open
    // device: " + the path) when it cannot be opened.
    WashMe(Platform& platform, const std::string& path);
    WashMe(const WashMe&) = delete;
    WashMe& operator=(const WashMe&) = delete;

    // --- Manual switching; each disables the schedule it overrides ---

    // Starts a wash that runs until StopWash() or a wash schedule.
    void WashNow();
    // Ends a wash; the mirror then goes through its tail of codes.
    void StopWash();
    void PumpOn();
    void PumpOff();
    // Switches the bottom heater to the power of the last settings.
    void BottomHeaterOn();
    void BottomHeaterOff();
    // Switches the top heater to the controller's maximum power.
    void TopHeaterOn();
    void TopHeaterOff();
    // Sends the mirror motor's set point, clamped to 0..1023.
    void SetMirrorPosition(int value);

    // --- Schedules (levels 0..100, times in seconds since midnight) ---

    // Washes for `duration` seconds every `repeat` seconds within the window
    // from `on` to `off`, with the pump running for all but the last 10 s;
    // a slot runs when the signal strength is at most `level` at its start.
    void ScheduleWash(int level, int on, int off, int duration, int repeat);
    // Runs the bottom heater in slots of `slot` seconds, as the wash.
    void ScheduleBottomHeater(int level, int on, int off, int slot);
    // Runs the top heater at the controller's power in slots of `slot` seconds.
    void ScheduleTopHeater(int level, int on, int off, int slot);

    // One status record: `t` its local time of day in seconds, `level` the
    // signal strength, `sample` the optics temperature difference and
    // `bad_sample` whether that temperature is bad. Runs the schedules once
    // per second and sends what changed on one line.
    void Tick(int t, int level, float sample, bool bad_sample);

    // Reads the motor's actual value (the low 15 bits of the report); a
    // report with the top bit set while spinning clears the washing mark.
    // On a failed read `failed` is set and the value is 0.
    int ReadStatus(bool& failed);

    // --- The settings' operations (control: 0 "auto", 1 "on", 2 "off") ---

    // cfg/spinmirror: wash now, stop, or follow the wash schedule.
    void SpinMirrorChanged(int control, int signalstrengthlevel, int ontime, int offtime,
                           int duration, int repeatinterval);
    // cfg/heater/top: off, or the controller at `heaterpower` at most on
    // `deltat`, all day ("on") or from `ontime` to `offtime` ("auto").
    void TopHeaterChanged(int heaterpower, int control, float deltat, int ontime, int offtime);
    // cfg/heater/bottom: `heaterpower` on, off, or in 300 s slots decided by
    // the signal strength ("auto").
    void BottomHeaterChanged(int heaterpower, int control, int signalstrengthlevel, int ontime,
                             int offtime);

    // --- What the records show ---

    // The Diag bits of the values last sent and of the washing mark.
    std::uint32_t DiagBits() const;
    // The mirror set point last sent.
    int MotorSetPoint() const { return m_; }
    float TopHeaterWatts() const { return t_ * kTopHeaterWatts / 100; }
    float BottomHeaterWatts() const { return b_ * kBottomHeaterWatts / 100; }
    // Set when a wash starts, cleared when the motor reports (top bit set)
    // that it spins.
    bool Washing() const { return washing_; }

private:
    // Sends the control code alone, as SendSingle().
    void SendControl(int code);
    // Clamps `value` to 0..`max` and, when it differs from `last`, writes it
    // after the letter `command`; true when written (`last` then holds it).
    bool SendSingle(char command, int value, int max, int& last);
    // Clamps all four and writes them on one line when any changed.
    void SendAll(int code, int top, int bottom, int pump);
    // Remembers a control code the device took.
    void ControlSent(int code);
    // Writes `command` and its line end; false (after a message) on failure.
    bool Send(const std::string& command);

    std::unique_ptr<MirrorHeaterDevice> device_;
    int c_ = 0;
    int t_ = 0;
    int b_ = 0;
    int p_ = 0;
    int m_ = 0;
    int bottom_power_ = 0;
    bool washing_ = false;
    bool write_failing_ = false;
    // No tick yet: the first one always runs.
    int last_tick_ = -1;
    WashSchedule bottom_schedule_;
    WashSchedule top_schedule_;
    WashSchedule wash_schedule_;
    WashSchedule pump_schedule_;
    SpinSequencer sequencer_;
    TopHeaterController top_controller_;
};

#endif
