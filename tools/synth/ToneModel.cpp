#include "ToneModel.h"

#include "Biquad.h"
#include "Chamber.h"
#include "Chiff.h"
#include "Random.h"
#include "ResonantNoise.h"
#include "Wander.h"

#include <cmath>
#include <cstdint>

namespace synth {
namespace {

// Long enough that the repeat does not become a rhythm, short enough to be decoded quickly when the note is first
// played.
constexpr double kShortestSeconds = 5.0;
constexpr double kLongestSeconds = 5.5;

constexpr std::uint64_t kSeed = 0x0ca41a;

// The jet, whose flow into the chamber is a saturating function of where it stands (Fletcher and Rossing ch. 16: a tanh
// profile integrated across the edge). The swing is in units of the jet's half width; the offset from the edge makes
// the even harmonics.
constexpr double kSwing = 1.9;
constexpr double kOffset = 0.36;
constexpr double kChiffSwing = 0.25;   // of the swing, at the height of the attack
constexpr double kChiffOffset = 0.45;  // in half widths
constexpr double kChiffLag = 0.07;     // radians: flat while the jet builds up, then catching up

// The player's breath. A stronger one is louder, a little sharper, brighter and windier at the same time.
constexpr int kBreathTurns = 14;      // of the fastest movement, a loop
constexpr int kFreeTurns = 22;        // of the pitch's own movement: lips and hands
constexpr double kBreathCents = 1.1;  // each at its largest
constexpr double kFreeCents = 0.5;
constexpr double kBreathDecibels = 0.15;  // beside what the wider swing adds
constexpr double kBreathSwing = 0.09;     // of the swing
constexpr double kBreathNoise = 0.4;      // of the noise

// The noise against the tone. A dipole's turbulence gains one power of the jet's speed on the tone that the jet drives.
constexpr double kNoiseDecibels = -46.0;  // for the slowest jet, the lowest note's
constexpr double kBurstDecibels = -34.0;  // at the height of the attack

}  // namespace

ToneModel::ToneModel(Note note, int take) : note_(note), take_(take) {
    ChooseLength();
}

void ToneModel::ChooseLength() {
    const double period = kRate / note_.Frequency();
    double best = 1.0;
    for (double cycles = std::ceil(kShortestSeconds * kRate / period); cycles * period < kLongestSeconds * kRate;
         ++cycles) {
        const double error = std::abs(cycles * period - std::round(cycles * period));
        if (error < best) {
            best = error;
            cycles_ = cycles;
            frames_ = static_cast<std::size_t>(std::lround(cycles * period));
        }
    }
}

Loop ToneModel::Render() const {
    const double frames = static_cast<double>(frames_);
    const Chamber chamber(cycles_ * kRate / frames);
    Random random((kSeed + static_cast<std::uint64_t>(take_)) * kSeed + static_cast<std::uint64_t>(note_.Index()));
    const Wander breath(random, kBreathTurns);
    const Wander hands(random, kFreeTurns);

    // A deviation in cents, integrated over the loop, becomes one in radians.
    constexpr double kCentsAnOctave = 1200.0;
    const double radiansACent = 2.0 * kPi * cycles_ * std::log(2.0) / kCentsAnOctave;

    Loop phase(frames_);
    Loop drive(frames_);
    for (std::size_t i = 0; i < frames_; ++i) {
        const double place = static_cast<double>(i) / frames;
        const double chiff = Chiff::At(static_cast<double>(i) / kRate);
        const double wander = kBreathCents * breath.IntegralAt(place) + kFreeCents * hands.IntegralAt(place);
        phase[i] = 2.0 * kPi * cycles_ * place + radiansACent * wander - kChiffLag * chiff;

        // The chamber answers its resonance a quarter of a period ahead of the drive; the cosine here is a sine there,
        // so that the recording begins at a crossing of zero.
        const double force = breath.At(place);
        const double swing = kSwing * (1.0 + kBreathSwing * force + kChiffSwing * chiff);
        const double flow = std::tanh(kOffset + kChiffOffset * chiff - swing * std::cos(phase[i]));
        drive[i] = flow * FromDecibels(kBreathDecibels * force);
    }

    // The sound that a small source radiates is the derivative of its flow, so driven by the jet's pressure the chamber
    // is a resonant high-pass: far above the resonance the inertance alone is left. The n-th harmonic comes out lower
    // than it went in by Q (1 - 1/n^2) and so is weak, which is the ocarina's round tone.
    Loop tone = Biquad::HighPass(chamber.Frequency(), chamber.Quality()).RunAround(drive);
    const double toneRms = Rms(tone);

    ResonantNoise noise(random, chamber);
    const Loop air = noise.Breath(phase);
    const Loop burst = noise.Burst(frames_);
    const double faster = chamber.JetSpeed() / Chamber(kFingeredNotes[0].Frequency()).JetSpeed();
    const double airGain = toneRms * FromDecibels(kNoiseDecibels) * faster;
    const double burstGain = toneRms * FromDecibels(kBurstDecibels);
    for (std::size_t i = 0; i < frames_; ++i) {
        const double force = breath.At(static_cast<double>(i) / frames);
        const double chiff = Chiff::At(static_cast<double>(i) / kRate);
        tone[i] += airGain * (1.0 + kBreathNoise * force) * air[i] + burstGain * chiff * burst[i];
    }
    return tone;
}

}  // namespace synth
