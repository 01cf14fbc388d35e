#pragma once

#include "Loop.h"

namespace synth {

// A filter of second order. It runs around a loop in its steady state, not from silence: a first lap only settles it.
// The formulas come from the analogue prototypes by the bilinear transform with the corner frequency kept exact, as in
// R. Bristow-Johnson, "Cookbook formulae for audio EQ biquad filter coefficients".
class Biquad {
public:
    // s^2 / (s^2 + s w/q + w^2): 1 far above the frequency, q at it, nothing at 0 Hz.
    static Biquad HighPass(double hertz, double q);

    // w^2 / (s^2 + s w/q + w^2): 1 far below the frequency.
    static Biquad LowPass(double hertz, double q);

    // (s w/q) / (s^2 + s w/q + w^2): 1 at the frequency.
    static Biquad BandPass(double hertz, double q);

    // 1 far below, `gain` far above, `middle` at the frequency.
    static Biquad HighShelf(double hertz, double q, double gain, double middle);

    Loop RunAround(const Loop& loop) const;

    // The same from silence, once.
    Loop Run(const Loop& sound) const;

private:
    // The prototype (b0 + b1 s + b2 s^2) / (1 + s/q + s^2), s in units of the corner frequency.
    Biquad(double hertz, double q, double b0, double b1, double b2);

    Loop RunLaps(const Loop& loop, int laps) const;

    double b_[3];
    double a_[3];
};

}  // namespace synth
