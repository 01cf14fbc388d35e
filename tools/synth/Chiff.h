#pragma once

namespace synth {

// The course of the attack: how far, 0 to 1, the jet still is from its steady state some seconds after it was blown on.
// It starts from 0 and not from 1, because the frame before it is the last of the steady tone when the recording
// repeats.
class Chiff {
public:
    static double At(double seconds);
};

}  // namespace synth
