#pragma once

#include "Loop.h"

namespace synth {

// How loud a sound is heard, as the meter has it.
class LoudnessMatch {
public:
    // The loudness of one channel that goes round for ever, in LUFS (ITU-R BS.1770, without the gates: there is no
    // silence).
    static double Of(const Loop& loop);
};

}  // namespace synth
