#pragma once

#include "Random.h"

#include <vector>

namespace synth {

// The slow unsteadiness of a player's breath, -1 to 1, mean 0, as a function of the place in the loop (0 to 1). It is a
// sum of sines that each fit the loop a whole number of times, weaker the faster they are, so that neither it nor the
// phase that it leads to has a seam. It is no vibrato: no single speed stands out.
class Wander {
public:
    // `fastest` is the number of turns a loop of the quickest sine.
    Wander(Random& random, int fastest);

    double At(double place) const;

    // The integral of At over the place; itself a loop with the mean 0.
    double IntegralAt(double place) const;

private:
    struct Sine {
        double turns;
        double amplitude;
        double phase;
    };

    std::vector<Sine> sines_;
};

}  // namespace synth
