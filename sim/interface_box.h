#ifndef SIM_INTERFACE_BOX_H
#define SIM_INTERFACE_BOX_H

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "sim/device_socket.h"
#include "sim/event_loop.h"
#include "sim/processor_time.h"

// A box command that cannot be carried out; the text says why.
class BoxError : public std::runtime_error {
public:
    explicit BoxError(const std::string& message) : std::runtime_error(message) {}
};

// The interface box: a TCP client of the daemon on this host that reports
// its auxiliary inputs AUX5 to AUX8 and its USB storage in "Base" lines, at
// a settable rate, each stamped with the driver's clock (the system time,
// or the manual clock's), and keeps the lines the daemon sends it. A report
// waits until the processor frames due before it have left, so that the
// daemon meets them in time order.
class InterfaceBox {
public:
    // Called when a step has finished: with an empty text, or the reason
    // why it failed.
    using Done = std::function<void(const std::string& error)>;

    InterfaceBox(EventLoop& loop, ProcessorTime& time, DeviceSocket& dsp,
                 unsigned short default_port);
    ~InterfaceBox();
    InterfaceBox(const InterfaceBox&) = delete;
    InterfaceBox& operator=(const InterfaceBox&) = delete;

    unsigned short DefaultPort() const { return default_port_; }
    // Connects to `port` on the loopback address; the first report is due
    // at once. Throws BoxError when connected already or refused.
    void Connect(unsigned short port);
    // Stops sending and closes once the daemon has closed its end; throws
    // BoxError when not connected.
    void Disconnect();
    bool Connected() const { return fd_ >= 0; }
    // Calls `done` once the daemon has greeted the box (after Connect),
    // closed its end (after Disconnect) and every report so far has been
    // written; at once when nothing is pending.
    void WhenSettled(Done done);

    // Reports per second, 0 to 1000 (0: only on SendReport); throws BoxError
    // out of that range. The next report is due a period after the last.
    void SetRate(double per_second);
    // Sets AUX5 to AUX8, USB (an integer), CAPACITY or FREE, names in any
    // case; throws BoxError for another name or a bad number.
    void SetValue(const std::string& name, const std::string& value);
    // The model word and description sent after the numbers (none when
    // the model is empty).
    void SetModel(const std::string& model, const std::string& description);
    // Sends one report now; throws BoxError when not connected.
    void SendReport();
    // The last lines received from the daemon, without their line ends,
    // oldest first.
    const std::deque<std::string>& Received() const { return received_; }

    // When the next report falls due on the processor's time; -1 when none
    // is due (not connected, or rate 0).
    std::int64_t NextDueNs() const;
    // Sends the report due by now, if any.
    void SendDue();

private:
    enum class State { kIdle, kGreeting, kOpen, kClosing };

    std::int64_t Period() const;
    std::string ReportLine() const;
    void Queue(const std::string& line);
    void Serve(short revents);
    void Read();
    void Write();
    void Closed(const std::string& error);
    void TimedOut();
    void ArmTimer();
    void Settle(const std::string& error);

    EventLoop& loop_;
    ProcessorTime& time_;
    DeviceSocket& dsp_;
    unsigned short default_port_;
    int fd_ = -1;
    unsigned long connection_ = 0;  // tells a connection from a later one
    State state_ = State::kIdle;
    std::string input_;
    std::string output_;
    unsigned pending_reports_ = 0;  // waiting for the processor's frames
    std::deque<std::string> received_;
    std::vector<Done> settled_handlers_;
    Timer deadline_;
    Timer report_timer_;

    double rate_ = 1.0;
    std::int64_t connected_ns_ = 0;
    std::int64_t last_report_ns_ = -1;  // none yet
    std::array<float, 4> aux_{};
    long usb_ = 0;
    float capacity_ = 0, free_ = 0;
    std::string model_, description_;
};

#endif
