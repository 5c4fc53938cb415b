#include "borealis/upkeep/top_heater_controller.h"

#include <algorithm>

namespace {

const int kDay = 86400;
const int kMinimumSeconds = 10;
const int kMinimumSamples = 10;
// The power held after a bad temperature sample.
const int kBadSamplePower = 5;

// Memberships in percent of the error: much too cold (A), too cold (B), near
// (C), too warm (D), much too warm (E); neighbouring sets share 100.
struct ErrorSets {
    int a = 0, b = 0, c = 0, d = 0, e = 0;
};

ErrorSets ErrorMemberships(float e) {
    ErrorSets sets;
    if (e <= -1.0f) {
        sets.a = 100;
    } else if (e <= -0.5f) {
        sets.b = static_cast<int>(200.0f * e + 200.0f);
        sets.a = 100 - sets.b;
    } else if (e <= 0.0f) {
        sets.c = static_cast<int>(200.0f * e + 100.0f);
        sets.b = 100 - sets.c;
    } else if (e <= 0.5f) {
        sets.d = static_cast<int>(200.0f * e);
        sets.c = 100 - sets.d;
    } else if (e <= 1.0f) {
        sets.e = static_cast<int>(200.0f * e - 100.0f);
        sets.d = 100 - sets.e;
    } else if (e > 1.0f) {  // an error that is no number belongs to no set
        sets.e = 100;
    }
    return sets;
}

// Memberships in percent of the error rate: falling (N), steady (Z), rising (P).
struct RateSets {
    int n = 0, z = 0, p = 0;
};

RateSets RateMemberships(float r) {
    RateSets sets;
    if (r <= -0.02f) {
        sets.n = 100;
    } else if (r <= 0.0f) {
        sets.z = static_cast<int>(5000.0f * r + 100.0f);
        sets.n = 100 - sets.z;
    } else if (r <= 0.02f) {
        sets.p = static_cast<int>(5000.0f * r);
        sets.z = 100 - sets.p;
    } else if (r > 0.02f) {  // as for the error
        sets.p = 100;
    }
    return sets;
}

}  // namespace

void TopHeaterController::Sample(int t, float sample, bool bad_sample) {
    if (bad_sample) {
        latched_ = true;
        sum_ = 0;
        count_ = 0;
        output_ = kBadSamplePower;
        last_update_ = t;
        return;
    }
    sum_ += sample;
    ++count_;
}

void TopHeaterController::Update(int t) {
    if (latched_) {
        latched_ = false;
        return;
    }
    const int dt = t - last_update_ + (t < last_update_ ? kDay : 0);
    if (dt < kMinimumSeconds || count_ < kMinimumSamples) return;
    const float error = sum_ / count_ - set_point_;
    const float rate = (error - last_error_) / dt;
    last_update_ = t;
    sum_ = 0;
    count_ = 0;
    last_error_ = error;
    output_ = PowerFor(error, rate);
}

int TopHeaterController::PowerFor(float error, float rate) const {
    const ErrorSets e = ErrorMemberships(error);
    const RateSets r = RateMemberships(rate);
    const std::array<int, 9> strengths{e.a,
                                       std::min(r.n, e.b),
                                       std::min(r.z, e.b),
                                       std::min(r.p, e.b),
                                       std::min(r.n, e.c),
                                       std::min(r.z, e.c),
                                       std::min(r.p, e.c),
                                       e.d,
                                       e.e};
    int weighted = 0;
    int total = 0;
    for (std::size_t i = 0; i < strengths.size(); ++i) {
        weighted += strengths[i] * weights_[i];
        total += strengths[i];
    }
    // No rule fires only for an error or rate that is no number: keep the power.
    if (total == 0) return output_;
    return std::min(weighted / total, maximum_);
}
