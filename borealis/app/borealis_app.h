#ifndef BOREALIS_APP_BOREALIS_APP_H
#define BOREALIS_APP_BOREALIS_APP_H

#include <string>

#include "common/daemon_app.h"

class Platform;

// The borealis program: the resident daemon of the analyzer with -b, and
// its own control tool with -k (stop) and -r (reread the configuration).
class BorealisApp : public DaemonApp {
public:
    // Takes the pid file "/var/run/borealis.pid" where `platform` puts it;
    // the platform (not owned) is handed on to what the daemon builds.
    explicit BorealisApp(Platform& platform);

    // The whole life of the process; returns the exit status.
    int run(int argc, char* argv[]);
    // Acts on the options in the order given; false when the process is to
    // end with `exit_code`.
    bool parse_options(int argc, char* argv[], int& exit_code);
    // Asks the running daemon to stop; false (with a message) on failure.
    bool shutdown();
    // Asks the running daemon to reread its configuration.
    bool readconfig();

    bool daemon() const { return daemon_; }
    bool realtime() const { return realtime_; }
    bool use_syslog() const { return use_syslog_; }
    bool debug() const { return debug_; }
    bool no_clock_adjust() const { return no_clock_adjust_; }

private:
    bool signal_daemon(int number, const char* operation);
    void reroute_output_to_syslog();

    Platform& platform_;
    bool daemon_ = false;
    bool realtime_ = false;
    bool use_syslog_ = false;
    bool debug_ = false;
    bool no_clock_adjust_ = false;
};

// The help text printed by -h; its first line is "borealis " and the version.
extern const std::string kBorealisHelp;

// Switches the process to first-in-first-out real-time scheduling and locks
// its memory.
void set_real_time_priority();

#endif
