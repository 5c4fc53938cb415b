#ifndef BOREALIS_APP_INTERIM_LOOP_H
#define BOREALIS_APP_INTERIM_LOOP_H

// What the daemon runs until the measurement hub exists: it honours the
// stop and reread signals and serves the poll loop, and nothing more.
class InterimLoop {
public:
    InterimLoop(bool debug, bool no_clock_adjust);

    // Serves the poll loop until SIGINT, then prints "Exiting...".
    void Run();

private:
    bool debug_;
};

#endif
