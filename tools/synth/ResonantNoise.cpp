#include "ResonantNoise.h"

#include "Biquad.h"

#include <cmath>

namespace synth {
namespace {

constexpr double kGentle = 0.6;     // q of the turbulence's own slopes: no bump at the corner
constexpr double kPulsation = 0.5;  // of the noise's amplitude, with the jet's swing
constexpr double kWindLowestHz = 40.0;
constexpr double kWindHighestHz = 110.0;
constexpr double kMouthHz = 1800.0;
constexpr double kBurstQuality = 2.0;  // a soft "h"

Loop Normalized(Loop loop) {
    const double rms = Rms(loop);
    for (double& x : loop) {
        x /= rms;
    }
    return loop;
}

}  // namespace

Loop ResonantNoise::White(std::size_t frames) {
    Loop white(frames);
    for (double& x : white) {
        x = random_.Normal();
    }
    return white;
}

Loop ResonantNoise::Breath(const Loop& phase) {
    Loop turbulence = Biquad::LowPass(chamber_.TurbulenceCorner(), kGentle).RunAround(White(phase.size()));

    // The noise is strongest while the jet crosses the edge, which ties it to the tone and keeps it from sounding like
    // a hiss laid over it (C. Chafe, "Adding vortex noise to wind instrument physical models", ICMC 1995).
    for (std::size_t i = 0; i < turbulence.size(); ++i) {
        turbulence[i] *= 1.0 + kPulsation * std::cos(phase[i]);
    }

    const Loop wave = Biquad::BandPass(Chamber::StandingWave(), Chamber::kStandingWaveQuality).RunAround(turbulence);
    for (std::size_t i = 0; i < turbulence.size(); ++i) {
        turbulence[i] += Chamber::kStandingWaveShare * wave[i];
    }

    // The same resonance that shapes the tone: a crest at the pitch, and the faint air above it.
    return Normalized(Biquad::HighPass(chamber_.Frequency(), chamber_.Quality()).RunAround(turbulence));
}

Loop ResonantNoise::Wind(std::size_t frames) {
    const Loop low = Biquad::LowPass(kWindHighestHz, kGentle).RunAround(White(frames));
    return Normalized(Biquad::HighPass(kWindLowestHz, kGentle).RunAround(low));
}

Loop ResonantNoise::Burst(std::size_t frames, double colour) {
    // The mouth's own shape has a part in it, which is the same for all notes.
    const double middle = std::sqrt(kMouthHz * chamber_.TurbulenceCorner());
    const Biquad band = Biquad::BandPass(colour * middle, kBurstQuality);
    return Normalized(band.RunAround(band.RunAround(White(frames))));
}

}  // namespace synth
