#pragma once

namespace synth {

// The jet's flow into the chamber as a saturating function of where it stands (Fletcher and Rossing ch. 16: a tanh
// profile integrated across the edge), in units of the jet's half width.
class Jet {
public:
    // A jet does not follow faster swings than these, in parts of the pitch: its flow goes through a low-pass of second
    // order.
    static constexpr double kCornerOfPitch = 5.0;
    static constexpr double kCornerQuality = 0.7;

    // The jet whose tone comes out of a chamber of this quality with a second and a third harmonic of these levels, in
    // decibels of the first.
    Jet(double secondDb, double thirdDb, double chamberQuality);

    // At a phase of the tone, in radians; `force` widens the swing.
    double Flow(double phase, double force) const;

private:
    double swing_ = 0.0;
    double offset_ = 0.0;  // from the edge; it makes the even harmonics
};

}  // namespace synth
