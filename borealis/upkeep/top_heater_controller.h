#ifndef BOREALIS_UPKEEP_TOP_HEATER_CONTROLLER_H
#define BOREALIS_UPKEEP_TOP_HEATER_CONTROLLER_H

#include <array>

// The top heater's power (percent) from the optics temperature difference:
// a fuzzy controller on the error from the set point and its rate of change,
// updated from the mean of at least 10 samples over at least 10 seconds.
// Pure: the owner feeds samples and times and sends the output.
class TopHeaterController {
public:
    // Feeds one sample taken at time of day `t`. A bad sample restarts the
    // averaging, sets the output to 5 and makes the next Update() do nothing.
    void Sample(int t, float sample, bool bad_sample);
    // Recomputes the output when 10 s and 10 samples have passed since the
    // last update (`t` is the time of day; midnight is crossed).
    void Update(int t);

    // The output power for error `error` (mean minus set point) and error
    // rate `rate` (per second), limited to the maximum power.
    int PowerFor(float error, float rate) const;

    // The power in percent last computed; 0 at start.
    int Output() const { return output_; }
    int Maximum() const { return maximum_; }
    void SetMaximum(int percent) { maximum_ = percent; }
    void SetSetPoint(float set_point) { set_point_ = set_point; }

private:
    int maximum_ = 100;
    float set_point_ = 0;
    float sum_ = 0;
    int count_ = 0;
    int last_update_ = 0;
    float last_error_ = 0;
    bool latched_ = false;
    int output_ = 0;
    // The rules' powers, in the order of their strengths (see PowerFor).
    std::array<int, 9> weights_{100, 100, 75, 50, 50, 10, 0, 0, 0};
};

#endif
