#include "LoudnessMatch.h"

#include "Biquad.h"

#include <cmath>

namespace synth {

double LoudnessMatch::Of(const Loop& loop) {
    // BS.1770 gives its two filters as coefficients for 48 kHz. These are the analogue filters behind them, for any
    // rate (B. De Man, "Evaluation of implementations of the EBU R128 loudness measurement", AES 145th Convention,
    // 2018).
    constexpr double kShelfHz = 1681.974450955533;
    constexpr double kShelfQ = 0.7071752369554196;
    constexpr double kShelfDecibels = 3.999843853973347;
    constexpr double kShelfMiddle = 0.4996667741545416;  // as a power of the gain
    constexpr double kLowCutHz = 38.13547087602444;
    constexpr double kLowCutQ = 0.5003270373238773;
    constexpr double kOffset = -0.691;  // LU: a full scale sine of 1 kHz in one channel is -3.01 LUFS

    const double gain = FromDecibels(kShelfDecibels);
    const Biquad shelf = Biquad::HighShelf(kShelfHz, kShelfQ, gain, std::pow(gain, kShelfMiddle));
    const Biquad lowCut = Biquad::HighPass(kLowCutHz, kLowCutQ);
    return kOffset + 20.0 * std::log10(Rms(lowCut.RunAround(shelf.RunAround(loop))));
}

}  // namespace synth
