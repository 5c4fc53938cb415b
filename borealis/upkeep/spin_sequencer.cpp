#include "borealis/upkeep/spin_sequencer.h"

int SpinSequencer::Start() {
    step_ = 1;
    run_ = true;
    return kSpin;
}

int SpinSequencer::Stop() {
    run_ = false;
    return kIdle;
}

int SpinSequencer::Step() {
    if (run_) {
        step_ = 1;
        return kSpin;
    }
    switch (step_) {
    case 1: step_ = 2; return kIdle;
    case 2:
    case 3: ++step_; return kSettle;
    case 4: step_ = 0; return kSettle;
    default: return kIdle;
    }
}

int SpinSequencer::Step(bool run) {
    run_ = run;
    return Step();
}
