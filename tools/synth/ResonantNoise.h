#pragma once

#include "Chamber.h"
#include "Loop.h"
#include "Random.h"

namespace synth {

// The sound of the breath itself, without the tone: the jet's turbulence, as the chamber lets it out.
class ResonantNoise {
public:
    ResonantNoise(Random& random, const Chamber& chamber) : random_(random), chamber_(chamber) {}

    // The steady breath. The tone's phase, in radians a frame, moves the jet across the edge and the noise with it.
    // The result has the RMS 1.
    Loop Breath(const Loop& phase);

    // What the breath rumbles below all tones, which no resonance lifts. The result has the RMS 1.
    Loop Wind(std::size_t frames);

    // Turbulence of the jet before the chamber answers, for an attack, around `colour` times the middle of its band.
    // The result has the RMS 1.
    Loop Burst(std::size_t frames, double colour);

private:
    Loop White(std::size_t frames);

    Random& random_;
    Chamber chamber_;
};

}  // namespace synth
