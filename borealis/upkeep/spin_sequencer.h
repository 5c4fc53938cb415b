#ifndef BOREALIS_UPKEEP_SPIN_SEQUENCER_H
#define BOREALIS_UPKEEP_SPIN_SEQUENCER_H

// The mirror control code for each tick: 3 while a wash runs, then 0 once
// and 5 for three ticks, then 0 (idle). A new sequencer starts in that tail,
// so the device gets 5 for three ticks after start-up.
class SpinSequencer {
public:
    static constexpr int kIdle = 0;
    static constexpr int kSpin = 3;
    static constexpr int kSettle = 5;

    // Starts a wash that lasts until Stop() or Step(false); gives 3.
    int Start();
    // Ends the wash; the tail follows on the next steps. Gives 0.
    int Stop();
    // The code for the next tick.
    int Step();
    // Runs the wash while `run` is set, then the code for the next tick.
    int Step(bool run);

private:
    int step_ = 2;
    bool run_ = false;
};

#endif
