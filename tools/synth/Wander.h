#pragma once

#include "Loop.h"
#include "Random.h"

namespace synth {

// The slow unsteadiness of a player: of the pitch, which lips and hands move, and of the level, which goes with it in
// part, since a stronger breath is louder and sharper. Both are sums of many sines of which each fits the loop a whole
// number of times, so that they have no seam. It is no vibrato: no single speed stands out. Means are 0. Around the
// loop's beginning, where a tone is blown on, the player is steadier.
class Wander {
public:
    Wander(Random& random, std::size_t frames);

    // At every frame of the loop.
    const Loop& Cents() const { return cents_; }
    const Loop& Decibels() const { return decibels_; }
    // The integral of the cents from the loop's beginning, in cents times seconds.
    const Loop& CentsIntegral() const { return integral_; }

private:
    Loop cents_;
    Loop decibels_;
    Loop integral_;
};

}  // namespace synth
