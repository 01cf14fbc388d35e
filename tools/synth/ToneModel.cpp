#include "ToneModel.h"

#include "Attack.h"
#include "Biquad.h"
#include "Chamber.h"
#include "Jet.h"
#include "Random.h"
#include "ResonantNoise.h"
#include "Wander.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>

namespace synth {
namespace {

// A listener learns a repeat of less than some 8 s by heart. Each note has another length, so that two of them held in
// turn do not fall into step.
constexpr double kShortestSeconds = 8.1;
constexpr double kSecondsANote = 0.11;
constexpr double kLongerSeconds = 0.1;  // at most, to fit in whole periods

constexpr std::uint64_t kSeed = 0x0ca41a;

// The harmonics, in decibels of the first one, from the lowest note to the highest, and how much the fingerings differ:
// each leaves another edge open.
constexpr double kSecondLowDb = -31.5;
constexpr double kSecondHighDb = -36.0;
constexpr double kThirdLowDb = -38.8;
constexpr double kThirdHighDb = -37.2;
constexpr double kFingeringDb = 1.0;

constexpr double kForceADecibel = 0.02;  // of the swing: a stronger breath is brighter
constexpr double kAirADecibel = 1.5;     // decibels of the noise

// The noise against the tone. A dipole's turbulence gains one power of the jet's speed on the tone that the jet drives.
constexpr double kNoiseDecibels = -46.0;  // for the slowest jet, the lowest note's

// What an exponential's time constant is to the time from 90 to 10 % of it.
constexpr double kFallOfTimeConstant = 2.1972245773362196;  // ln 9

// The breath's rumble, in decibels of the tone: as strong as the noise that the encoder, which takes it for masked,
// adds below the lowest tones, so that this noise is the breath's and not the encoder's.
constexpr double kWindDecibels = -48.0;

// The loudest stretch of the chiff against the tone.
constexpr double kChiffDecibels = -34.0;
constexpr double kChiffStretchSeconds = 0.01;

constexpr double kSettleSeconds = 0.3;  // the chamber, in its steady state before an attack

// Of any stretch of kChiffStretchSeconds.
double LoudestRms(const Loop& sound) {
    const auto length = static_cast<std::size_t>(kChiffStretchSeconds * kRate);
    double sum = 0.0;
    double most = 0.0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        sum += sound[i] * sound[i];
        if (i >= length) {
            sum -= sound[i - length] * sound[i - length];
        }
        most = std::max(most, sum);
    }
    return std::sqrt(most / static_cast<double>(length));
}

void Add(Loop& to, const Loop& what, double share) {
    for (std::size_t i = 0; i < to.size(); ++i) {
        to[i] += share * what[i];
    }
}

Jet MakeJet(Random& random, const Chamber& chamber) {
    const double lowest = kFingeredNotes[0].Frequency();
    const double highest = std::end(kFingeredNotes)[-1].Frequency();
    const double place = std::log(chamber.Frequency() / lowest) / std::log(highest / lowest);
    const auto between = [&](double low, double high) {
        return low + place * (high - low) + kFingeringDb * (2.0 * random.Uniform() - 1.0);
    };
    const double second = between(kSecondLowDb, kSecondHighDb);
    return {second, between(kThirdLowDb, kThirdHighDb), chamber.Quality()};
}

}  // namespace

ToneModel::ToneModel(Note note) : note_(note) {
    ChooseLength();
}

void ToneModel::ChooseLength() {
    const double period = kRate / note_.Frequency();
    const double shortest = kShortestSeconds + kSecondsANote * (note_.Index() - kFingeredNotes[0].Index());
    double best = 1.0;
    for (double cycles = std::ceil(shortest * kRate / period); cycles * period < (shortest + kLongerSeconds) * kRate;
         ++cycles) {
        const double error = std::abs(cycles * period - std::round(cycles * period));
        if (error < best) {
            best = error;
            cycles_ = cycles;
            frames_ = static_cast<std::size_t>(std::lround(cycles * period));
        }
    }
}

Tone ToneModel::Render() const {
    const double seconds = static_cast<double>(frames_) / kRate;
    const Chamber chamber(cycles_ / seconds);
    Random random(kSeed * kSeed + static_cast<std::uint64_t>(note_.Index()));
    const Wander wander(random, frames_);
    const Jet jet = MakeJet(random, chamber);

    // A deviation in cents, integrated over time, becomes one in radians.
    constexpr double kCentsAnOctave = 1200.0;
    const double radiansACent = 2.0 * kPi * chamber.Frequency() * std::log(2.0) / kCentsAnOctave;

    const Loop& decibels = wander.Decibels();
    Loop phase(frames_);
    Loop drive(frames_);
    for (std::size_t i = 0; i < frames_; ++i) {
        const double place = static_cast<double>(i) / static_cast<double>(frames_);
        phase[i] = 2.0 * kPi * cycles_ * place + radiansACent * wander.CentsIntegral()[i];
        drive[i] = jet.Flow(phase[i], kForceADecibel * decibels[i]);
    }

    // The sound that a small source radiates is the derivative of its flow, so driven by the jet's pressure the chamber
    // is a resonant high-pass: far above the resonance the inertance alone is left. The n-th harmonic comes out lower
    // than it went in by Q (1 - 1/n^2) and so is weak, which is the ocarina's round tone.
    const Biquad resonance = Biquad::HighPass(chamber.Frequency(), chamber.Quality());
    const Biquad corner = Biquad::LowPass(Jet::kCornerOfPitch * chamber.Frequency(), Jet::kCornerQuality);
    const Biquad body = Biquad::BandPass(Chamber::StandingWave(), Chamber::kStandingWaveQuality);
    Loop tone = resonance.RunAround(corner.RunAround(drive));
    Add(tone, body.RunAround(tone), Chamber::kStandingWaveShare);
    const double toneRms = Rms(tone);

    ResonantNoise noise(random, chamber);
    Loop air = noise.Breath(phase);
    const double faster = chamber.JetSpeed() / Chamber(kFingeredNotes[0].Frequency()).JetSpeed();
    const double airGain = toneRms * FromDecibels(kNoiseDecibels) * faster;

    const Loop wind = noise.Wind(frames_);
    const double windGain = toneRms * FromDecibels(kWindDecibels);

    Tone result;
    result.frequency = chamber.Frequency();
    result.releaseSeconds = kFallOfTimeConstant * chamber.RingSeconds();
    for (std::size_t i = 0; i < frames_; ++i) {
        air[i] = (airGain * air[i] + windGain * wind[i]) * FromDecibels((1.0 + kAirADecibel) * decibels[i]);
        result.sustained.push_back(FromDecibels(decibels[i]) * tone[i] + air[i]);
    }

    // An attack is the end of the loop, blown on again: it ends as the loop does, and so leads into its beginning.
    const auto frames = static_cast<std::size_t>(Attack::kSeconds * kRate);
    const auto settling = static_cast<std::size_t>(kSettleSeconds * kRate);
    for (int take = 0; take < Attack::kTakes; ++take) {
        const Attack attack(note_, take, chamber.RingSeconds());
        const auto timeOf = [&](std::size_t i) {
            return (static_cast<double>(i) - static_cast<double>(settling)) / kRate;
        };
        Loop blown(settling + frames);
        for (std::size_t i = 0; i < blown.size(); ++i) {
            const std::size_t at = frames_ - blown.size() + i;
            blown[i] = jet.Flow(phase[at] + radiansACent * attack.Lead(timeOf(i)), kForceADecibel * decibels[at]);
        }
        blown = resonance.Run(corner.Run(blown));
        Add(blown, body.Run(blown), Chamber::kStandingWaveShare);
        Loop chiff = noise.Burst(frames, attack.ChiffColour());
        for (std::size_t i = 0; i < frames; ++i) {
            chiff[i] *= attack.Chiff(static_cast<double>(i) / kRate);
        }
        const double chiffGain = toneRms * FromDecibels(kChiffDecibels + attack.ChiffDecibels()) / LoudestRms(chiff);
        Loop begun;
        for (std::size_t i = settling; i < blown.size(); ++i) {
            const std::size_t at = frames_ - blown.size() + i;
            const double t = timeOf(i);
            begun.push_back(attack.Level(t) * FromDecibels(decibels[at]) * blown[i] + attack.Air(t) * air[at] +
                            chiffGain * chiff[i - settling]);
        }
        result.attacks.push_back(begun);
    }
    return result;
}

}  // namespace synth
