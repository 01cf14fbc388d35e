#include "Chiff.h"

#include "Loop.h"

#include <cmath>

namespace synth {

double Chiff::At(double seconds) {
    // Attack transients of flue instruments last some tens of milliseconds, mouth tones and noise before the steady jet
    // (M.-P. Verge et al., "Jet formation and jet velocity fluctuations in a flue organ pipe", JASA 95, 1994).
    constexpr double kRiseSeconds = 0.006;
    constexpr double kFallSeconds = 0.050;
    if (seconds < kRiseSeconds) {
        return 0.5 - 0.5 * std::cos(kPi * seconds / kRiseSeconds);
    }
    const double fallen = (seconds - kRiseSeconds) / kFallSeconds;
    if (fallen >= 1.0) {
        return 0.0;
    }
    // Steep first, and flat where it meets the steady tone.
    return (1.0 - fallen) * (1.0 - fallen) * (1.0 - fallen);
}

}  // namespace synth
