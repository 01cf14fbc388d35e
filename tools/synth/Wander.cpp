#include "Wander.h"

#include "Loop.h"

#include <algorithm>
#include <cmath>

namespace synth {

Wander::Wander(Random& random, int fastest) {
    for (int turns = 1; turns <= fastest; ++turns) {
        sines_.push_back({static_cast<double>(turns), 1.0 / turns, 2.0 * kPi * random.Uniform()});
    }

    constexpr int kProbes = 4096;
    double peak = 0.0;
    for (int i = 0; i < kProbes; ++i) {
        peak = std::max(peak, std::abs(At(i / static_cast<double>(kProbes))));
    }
    for (Sine& sine : sines_) {
        sine.amplitude /= peak;
    }
}

double Wander::At(double place) const {
    double sum = 0.0;
    for (const Sine& sine : sines_) {
        sum += sine.amplitude * std::sin(2.0 * kPi * sine.turns * place + sine.phase);
    }
    return sum;
}

double Wander::IntegralAt(double place) const {
    double sum = 0.0;
    for (const Sine& sine : sines_) {
        const double omega = 2.0 * kPi * sine.turns;
        sum -= sine.amplitude / omega * std::cos(omega * place + sine.phase);
    }
    return sum;
}

}  // namespace synth
