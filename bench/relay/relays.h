#ifndef BENCH_RELAY_RELAYS_H
#define BENCH_RELAY_RELAYS_H

#include <memory>
#include <string>

#include "bench/relay/processes.h"

// Where the programs under measurement are.
struct Programs {
    std::string borealis;
    std::string vela_sim;
    std::string baseline;
};

// A process that relays records to TCP clients on `port`: the daemon in front
// of a simulated analyzer, or the bare baseline.
class Relay {
public:
    virtual ~Relay() = default;
    int port() const { return port_; }
    // The relaying process (the daemon, not its simulator).
    virtual const Child& process() const = 0;

protected:
    explicit Relay(int port) : port_(port) {}

private:
    int port_;
};

// vela-sim and borealis on a fresh root. With `manual` the simulator's
// clock stands still until told to run; otherwise it plays 40 records a
// second in real time.
class DaemonRelay : public Relay {
public:
    DaemonRelay(const Programs& programs, int port, bool manual);
    ~DaemonRelay() override;

    const Child& process() const override { return *daemon_; }
    SimControl& sim() { return *control_; }
    // When the daemon's process was started.
    Clock::time_point started() const { return started_; }

private:
    TempDir root_;
    std::unique_ptr<Child> sim_;
    std::unique_ptr<SimControl> control_;
    std::unique_ptr<Child> daemon_;
    Clock::time_point started_;
};

// The bare relay writing `rate` lines a second (0: as fast as it can) of
// `length` bytes to `clients` connections.
class BaselineRelay : public Relay {
public:
    BaselineRelay(const Programs& programs, int port, int clients, int rate, int length);
    const Child& process() const override { return *baseline_; }

private:
    TempDir dir_;
    std::unique_ptr<Child> baseline_;
};

// A TCP port that is free at the moment of asking.
int NextPort();

#endif
