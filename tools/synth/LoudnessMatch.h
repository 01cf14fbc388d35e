#pragma once

#include "Loop.h"

namespace synth {

// Levels by how loud they are heard, not by their peak: a low note needs more than a high one.
class LoudnessMatch {
public:
    // The loudness of one channel that goes round for ever, in LUFS (ITU-R BS.1770, without the gates: there is no
    // silence).
    static double Of(const Loop& loop);

    // Scales the loop to a loudness in LUFS.
    static void Apply(Loop& loop, double loudness);
};

}  // namespace synth
